// SPDX-License-Identifier: GPL-3.0-or-later
#include "Tasks.h"

#include <QCoreApplication>
#include <QThread>

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>

namespace lumbra::Tasks {

namespace {

// Of lasting work: it waits for disks and other programs and takes little of the processor.
constexpr int lastingThreads = 8;

void waitForPools() {
    for (const Pool which : {Pool::userInitiated, Pool::utility, Pool::lasting})
        pool(which).waitForDone();
}

QThreadPool* makePool(int threads) {
    // Work that is still under way ends while there is an application object to post to.
    static const bool waits = (qAddPostRoutine(waitForPools), true);
    Q_UNUSED(waits)
    // Never destroyed: static objects may be gone when a worker ends.
    auto* made = new QThreadPool;
    made->setMaxThreadCount(threads);
    made->setExpiryTimeout(-1); // a thread keeps its priority, so it is kept
    return made;
}

} // namespace

QThreadPool& pool(Pool which) {
    static QThreadPool* const userInitiated = makePool(std::max(2, QThread::idealThreadCount()));
    static QThreadPool* const utility = makePool(std::max(2, QThread::idealThreadCount()));
    static QThreadPool* const lasting = makePool(lastingThreads);
    switch (which) {
    case Pool::utility:
        return *utility;
    case Pool::lasting:
        return *lasting;
    case Pool::userInitiated:
        break;
    }
    return *userInitiated;
}

void postToMain(std::function<void()> function) {
    if (QCoreApplication* const application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, std::move(function), Qt::QueuedConnection);
}

void adoptPriority(Pool which) {
    if (which != Pool::utility)
        return;
    thread_local bool lowered = false;
    // Whoever waits for work that has not begun does it himself, and would stay low for good.
    if (lowered || !pool(which).contains(QThread::currentThread()))
        return;
    setpriority(PRIO_PROCESS, id_t(::syscall(SYS_gettid)), 10); // Linux keeps a nice value for each thread
    lowered = true;
}

} // namespace lumbra::Tasks

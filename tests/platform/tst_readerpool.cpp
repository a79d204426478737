// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/reader/Pool.h"
#include "support/HostileReader.h"
#include "support/ReaderProcesses.h"
#include "support/TestHome.h"

#include <QtTest>

#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <semaphore>

using namespace lumbra;
using namespace lumbra::reader;

namespace {

// A file at which a reader waits until it is let go.
class HeldFile {
public:
    explicit HeldFile(const Location& path) : m_path(path.path()) { ::mkfifo(m_path.constData(), 0600); }
    ~HeldFile() { letGo(); }
    Q_DISABLE_COPY_MOVE(HeldFile)

    const QByteArray& path() const { return m_path; }

    // Whether a reader has come to it. It stays there.
    bool holds() {
        if (m_end < 0)
            m_end = ::open(m_path.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        return m_end >= 0;
    }

    void letGo() {
        if (m_end < 0)
            return;
        [[maybe_unused]] const auto written = ::write(m_end, "fine", 4);
        ::close(std::exchange(m_end, -1));
    }

private:
    const QByteArray m_path;
    int m_end = -1;
};

// Some reader has said what nobody has heard yet.
bool isSomethingToBeHeard() {
    for (const QString& name : QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::System | QDir::Files)) {
        struct stat facts;
        int waiting = 0;
        const int descriptor = name.toInt();
        if (::fstat(descriptor, &facts) == 0 && S_ISSOCK(facts.st_mode) && ::ioctl(descriptor, FIONREAD, &waiting) == 0
            && waiting > 0)
            return true;
    }
    return false;
}

} // namespace

class tst_ReaderPool : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Both are told by one look, and the answer is heard first: by then the dead one is given work that it can't take.
    void aReaderThatDiesWhileAnotherAnswersIsReplaced() {
        HeldFile one(m_home.path().child("one"));
        HeldFile other(m_home.path().child("other"));
        HeldFile held(m_home.path().child("held"));
        std::binary_semaphore isStopped{0};
        std::binary_semaphore mayGoOn{0};
        std::atomic<int> delivered = 0;
        const auto count = [&delivered] { ++delivered; };
        Pool pool({.child = {.program = hostileProgram()}, .children = 2});
        const auto goOn = qScopeGuard([&mayGoOn] { mayGoOn.release(); });

        // Two readers that have done some work, so that they wait for more.
        pool.ask(0, job(one.path(), count));
        pool.ask(0, job(other.path(), count));
        QTRY_VERIFY(one.holds() && other.holds());
        const QList<pid_t> readers = childProcesses();
        QCOMPARE(readers.size(), 2);
        one.letGo();
        other.letGo();
        QTRY_COMPARE(delivered, 2);

        // The first is kept busy, and the second by the pool itself; meanwhile one answers, and the other dies.
        pool.ask(0, job(held.path(), count, [this, &pool, count] {
                     pool.ask(0, job(m_fine.path(), count));
                     pool.ask(0, job(m_fine.path(), count));
                 }));
        QTRY_VERIFY(held.holds());
        pool.ask(0, job(m_fine.path(), [&isStopped, &mayGoOn] {
                     isStopped.release();
                     mayGoOn.acquire();
                 }));
        QVERIFY(isStopped.try_acquire_for(std::chrono::seconds(5)));
        held.letGo();
        const pid_t second = std::ranges::max(readers);
        ::kill(second, SIGKILL);
        QTRY_VERIFY(!childProcesses().contains(second));
        QTRY_VERIFY(isSomethingToBeHeard());
        mayGoOn.release();
        QTRY_COMPARE(delivered, 5);

        pool.ask(0, job(m_fine.path(), count));
        pool.ask(0, job(m_fine.path(), count));
        QTRY_COMPARE(delivered, 7);
    }

private:
    // `whenHeard` is called when the pool looks at the answer, `whenDelivered` when it hands it out.
    static Job job(
        const QByteArray& path, std::function<void()> whenDelivered, std::function<void()> whenHeard = [] {}) {
        Job made;
        made.request.kind = Kind::thumbnail;
        made.request.limit = 8000;
        made.request.path = path;
        made.request.details = encoded(PictureBox{QSize(64, 64)});
        made.isCancelled = [] { return false; };
        made.makesSense = [whenHeard = std::move(whenHeard)](const Found&) {
            whenHeard();
            return true;
        };
        made.deliver = [whenDelivered = std::move(whenDelivered)](const std::optional<Found>&) { whenDelivered(); };
        return made;
    }

    TestHome m_home;
    const Location m_fine = m_home.file("fine", "fine");
};

QTEST_GUILESS_MAIN(tst_ReaderPool)
#include "tst_readerpool.moc"

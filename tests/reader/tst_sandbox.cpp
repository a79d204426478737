// SPDX-License-Identifier: GPL-3.0-or-later
#include "reader/Sandbox.h"
#include "support/TestHome.h"

#include <QtTest>

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <thread>

using namespace lumbra;

namespace {

QByteArray existing;
QByteArray absent;
int openForWriting = -1;

// True when the deed succeeds.
using Deed = bool (*)();

struct Case {
    const char* name;
    Deed deed;
    bool allowed;
};

bool opens(int flags) {
    return ::open((flags & O_CREAT ? absent : existing).constData(), flags, 0600) >= 0;
}

const Case cases[] = {
    {"reads a file",
     [] {
         char byte;
         const int file = ::open(existing.constData(), O_RDONLY);
         return ::read(file, &byte, 1) == 1;
     },
     true},
    {"lists a folder",
     [] { return !std::filesystem::is_empty(std::filesystem::path(existing.constData()).parent_path()); }, true},
    {"takes memory",
     [] { return ::mmap(nullptr, 64 << 20, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) != MAP_FAILED; },
     true},
    {"starts a thread",
     [] {
         bool ran = false;
         std::thread([&ran] { ran = true; }).join();
         return ran;
     },
     true},
    {"opens a file to write", [] { return opens(O_WRONLY); }, false},
    {"opens a file to read and write", [] { return opens(O_RDWR); }, false},
    {"opens a file to append", [] { return opens(O_RDONLY | O_APPEND); }, false},
    {"cuts a file", [] { return opens(O_RDONLY | O_TRUNC); }, false},
    {"makes a file", [] { return opens(O_RDONLY | O_CREAT); }, false},
    {"makes a nameless file", [] { return ::open("/tmp", O_TMPFILE | O_RDWR, 0600) >= 0; }, false},
    {"writes to a file that was open", [] { return ::write(openForWriting, "x", 1) == 1; }, false},
    {"changes a mode", [] { return ::chmod(existing.constData(), 0777) == 0; }, false},
    {"removes a file", [] { return ::unlink(existing.constData()) == 0; }, false},
    {"renames a file", [] { return ::rename(existing.constData(), absent.constData()) == 0; }, false},
    {"makes a folder", [] { return ::mkdir(absent.constData(), 0700) == 0; }, false},
    {"opens an internet socket", [] { return ::socket(AF_INET, SOCK_STREAM, 0) >= 0; }, false},
    {"opens a local socket", [] { return ::socket(AF_UNIX, SOCK_STREAM, 0) >= 0; }, false},
    {"starts a process", [] { return ::fork() >= 0; }, false},
    {"becomes another program", [] { return ::execl("/bin/true", "true", nullptr) == 0; }, false},
    {"signals its parent", [] { return ::kill(::getppid(), 0) == 0; }, false},
    {"has its parent signalled when something arrives",
     [] { return ::fcntl(openForWriting, F_SETOWN, ::getppid()) == 0; }, false},
    {"chooses a signal for when something arrives", [] { return ::fcntl(openForWriting, F_SETSIG, SIGKILL) == 0; },
     false},
    {"takes more memory than is its share",
     [] {
         return ::mmap(nullptr, size_t(3) << 30, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE,
                       -1, 0)
                != MAP_FAILED;
     },
     false},
    {"raises its share of memory",
     [] {
         const rlimit all{RLIM_INFINITY, RLIM_INFINITY};
         return ::setrlimit(RLIMIT_AS, &all) == 0 && ::geteuid() != 0;
     },
     false},
    {"leaves a core",
     [] {
         rlimit core;
         ::getrlimit(RLIMIT_CORE, &core);
         return core.rlim_cur != 0;
     },
     false},
    {"lets itself be looked into", [] { return ::prctl(PR_GET_DUMPABLE) == 1; }, false},
};

// Runs in a process of its own, since there is no way back out of the sandbox. 0: the deed failed, 1: it succeeded, 2:
// there was no sandbox; above: it died.
int inSandbox(const std::function<bool()>& deed) {
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(!reader::Sandbox::enter() ? 2 : deed() ? 1 : 0);
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}

} // namespace

class tst_Sandbox : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        existing = m_home.file("existing", "bytes").path();
        absent = m_home.path().child("absent").path();
        openForWriting = ::open(m_home.file("open").path().constData(), O_WRONLY | O_CLOEXEC);
        QVERIFY(openForWriting >= 0);
    }

    void rights_data() {
        QTest::addColumn<int>("row");
        for (int row = 0; row < int(std::size(cases)); ++row)
            QTest::newRow(cases[row].name) << row;
    }

    void rights() {
        QFETCH(int, row);
        const QByteArrayView name(cases[row].name);
        if (!reader::Sandbox::boundsMemory
            && (name == "starts a thread" || name == "takes more memory than is its share"))
            QSKIP("sanitizers bear neither");
        QCOMPARE(inSandbox(cases[row].deed), int(cases[row].allowed));
        QVERIFY(QFile::exists(QString::fromUtf8(existing)));
        QVERIFY(!QFile::exists(QString::fromUtf8(absent)));
    }

    void endsAtItsProcessorTime() {
        const int end = inSandbox([] {
            reader::Sandbox::limitProcessorTime(std::chrono::milliseconds(0));
            while (::getppid() > 0) {
            }
            return true;
        });
        QCOMPARE(end, 1000 + SIGXCPU);
    }

private:
    TestHome m_home;
};

QTEST_GUILESS_MAIN(tst_Sandbox)
#include "tst_sandbox.moc"

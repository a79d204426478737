// Real git repositories for tests, some of which make git wait until they are let go.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QProcess>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumbra {

inline QByteArray git(const Location& repo, const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral("/usr/bin/git"), QStringList{QStringLiteral("-C"), repo.toString()} + arguments);
    if (!process.waitForFinished())
        qFatal("git does not end");
    return process.readAllStandardOutput().trimmed();
}

inline Location madeRepository(const Location& folder) {
    git(folder, {QStringLiteral("init"), QStringLiteral("-q")});
    return folder;
}

// The folder that the repository names.
inline QByteArray linkedFolder(const Location& repo) {
    return git(repo, {QStringLiteral("config"), QStringLiteral("--get"), QStringLiteral("lumbra.folder")});
}

// While it lives, git waits whenever it reads the repository's configuration: that includes a pipe into which nobody
// writes.
class HangingGit {
public:
    explicit HangingGit(const Location& repo) : m_pipe(repo.child(".git/gate")) {
        git(repo, {QStringLiteral("config"), QStringLiteral("include.path"), m_pipe.toString()});
        if (::mkfifo(m_pipe.path().constData(), 0600) != 0)
            qFatal("cannot make a pipe");
    }
    ~HangingGit() { release(); }
    Q_DISABLE_COPY_MOVE(HangingGit)

    // True once a git waits: a pipe can be opened so only while somebody reads.
    bool isWaiting() const {
        const int writer = ::open(m_pipe.path().constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        if (writer < 0)
            return false;
        // Held open, so that the reader goes on waiting for words.
        if (m_writer >= 0)
            ::close(m_writer);
        m_writer = writer;
        return true;
    }

    // Lets the git that waits, and all that follow, go on. A pipe that has gone is passed over.
    void release() {
        isWaiting();
        ::unlink(m_pipe.path().constData());
        if (m_writer >= 0)
            ::close(std::exchange(m_writer, -1));
    }

private:
    Location m_pipe;
    mutable int m_writer = -1;
};

} // namespace lumbra

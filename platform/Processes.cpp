// SPDX-License-Identifier: GPL-3.0-or-later
#include "Processes.h"

#include "Descriptor.h"
#include "EndedProcesses.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <utility>
#include <vector>

namespace lumbra::Processes {

namespace {

using Clock = std::chrono::steady_clock;

// Between asking a group to end and ending it: enough for git to take its lock files with it.
constexpr auto grace = std::chrono::milliseconds(250);

// What is still there so long after it was ended hangs in the kernel.
constexpr auto endLimit = std::chrono::milliseconds(1000);

constexpr qsizetype errorsKept = 16'384;

struct Pipe {
    Descriptor read;
    Descriptor write;

    bool open() {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0)
            return false;
        read = Descriptor(ends[0]);
        write = Descriptor(ends[1]);
        return ::fcntl(ends[0], F_SETFL, O_NONBLOCK) == 0;
    }
};

std::vector<char*> environmentWithout(const QList<QByteArray>& names) {
    std::vector<char*> kept;
    for (char** variable = environ; *variable; ++variable) {
        const QByteArrayView text(*variable);
        const auto isNamed = [text](const QByteArray& name) {
            return text.startsWith(name) && text.size() > name.size() && text[name.size()] == '=';
        };
        if (std::none_of(names.begin(), names.end(), isNamed))
            kept.push_back(*variable);
    }
    kept.push_back(nullptr);
    return kept;
}

// Starts the program as the leader of a new process group; -1 when it could not be started.
pid_t start(const QByteArray& program, const QList<QByteArray>& arguments, const Options& options, int output,
            int errors) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors, STDERR_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    if (options.folder)
        posix_spawn_file_actions_addchdir_np(&actions, options.folder->path().constData());

    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals); // a signal that we ignore would be ignored there too
    posix_spawnattr_setsigdefault(&attributes, &signals);

    std::vector<char*> words{const_cast<char*>(program.constData())};
    for (const QByteArray& argument : arguments)
        words.push_back(const_cast<char*>(argument.constData()));
    words.push_back(nullptr);

    std::vector<char*> environment = environmentWithout(options.unset);
    pid_t child = -1;
    if (posix_spawnp(&child, program.constData(), &actions, &attributes, words.data(), environment.data()) != 0)
        child = -1;
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return child;
}

// Set from here, as starting knows no limits: the child runs some microseconds without them.
void limit(pid_t child, const Options& options) {
    const auto set = [child](auto resource, const std::optional<quint64>& value) {
        if (value) {
            const rlimit both{rlim_t(*value), rlim_t(*value)};
            ::prlimit(child, resource, &both, nullptr);
        }
    };
    set(RLIMIT_AS, options.memory);
    set(RLIMIT_CPU, options.processor);
    set(RLIMIT_FSIZE, options.fileSize);
}

// Takes what a pipe holds by now. False once more than `limit` bytes came; what is over is not kept.
bool drain(Descriptor& from, QByteArray& into, qsizetype limit) {
    std::array<char, 16384> block;
    while (from) {
        const ssize_t got = ::read(from.number(), block.data(), block.size());
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0 && errno == EAGAIN)
            return true;
        if (got <= 0) {
            from.close();
            return true;
        }
        const qsizetype kept = std::min(qsizetype(got), limit - into.size());
        into.append(block.data(), kept);
        if (kept < got)
            return false;
    }
    return true;
}

// A child from its start until nothing of its group is left.
class Child {
public:
    Child(pid_t id, Pipe output, Pipe errors, const Options& options)
        : m_id(id),
          m_output(std::move(output.read)),
          m_errors(std::move(errors.read)),
          m_ended(int(::syscall(SYS_pidfd_open, id, 0))),
          m_options(options) {}

    Result waitForEnd() {
        const auto deadline = Clock::now() + std::chrono::duration<double>(m_options.timeout);
        Clock::time_point wake = std::chrono::time_point_cast<Clock::duration>(deadline);
        bool asked = false;
        Result result;
        result.end = End::exited;
        for (bool running = bool(m_ended); running;) {
            running = !wait(wake);
            drain(m_errors, result.errors, errorsKept);
            const bool withinBound = drain(m_output, result.output, m_options.outputLimit);
            if (!withinBound)
                result.end = End::tooMuchOutput;
            if (!running || !withinBound)
                break;
            if (Clock::now() < wake)
                continue;
            result.end = End::timedOut;
            if (asked)
                break;
            ::kill(-m_id, SIGTERM);
            asked = true;
            wake = Clock::now() + grace;
        }
        if (!m_ended)
            result.end = End::notStarted; // without a handle of it there is no waiting for it with a limit
        finish(result);
        return result;
    }

private:
    // Until something happened or it is time; true once the child has ended.
    bool wait(Clock::time_point until) {
        std::array<pollfd, 3> files{pollfd{m_ended.number(), POLLIN, 0}, pollfd{m_output.number(), POLLIN, 0},
                                    pollfd{m_errors.number(), POLLIN, 0}}; // a closed one is -1, which poll passes over
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now()).count();
        const int ready = ::poll(files.data(), files.size(), int(std::clamp<qint64>(left, 0, 60'000)));
        return ready > 0 && (files[0].revents & POLLIN) != 0;
    }

    void finish(Result& result) {
        // Before the leader is reaped, since it is the leader that keeps the group's number from being given anew.
        ::kill(-m_id, SIGKILL);
        pollfd ended{m_ended.number(), POLLIN, 0};
        if (m_ended && ::poll(&ended, 1, int(endLimit.count())) == 0) {
            EndedProcesses::add(m_id, {});
            return;
        }
        int status = 0;
        while (::waitpid(m_id, &status, 0) < 0) {
            if (errno != EINTR)
                return;
        }
        if (result.end != End::exited)
            return;
        if (WIFSIGNALED(status))
            result.end = End::signalled;
        result.status = WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
    }

    const pid_t m_id;
    Descriptor m_output;
    Descriptor m_errors;
    Descriptor m_ended; // readable once the child has ended, whoever still holds its pipes
    const Options& m_options;
};

} // namespace

Result run(const QByteArray& program, const QList<QByteArray>& arguments, const Options& options) {
    Pipe output;
    Pipe errors;
    if (!output.open() || !errors.open())
        return {};
    const pid_t id = start(program, arguments, options, output.write.number(), errors.write.number());
    if (id < 0)
        return {};
    limit(id, options);
    output.write.close();
    errors.write.close();
    return Child(id, std::move(output), std::move(errors), options).waitForEnd();
}

} // namespace lumbra::Processes

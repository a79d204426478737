// SPDX-License-Identifier: GPL-3.0-or-later
#include "Child.h"

#include "platform/EndedProcesses.h"

#include <fcntl.h>
#include <linux/sched.h>
#include <sched.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <utility>
#include <vector>

namespace lumbra::reader {

namespace {

// The values of <linux/ioprio.h>. Newer copies of that header name a parameter "class" and so are not C++.
constexpr int ioPriorityOfProcess = 1;
constexpr int ioPriorityIdle = 3 << 13;

// The window goes before the pictures in it: with its processors full of readers, its first frame comes a tenth later.
constexpr int niceness = 10;

// Moved away from the numbers that the child is given, so that filling one does not close another.
Descriptor lifted(const Descriptor& descriptor) {
    return Descriptor(::fcntl(descriptor.number(), F_DUPFD_CLOEXEC, 16));
}

pid_t spawn(const Child::Options& options, int socket, int block) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO})
        posix_spawn_file_actions_addopen(&actions, standard, "/dev/null", O_RDWR, 0);
    // Decoders complain of every second file on standard error.
    if (!qEnvironmentVariableIsSet("LUMBRA_HANGLOG"))
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addchdir_np(&actions, "/"); // no name is to be found beside the application's files
    posix_spawn_file_actions_adddup2(&actions, socket, socketDescriptor);
    posix_spawn_file_actions_adddup2(&actions, block, blockDescriptor);
    posix_spawn_file_actions_addclosefrom_np(&actions, blockDescriptor + 1);

    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    QByteArray program = options.program;
    char* arguments[] = {program.data(), nullptr};
    std::vector<char*> environment;
    for (const QByteArray& variable : options.environment)
        environment.push_back(const_cast<char*>(variable.constData())); // the interface is older than const
    environment.push_back(nullptr);
    pid_t process = -1;
    const int error = posix_spawn(&process, program.constData(), &actions, &attributes, arguments, environment.data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        return -1;
    // posix_spawn knows the old policies only. The process has no second thread yet; later ones inherit this.
    ::setpriority(PRIO_PROCESS, id_t(process), niceness);
    if (options.idlePriority) {
        const sched_param lowest{};
        ::sched_setscheduler(process, SCHED_IDLE, &lowest);
        ::syscall(SYS_ioprio_set, ioPriorityOfProcess, process, ioPriorityIdle);
    }
    return process;
}

} // namespace

QList<QByteArray> Child::environmentNow() {
    static constexpr std::array<std::string_view, 7> dropped{
        "DISPLAY=",          "WAYLAND_DISPLAY=",      "DBUS_SESSION_BUS_ADDRESS=", "QT_QPA_PLATFORM=",
        "OMP_THREAD_LIMIT=", "QT_QPA_PLATFORMTHEME=", "VIPS_CONCURRENCY="};
    // The pool has as many readers as may work at a time, so each keeps to one thread.
    QList<QByteArray> variables{"QT_QPA_PLATFORM=offscreen", "OMP_THREAD_LIMIT=1", "VIPS_CONCURRENCY=1"};
    for (char** entry = environ; *entry; ++entry) {
        const auto names = [entry](std::string_view name) { return std::string_view(*entry).starts_with(name); };
        if (std::none_of(dropped.begin(), dropped.end(), names))
            variables.append(*entry);
    }
    return variables;
}

std::unique_ptr<Child> Child::start(const Options& options) {
    int pair[2];
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, pair) != 0)
        return nullptr;
    Descriptor ours(pair[0]);
    const Descriptor theirs = lifted(Descriptor(pair[1]));
    Descriptor memory = lifted(Descriptor(::memfd_create("lumbra-reader", MFD_CLOEXEC | MFD_ALLOW_SEALING)));
    if (!theirs || !memory || ::ftruncate(memory.number(), SharedBlock::size) != 0
        || ::fcntl(memory.number(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0)
        return nullptr;
    void* const mapped =
        ::mmap(nullptr, size_t(SharedBlock::size), PROT_READ | PROT_WRITE, MAP_SHARED, memory.number(), 0);
    if (mapped == MAP_FAILED)
        return nullptr;
    const pid_t process = spawn(options, theirs.number(), memory.number());
    if (process < 0) {
        ::munmap(mapped, size_t(SharedBlock::size));
        return nullptr;
    }
    return std::unique_ptr<Child>(
        new Child(process, std::move(ours), std::move(memory), SharedBlock(static_cast<uchar*>(mapped))));
}

Child::Child(pid_t process, Descriptor socket, Descriptor memory, SharedBlock block)
    : m_process(process), m_socket(std::move(socket)), m_memory(std::move(memory)), m_block(block) {}

Child::~Child() {
    ::kill(m_process, SIGKILL);
    EndedProcesses::add(m_process, m_files.isEmpty() ? QByteArray() : m_files.first());
    ::munmap(m_block.memory(), size_t(SharedBlock::size));
}

bool Child::send(const Request& request) {
    if (m_unanswered++ == 0)
        m_files.clear();
    m_files.append(request.path);
    const QByteArray message = encoded(request);
    return message.size() <= messageLimit
           && ::send(socket(), message.constData(), size_t(message.size()), MSG_DONTWAIT | MSG_NOSIGNAL)
                  == message.size();
}

Child::Received Child::receive(Answer* answer) {
    // One byte more than a message may have, so that a longer one shows itself.
    QByteArray message(messageLimit + 1, Qt::Uninitialized);
    const ssize_t size = ::recv(socket(), message.data(), size_t(message.size()), MSG_DONTWAIT);
    if (size < 0)
        return errno == EAGAIN || errno == EINTR ? Received::nothing : Received::gone;
    if (size == 0)
        return Received::gone;
    message.truncate(size);
    const std::optional<Answer> decoded = decodedAnswer(message);
    if (!decoded)
        return Received::nonsense;
    *answer = *decoded;
    if (m_unanswered > 0 && --m_unanswered > 0)
        m_files.removeFirst();
    return Received::answer;
}

QByteArray Child::bulk(quint32 number, qsizetype size) const {
    constexpr qsizetype kept = 4 * 1024 * 1024;
    QByteArray copy(reinterpret_cast<const char*>(m_block.arenaOf(number).data()), size);
    // Pages once touched stay; after a large answer they go back.
    if (size > kept)
        ::fallocate(m_memory.number(), FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, SharedBlock::placeOf(number),
                    arenaSize);
    return copy;
}

} // namespace lumbra::reader

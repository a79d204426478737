// SPDX-License-Identifier: GPL-3.0-or-later
#include "Sandbox.h"

#include <fcntl.h>
#include <sched.h>
#include <seccomp.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>

#include <algorithm>
#include <cerrno>
#include <initializer_list>
#include <memory>

namespace lumbra::reader::Sandbox {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
const bool boundsMemory = false;
#elif defined(__has_feature)
const bool boundsMemory = !__has_feature(address_sanitizer) && !__has_feature(thread_sanitizer);
#else
const bool boundsMemory = true;
#endif

namespace {

constexpr rlim_t addressSpace = rlim_t(2) * 1024 * 1024 * 1024;
constexpr rlim_t openFiles = 128;

// Everything that reading, computing and starting a thread take; what is not here answers EPERM.
constexpr int allowed[] = {
    // memory
    SCMP_SYS(brk), SCMP_SYS(mmap), SCMP_SYS(munmap), SCMP_SYS(mremap), SCMP_SYS(mprotect), SCMP_SYS(madvise),
    SCMP_SYS(membarrier),
    // files, for reading
    SCMP_SYS(read), SCMP_SYS(readv), SCMP_SYS(pread64), SCMP_SYS(preadv), SCMP_SYS(lseek), SCMP_SYS(close),
    SCMP_SYS(stat), SCMP_SYS(lstat), SCMP_SYS(fstat), SCMP_SYS(newfstatat), SCMP_SYS(statx), SCMP_SYS(statfs),
    SCMP_SYS(fstatfs), SCMP_SYS(access), SCMP_SYS(faccessat), SCMP_SYS(faccessat2), SCMP_SYS(readlink),
    SCMP_SYS(readlinkat), SCMP_SYS(getdents), SCMP_SYS(getdents64), SCMP_SYS(getcwd), SCMP_SYS(fadvise64),
    SCMP_SYS(dup), SCMP_SYS(dup2), SCMP_SYS(dup3),
    // what was opened before: the pair, standard error and wake-ups between threads
    SCMP_SYS(write), SCMP_SYS(writev), SCMP_SYS(poll), SCMP_SYS(ppoll), SCMP_SYS(select), SCMP_SYS(pselect6),
    SCMP_SYS(epoll_create1), SCMP_SYS(epoll_ctl), SCMP_SYS(epoll_wait), SCMP_SYS(epoll_pwait), SCMP_SYS(eventfd2),
    SCMP_SYS(pipe2), SCMP_SYS(timerfd_create), SCMP_SYS(timerfd_settime),
    // threads and signals
    SCMP_SYS(futex), SCMP_SYS(set_robust_list), SCMP_SYS(get_robust_list), SCMP_SYS(rseq), SCMP_SYS(set_tid_address),
    SCMP_SYS(gettid), SCMP_SYS(getpid), SCMP_SYS(getppid), SCMP_SYS(sched_yield), SCMP_SYS(sched_getaffinity),
    SCMP_SYS(sched_getparam), SCMP_SYS(sched_getscheduler), SCMP_SYS(sched_get_priority_max),
    SCMP_SYS(sched_get_priority_min), SCMP_SYS(getpriority), SCMP_SYS(rt_sigaction), SCMP_SYS(rt_sigprocmask),
    SCMP_SYS(rt_sigreturn), SCMP_SYS(sigaltstack), SCMP_SYS(arch_prctl), SCMP_SYS(restart_syscall), SCMP_SYS(exit),
    SCMP_SYS(exit_group),
    // time and itself
    SCMP_SYS(clock_gettime), SCMP_SYS(clock_getres), SCMP_SYS(clock_nanosleep), SCMP_SYS(nanosleep),
    SCMP_SYS(gettimeofday), SCMP_SYS(time), SCMP_SYS(times), SCMP_SYS(getrusage), SCMP_SYS(getrlimit),
    SCMP_SYS(setrlimit), SCMP_SYS(getrandom), SCMP_SYS(uname), SCMP_SYS(sysinfo), SCMP_SYS(getuid), SCMP_SYS(geteuid),
    SCMP_SYS(getgid), SCMP_SYS(getegid), SCMP_SYS(getresuid), SCMP_SYS(getresgid)};

constexpr scmp_datum_t everyBit = ~scmp_datum_t(0);

// Opening in any way that could make, cut or change a file.
constexpr scmp_datum_t writing = O_ACCMODE | O_CREAT | O_TRUNC | O_APPEND | (O_TMPFILE & ~O_DIRECTORY);

bool limit(__rlimit_resource resource, rlim_t value) {
    const rlimit both{value, value};
    return ::setrlimit(resource, &both) == 0;
}

// The argument of a call, looked at through a mask.
scmp_arg_cmp bitsAre(unsigned argument, scmp_datum_t mask, scmp_datum_t value) {
    return {argument, SCMP_CMP_MASKED_EQ, mask, value};
}

bool filterCalls() {
    const std::unique_ptr<void, decltype(&seccomp_release)> filter(seccomp_init(SCMP_ACT_ERRNO(EPERM)),
                                                                   &seccomp_release);
    if (!filter)
        return false;
    void* const context = filter.get();
    bool added = true;
    const auto rule = [context, &added](uint32_t action, int call, std::initializer_list<scmp_arg_cmp> conditions) {
        if (call >= 0) // some exist on other machines only
            added &=
                seccomp_rule_add_array(context, action, call, unsigned(conditions.size()), conditions.begin()) == 0;
    };
    const auto allow = [&rule](int call, std::initializer_list<scmp_arg_cmp> conditions = {}) {
        rule(SCMP_ACT_ALLOW, call, conditions);
    };
    for (const int call : allowed)
        allow(call);
    allow(SCMP_SYS(open), {bitsAre(1, writing, O_RDONLY)});
    allow(SCMP_SYS(openat), {bitsAre(2, writing, O_RDONLY)});
    // Not who gets a signal when something arrives: that reaches other processes.
    for (const int command : {F_DUPFD, F_DUPFD_CLOEXEC, F_GETFD, F_SETFD, F_GETFL})
        allow(SCMP_SYS(fcntl), {bitsAre(1, everyBit, scmp_datum_t(command))});
    allow(SCMP_SYS(clone), {bitsAre(0, CLONE_THREAD, CLONE_THREAD)});
    allow(SCMP_SYS(prctl), {bitsAre(0, everyBit, PR_SET_NAME)});
    // Its own limits, which it can only lower for good.
    allow(SCMP_SYS(prlimit64), {bitsAre(0, everyBit, 0)});
    // A filter can't look at what clone3 is asked; told that there is none, the C library takes clone.
    rule(SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), {});
    // The threads that libraries have started by now are bound too.
    added &= seccomp_attr_set(context, SCMP_FLTATR_CTL_TSYNC, 1) == 0;
    return added && seccomp_load(context) == 0;
}

} // namespace

void tieToParent() {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
}

bool enter() {
    // A write to a file answers an error instead of ending the process: libraries try to keep caches.
    ::signal(SIGXFSZ, SIG_IGN);
    ::signal(SIGPIPE, SIG_IGN);
    return limit(RLIMIT_CORE, 0) && limit(RLIMIT_FSIZE, 0) && limit(RLIMIT_NOFILE, openFiles)
           && (!boundsMemory || limit(RLIMIT_AS, addressSpace)) && ::prctl(PR_SET_DUMPABLE, 0) == 0
           && ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && filterCalls();
}

void limitProcessorTime(std::chrono::milliseconds time) {
    rusage used{};
    ::getrusage(RUSAGE_SELF, &used);
    rlimit both{};
    ::getrlimit(RLIMIT_CPU, &both);
    // The kernel counts whole seconds; one more makes sure that no request gets less than its time.
    const auto spent = rlim_t(used.ru_utime.tv_sec + used.ru_stime.tv_sec);
    both.rlim_cur = std::min(both.rlim_max, spent + rlim_t(time.count() / 1000) + 2);
    ::setrlimit(RLIMIT_CPU, &both);
}

} // namespace lumbra::reader::Sandbox

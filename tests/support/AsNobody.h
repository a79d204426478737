// Lets this thread, and those that it starts, be nobody in particular for a while, also when root runs the tests, so
// that permissions hold. The temporary home lets nobody in; open it first.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <sys/syscall.h>
#include <unistd.h>

namespace lumbra {

class AsNobody {
public:
    AsNobody() : m_user(::geteuid()) { become(m_user == 0 ? 65534 : m_user); }
    ~AsNobody() { become(m_user); }
    Q_DISABLE_COPY_MOVE(AsNobody)

private:
    // The C library's call would change all threads.
    static void become(uid_t user) {
        if (::syscall(SYS_setresuid, -1, user, -1) != 0)
            qFatal("cannot become user %u", user);
    }

    const uid_t m_user;
};

} // namespace lumbra

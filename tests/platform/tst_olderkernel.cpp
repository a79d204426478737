// Extended attributes on a kernel that does not know the calls relative to a folder, as this process sees it: a filter
// refuses them.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ExtendedAttributes.h"
#include "support/TestHome.h"

#include <QTest>

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>

using namespace lumbra;

namespace {

constexpr AttributeName attribute{"com.lumbra.starred"};
constexpr AttributeName other{"com.lumbra.note"};

bool forgetCalls(quint32 first, quint32 last) {
    sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JGE | BPF_K, first, 0, 2),
        BPF_JUMP(BPF_JMP | BPF_JGT | BPF_K, last, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    sock_fprog filter{std::size(program), program};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

} // namespace

class OlderKernelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(forgetCalls(463, 466)); }

    void entriesOfAFolderAreStillRead() {
        TestHome home;
        const Location file = home.file("a.png");
        const int folder = ::open(home.path().path().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        char buffer[4];
        QVERIFY(!ExtendedAttributes::readAt(folder, "a.png", attribute, buffer));
        QVERIFY(ExtendedAttributes::write(file, attribute, "1234"));
        QCOMPARE(ExtendedAttributes::readAt(folder, "a.png", attribute, buffer), std::string_view("1234"));
        QVERIFY(ExtendedAttributes::write(file, attribute, "12345"));
        QVERIFY(!ExtendedAttributes::readAt(folder, "a.png", attribute, buffer));
        const auto names = ExtendedAttributes::NamesAt::of(folder, "a.png");
        QVERIFY(names && names->holds(attribute) && !names->holds(other));
        QVERIFY(!ExtendedAttributes::readAt(folder, "gone.png", attribute, buffer));
        const auto none = ExtendedAttributes::NamesAt::of(folder, "gone.png");
        QVERIFY(none && !none->holds(attribute));
        ::close(folder);
    }
};

QTEST_GUILESS_MAIN(OlderKernelTest)
#include "tst_olderkernel.moc"

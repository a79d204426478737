// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ExtendedAttributes.h"
#include "support/TestHome.h"

#include <QProcess>
#include <QTest>

#include <fcntl.h>
#include <unistd.h>

using namespace lumbra;

namespace {

constexpr AttributeName attribute{"com.lumbra.starred"};
constexpr AttributeName neighbour{"com.lumbra.starred.more"};

// What another program prints, when it ends well.
std::optional<QByteArray> outputOf(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return std::nullopt;
    return process.readAllStandardOutput();
}

class Folder {
public:
    explicit Folder(const Location& location)
        : descriptor(::open(location.path().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {}
    ~Folder() { ::close(descriptor); }
    Q_DISABLE_COPY_MOVE(Folder)

    const int descriptor;
};

// A file that is there wherever this runs, on a file system that keeps no attributes of users.
const Location fileWithoutAttributes{QByteArray("/proc/self/comm")};

} // namespace

class ExtendedAttributesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aValueIsReadAsItWasWritten() {
        TestHome home;
        const Location file = home.file("a.png");
        const QByteArray value("with\0a zero", 11);
        QVERIFY(ExtendedAttributes::write(file, attribute, value));
        QCOMPARE(ExtendedAttributes::read(file, attribute), value);
        QVERIFY(ExtendedAttributes::write(file, attribute, "shorter"));
        QCOMPARE(ExtendedAttributes::read(file, attribute), QByteArray("shorter"));
    }

    void anEmptyValueIsAValue() {
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(ExtendedAttributes::write(file, attribute, QByteArrayView()));
        QCOMPARE(ExtendedAttributes::read(file, attribute), QByteArray());
        QCOMPARE(ExtendedAttributes::read(file, attribute, 0), QByteArray());
    }

    void absenceIsNoValue() {
        TestHome home;
        QVERIFY(!ExtendedAttributes::read(home.file("a.png"), attribute));
        QVERIFY(!ExtendedAttributes::read(home.path().child("gone.png"), attribute));
        QVERIFY(!ExtendedAttributes::read(home.path().child("gone.png"), attribute, 64));
    }

    void aLongValueIsReadWholeButNotWithinASmallBound() {
        TestHome home;
        const Location file = home.file("a.png");
        const QByteArray value(3000, 'v');
        QVERIFY(ExtendedAttributes::write(file, attribute, value));
        QCOMPARE(ExtendedAttributes::read(file, attribute), value);
        QCOMPARE(ExtendedAttributes::read(file, attribute, 3000), value);
        QVERIFY(!ExtendedAttributes::read(file, attribute, 2999));
    }

    void otherProgramsSeeTheAttributeInTheNamespaceOfUsers() {
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(ExtendedAttributes::write(file, attribute, "12.5"));
        QCOMPARE(outputOf(QStringLiteral("getfattr"), {QStringLiteral("--only-values"), QStringLiteral("-n"),
                                                       QStringLiteral("user.com.lumbra.starred"), file.toString()}),
                 QByteArray("12.5"));
    }

    void theAttributeOfAnotherProgramIsRead() {
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(outputOf(QStringLiteral("setfattr"), {QStringLiteral("-n"), QStringLiteral("user.com.lumbra.starred"),
                                                      QStringLiteral("-v"), QStringLiteral("99"), file.toString()}));
        QCOMPARE(ExtendedAttributes::read(file, attribute), QByteArray("99"));
    }

    void removingTellsAbsenceFromFailure() {
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(ExtendedAttributes::write(file, attribute, "1"));
        QCOMPARE(ExtendedAttributes::remove(file, attribute), ExtendedAttributes::Removal::removed);
        QCOMPARE(ExtendedAttributes::remove(file, attribute), ExtendedAttributes::Removal::wasAbsent);
        QCOMPARE(ExtendedAttributes::remove(home.path().child("gone.png"), attribute),
                 ExtendedAttributes::Removal::failed);
    }

    void aFileSystemWithoutAttributesReadsAsNoValueAndRefusesWrites() {
        QVERIFY(!ExtendedAttributes::read(fileWithoutAttributes, attribute));
        QVERIFY(!ExtendedAttributes::read(fileWithoutAttributes, attribute, 64));
        QVERIFY(!ExtendedAttributes::write(fileWithoutAttributes, attribute, "1"));
        QCOMPARE(ExtendedAttributes::remove(fileWithoutAttributes, attribute), ExtendedAttributes::Removal::failed);
        QVERIFY(ExtendedAttributes::systemNames(fileWithoutAttributes).isEmpty());
        const Folder folder(fileWithoutAttributes.parent());
        char buffer[64];
        QVERIFY(!ExtendedAttributes::readAt(folder.descriptor, "comm", attribute, buffer));
        const auto names = ExtendedAttributes::NamesAt::of(folder.descriptor, "comm");
        QVERIFY(names && !names->holds(attribute));
    }

    void anEntryOfAnOpenFolderIsReadIntoTheCallersBuffer() {
        TestHome home;
        const Location file = home.file("sub/a.png");
        const Folder folder(file.parent());
        char buffer[8];
        QVERIFY(!ExtendedAttributes::readAt(folder.descriptor, "a.png", attribute, buffer));
        QVERIFY(ExtendedAttributes::write(file, attribute, "12345678"));
        QCOMPARE(ExtendedAttributes::readAt(folder.descriptor, "a.png", attribute, buffer),
                 std::string_view("12345678"));
        QVERIFY(ExtendedAttributes::write(file, attribute, "123456789"));
        QVERIFY(!ExtendedAttributes::readAt(folder.descriptor, "a.png", attribute, buffer));
        QVERIFY(!ExtendedAttributes::readAt(folder.descriptor, "gone.png", attribute, buffer));
    }

    void namesAreToldWholeAndNotByTheirBeginnings() {
        TestHome home;
        const Location file = home.file("a.png");
        const Folder folder(home.path());
        QVERIFY(ExtendedAttributes::write(file, neighbour, "1"));
        auto names = ExtendedAttributes::NamesAt::of(folder.descriptor, "a.png");
        QVERIFY(names && names->holds(neighbour) && !names->holds(attribute));
        QVERIFY(ExtendedAttributes::write(file, attribute, "1"));
        names = ExtendedAttributes::NamesAt::of(folder.descriptor, "a.png");
        QVERIFY(names && names->holds(neighbour) && names->holds(attribute));
        QCOMPARE(ExtendedAttributes::systemNames(file).size(), 2);
    }

    void namesTooManyToHoldCannotBeTold() {
        TestHome home;
        const Location file = home.file("a.png");
        for (int number = 0; number < 8; ++number) {
            const QString name = QStringLiteral("user.%1%2").arg(number).arg(QString(200, u'n'));
            QVERIFY(outputOf(QStringLiteral("setfattr"), {QStringLiteral("-n"), name, file.toString()}));
        }
        const Folder folder(home.path());
        QVERIFY(!ExtendedAttributes::NamesAt::of(folder.descriptor, "a.png"));
        QCOMPARE(ExtendedAttributes::systemNames(file).size(), 8);
    }
};

QTEST_GUILESS_MAIN(ExtendedAttributesTest)
#include "tst_extendedattributes.moc"

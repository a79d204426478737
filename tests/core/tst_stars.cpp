// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Stars.h"
#include "support/TestHome.h"

#include <QFile>
#include <QProcess>
#include <QTest>

#include <fcntl.h>
#include <unistd.h>

using namespace lumbra;

namespace {

constexpr AttributeName legacyAttribute{"agency.tarnwick.folia.starred"};
constexpr AttributeName noteAttribute{"com.lumbra.note"};

void set(const Location& file, const AttributeName& name, QByteArrayView value) {
    QVERIFY(ExtendedAttributes::write(file, name, value));
}

// Both ways of reading, which must never differ.
std::optional<Date> starOf(const Location& file) {
    const int folder = ::open(file.parent().path().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const auto atFolder = Stars::readAt(folder, file.name().toUtf8().constData());
    ::close(folder);
    const auto byPath = Stars::read(file);
    if (atFolder != byPath)
        qFatal("the two ways of reading a star differ");
    return byPath;
}

} // namespace

class StarsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aStarIsTheMomentOfStarring() {
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(!starOf(file));
        const Date before = Date::now();
        QVERIFY(Stars::write(file, true));
        const auto star = starOf(file);
        QVERIFY(star && *star >= before && *star <= Date::now());
    }

    void starringAgainMovesTheDate() {
        TestHome home;
        const Location file = home.file("a.png");
        set(file, Stars::attribute, "1000.5");
        QCOMPARE(starOf(file), Date{1000.5});
        QVERIFY(Stars::write(file, true));
        QVERIFY(*starOf(file) > Date{1000.5});
    }

    void theValueIsPlainDecimalTextThatReadsBackExactly() {
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(Stars::write(file, true));
        const QByteArray text = *ExtendedAttributes::read(file, Stars::attribute);
        bool isNumber = false;
        QCOMPARE(text.toDouble(&isNumber), starOf(file)->seconds);
        QVERIFY(isNumber);
        QCOMPARE(QByteArray::number(text.toDouble(), 'g', QLocale::FloatingPointShortest).toDouble(), text.toDouble());
        QVERIFY(text.size() <= QByteArray::number(text.toDouble(), 'g', QLocale::FloatingPointShortest).size());
    }

    void valuesAreReadOrTakenForNone_data() {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<double>("seconds");
        const double none = -1;
        QTest::newRow("whole seconds") << QByteArray("1700000000") << 1700000000.0;
        QTest::newRow("a fraction") << QByteArray("1700000000.123457") << 1700000000.123457;
        QTest::newRow("with a point and zero") << QByteArray("5.0") << 5.0;
        QTest::newRow("an exponent") << QByteArray("1.7e+09") << 1.7e9;
        QTest::newRow("exactly 64 bytes") << QByteArray("1.") + QByteArray(62, '0') << 1.0;
        QTest::newRow("65 bytes") << QByteArray("1.") + QByteArray(63, '0') << none;
        QTest::newRow("a hundred bytes") << QByteArray(100, '1') << none;
        QTest::newRow("empty") << QByteArray() << none;
        QTest::newRow("a word") << QByteArray("yes") << none;
        QTest::newRow("text after the number") << QByteArray("12 ") << none;
        QTest::newRow("text before the number") << QByteArray(" 12") << none;
        QTest::newRow("a terminator") << QByteArray("12\0", 3) << none;
        QTest::newRow("no UTF-8") << QByteArray("12\xff") << none;
        QTest::newRow("infinite") << QByteArray("inf") << none;
        QTest::newRow("no number") << QByteArray("nan") << none;
    }

    void valuesAreReadOrTakenForNone() {
        QFETCH(QByteArray, value);
        QFETCH(double, seconds);
        TestHome home;
        const Location file = home.file("a.png");
        set(file, Stars::attribute, value);
        const auto star = starOf(file);
        QCOMPARE(star.has_value(), seconds >= 0);
        if (star)
            QCOMPARE(star->seconds, seconds);
    }

    void aFileWithBothAttributesReadsAsTheNewOne() {
        TestHome home;
        const Location file = home.file("a.png");
        set(file, legacyAttribute, "1");
        set(file, Stars::attribute, "2");
        QCOMPARE(starOf(file), Date{2});
    }

    void theLegacyAttributeCountsAndIsLeftAlone() {
        TestHome home;
        const Location file = home.file("a.png");
        set(file, legacyAttribute, "1");
        QCOMPARE(starOf(file), Date{1});
        QCOMPARE(ExtendedAttributes::read(file, legacyAttribute), QByteArray("1"));
        QVERIFY(!ExtendedAttributes::read(file, Stars::attribute));
    }

    void aMalformedNewAttributeGivesWayToAValidLegacyOne() {
        TestHome home;
        const Location file = home.file("a.png");
        set(file, legacyAttribute, "1");
        set(file, Stars::attribute, "never");
        QCOMPARE(starOf(file), Date{1});
    }

    void otherAttributesAreNoStar() {
        TestHome home;
        const Location file = home.file("a.png");
        set(file, noteAttribute, "12");
        QVERIFY(!starOf(file));
    }

    void aStarAmongTooManyAttributesToListIsStillRead() {
        TestHome home;
        const Location file = home.file("a.png");
        for (int number = 0; number < 8; ++number) {
            QProcess process;
            process.start(QStringLiteral("setfattr"),
                          {QStringLiteral("-n"), QStringLiteral("user.%1%2").arg(number).arg(QString(200, u'n')),
                           file.toString()});
            QVERIFY(process.waitForFinished());
            QCOMPARE(process.exitCode(), 0);
        }
        QVERIFY(!starOf(file));
        set(file, legacyAttribute, "1");
        QCOMPARE(starOf(file), Date{1});
        set(file, Stars::attribute, "2");
        QCOMPARE(starOf(file), Date{2});
    }

    void anyChangeEndsTheLegacyAttribute_data() {
        QTest::addColumn<bool>("starred");
        QTest::newRow("starring") << true;
        QTest::newRow("unstarring") << false;
    }

    void anyChangeEndsTheLegacyAttribute() {
        QFETCH(bool, starred);
        TestHome home;
        const Location file = home.file("a.png");
        set(file, legacyAttribute, "1");
        QVERIFY(Stars::write(file, starred));
        QVERIFY(!ExtendedAttributes::read(file, legacyAttribute));
        QCOMPARE(starOf(file).has_value(), starred);
    }

    void unstarringAFileWithoutAStarSucceeds() {
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(Stars::write(file, false));
        QVERIFY(Stars::write(file, true));
        QVERIFY(Stars::write(file, false));
        QVERIFY(Stars::write(file, false));
        QVERIFY(!starOf(file));
    }

    void aFileThatIsGoneCannotBeStarredOrUnstarred() {
        TestHome home;
        const Location gone = home.path().child("gone.png");
        QVERIFY(!starOf(gone));
        QVERIFY(!Stars::write(gone, true));
        QVERIFY(!Stars::write(gone, false));
    }

    // The system would read the name up to the NUL.
    void aNameWithANulInItReachesNoOtherFile() {
        TestHome home;
        const Location file = home.file("a.png");
        const Location hostile(QString(file.toString() + QChar(u'\0') + u'b'));
        QVERIFY(!Stars::write(hostile, true));
        QVERIFY(!Stars::read(file));
        QVERIFY(Stars::write(file, true));
        QVERIFY(!Stars::read(hostile));
        QVERIFY(!Stars::write(hostile, false));
        QVERIFY(Stars::read(file));
    }

    void aFileSystemWithoutAttributesHasNoStars() {
        const Location file(QByteArray("/proc/self/comm"));
        QVERIFY(!starOf(file));
        QVERIFY(!Stars::write(file, true));
        QVERIFY(!starOf(file));
    }

    void aStarIsKeptWhenTheFileIsRenamed() {
        TestHome home;
        const Location file = home.file("a.png");
        QVERIFY(Stars::write(file, true));
        const auto star = starOf(file);
        const Location renamed = home.path().child("b.png");
        QVERIFY(QFile::rename(file.toString(), renamed.toString()));
        QCOMPARE(starOf(renamed), star);
    }
};

QTEST_GUILESS_MAIN(StarsTest)
#include "tst_stars.moc"

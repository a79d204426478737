// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Phrases.h"

#include <QDateTime>
#include <QLocale>
#include <QTest>
#include <QTimeZone>

#include <limits>

using namespace lumbra;

class PhrasesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        // Neither the locale nor where the machine stands may show in a phrase.
        qputenv("LC_ALL", "de_DE.UTF-8");
        qputenv("TZ", "America/New_York");
        tzset();
        QLocale::setDefault(QLocale(QLocale::German));
    }

    void sizesReadInStepsOfAThousand_data() {
        QTest::addColumn<qint64>("count");
        QTest::addColumn<QString>("text");
        const auto row = [](qint64 count, const char* text) {
            QTest::newRow(text) << count << QString::fromUtf8(text);
        };
        row(0, "Zero KB");
        row(1, "1 byte");
        row(2, "2 bytes");
        row(512, "512 bytes");
        row(999, "999 bytes");
        row(1'000, "1 KB");
        row(1'499, "1 KB");
        row(34'500, "35 KB");
        row(999'499, "999 KB");
        row(999'500, "1 MB");
        row(1'049'999, "1 MB");
        row(1'050'000, "1.1 MB");
        row(12'340'000, "12.3 MB");
        row(999'949'999, "999.9 MB");
        row(999'950'000, "1 GB");
        row(1'005'000'000, "1.01 GB");
        row(1'200'000'000, "1.2 GB");
        row(3'254'000'000, "3.25 GB");
        row(12'000'000'000'000, "12 TB");
        row(std::numeric_limits<qint64>::max(), "9.22 EB");
        QTest::newRow("no size is less than nothing") << qint64(-5) << QStringLiteral("Zero KB");
    }

    void sizesReadInStepsOfAThousand() {
        QFETCH(qint64, count);
        QTEST(Phrases::bytes(count), "text");
    }

    void timesReadFromNow_data() {
        QTest::addColumn<QString>("then");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* then, const char* text) {
            QTest::newRow(then) << QString::fromUtf8(then) << QString::fromUtf8(text);
        };
        // Seen from a Friday, 15 March 2024, at noon; five days earlier the clocks were put forward.
        row("2024-03-15T12:00:00", "now");
        row("2024-03-15T11:59:59", "1 second ago");
        row("2024-03-15T11:59:01", "59 seconds ago");
        row("2024-03-15T11:59:00", "1 minute ago");
        row("2024-03-15T11:00:01", "59 minutes ago");
        row("2024-03-15T11:00:00", "1 hour ago");
        row("2024-03-15T10:00:00", "2 hours ago");
        row("2024-03-14T12:00:01", "23 hours ago");
        row("2024-03-14T12:00:00", "yesterday");
        row("2024-03-14T00:00:00", "yesterday");
        row("2024-03-13T23:59:59", "2 days ago");
        row("2024-03-10T01:59:59", "5 days ago");
        row("2024-03-09T00:00:00", "6 days ago");
        row("2024-03-08T23:00:00", "last week");
        row("2024-03-01T00:00:00", "2 weeks ago");
        row("2024-02-16T00:00:00", "4 weeks ago");
        row("2024-02-15T00:00:00", "last month");
        row("2024-01-16T00:00:00", "last month");
        row("2023-09-15T00:00:00", "6 months ago");
        row("2023-03-16T00:00:00", "11 months ago");
        row("2023-03-15T00:00:00", "last year");
        row("1970-01-01T00:00:00", "54 years ago");
        row("2024-03-15T12:00:30", "in 30 seconds");
        row("2024-03-15T15:30:00", "in 3 hours");
        row("2024-03-16T12:00:00", "tomorrow");
        row("2024-03-22T12:00:00", "next week");
    }

    void timesReadFromNow() {
        QFETCH(QString, then);
        const auto date = [](const QString& text) {
            return Date{double(QDateTime::fromString(text, Qt::ISODate).toSecsSinceEpoch())};
        };
        QTEST(Phrases::relativeTime(date(then), date(QStringLiteral("2024-03-15T12:00:00"))), "text");
    }

    void aDateThatIsMissingIsFarAway() {
        QVERIFY(Phrases::relativeTime(Date::distantPast(), Date{1'700'000'000}).endsWith(u"years ago"));
        QVERIFY(!Phrases::relativeTime(Date{1e300}, Date{0}).isEmpty());
    }

    void aMomentIsOfTheLocalTimeZone() {
        QCOMPARE(Phrases::dateAndTime({1'763'746'200}), QStringLiteral("Nov 21, 2025 at 12:30 PM"));
        QCOMPARE(Phrases::dateAndTime({1'717'200'000}), QStringLiteral("May 31, 2024 at 8:00 PM")); // in summer time
        QVERIFY(!Phrases::dateAndTime({1e300}).isEmpty());
    }
};

QTEST_GUILESS_MAIN(PhrasesTest)
#include "tst_phrases.moc"

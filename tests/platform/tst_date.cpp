// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Date.h"

#include <QDateTime>
#include <QTest>

using namespace lumbra;

class DateTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nowIsThePresentInSecondsSince1970() {
        const double before = double(QDateTime::currentMSecsSinceEpoch()) / 1000;
        const Date now = Date::now();
        const double after = double(QDateTime::currentMSecsSinceEpoch() + 1) / 1000;
        QVERIFY(now.seconds >= before && now.seconds <= after);
    }

    void theDistantPastIsEarlierThanAnyFile() {
        QCOMPARE(QDateTime::fromSecsSinceEpoch(qint64(Date::distantPast().seconds), Qt::UTC),
                 QDateTime(QDate(1, 1, 1), QTime(0, 0), Qt::UTC));
        QVERIFY(Date::distantPast() < Date{-2e10});
    }

    void intervalsAreSeconds() {
        QCOMPARE(Date{10} + 2.5, Date{12.5});
        QCOMPARE(Date{10} - 2.5, Date{7.5});
        QCOMPARE(Date{10} - Date{4}, 6.0);
    }
};

QTEST_GUILESS_MAIN(DateTest)
#include "tst_date.moc"

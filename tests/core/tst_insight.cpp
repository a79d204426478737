// SPDX-License-Identifier: GPL-3.0-or-later
#include "InsightSupport.h"
#include "platform/Date.h"

#include <QTest>

using namespace lumbra;

class InsightTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aNewRecordHoldsNothingAndIsOfNow() {
        const Date before = Date::now();
        const Insight insight(QStringLiteral("/p/a.png"), 5, 7.5);
        QCOMPARE(insight.path, QStringLiteral("/p/a.png"));
        QCOMPARE(insight.size, 5);
        QCOMPARE(insight.modified, 7.5);
        QVERIFY(insight.title.isEmpty() && insight.summary.isEmpty() && insight.text.isEmpty()
                && insight.transcript.isEmpty() && insight.note.isEmpty());
        QVERIFY(insight.tags.isEmpty() && insight.labels.isEmpty() && !insight.featurePrint);
        QCOMPARE(insight.level, 0);
        QVERIFY(insight.analyzed >= before.seconds && insight.analyzed <= Date::now().seconds);
    }

    void theNameIsTheLastComponent_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("name");
        QTest::newRow("file") << "/p/a.png"
                              << "a.png";
        QTest::newRow("trailing slashes") << "/p/a//"
                                          << "a";
        QTest::newRow("without a folder") << "a.png"
                                          << "a.png";
        QTest::newRow("root") << "/"
                              << "/";
        QTest::newRow("nothing") << ""
                                 << "";
        QTest::newRow("with a newline") << "/p/a\nb%.png"
                                        << "a\nb%.png";
    }
    void theNameIsTheLastComponent() {
        QFETCH(QString, path);
        QTEST(Insight(path, 0, 0).name(), "name");
    }
};

QTEST_GUILESS_MAIN(InsightTest)
#include "tst_insight.moc"

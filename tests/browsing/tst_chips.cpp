// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/chrome/Chips.h"
#include "support/Strings.h"

#include <QTest>

using namespace lumbra;

namespace {

QStringList labels(const QVariantList& choices) {
    QStringList labels;
    for (const QVariant& choice : choices)
        labels.append(choice.value<Choice>().label);
    return labels;
}

QVariantList values(const QVariantList& choices) {
    QVariantList values;
    for (const QVariant& choice : choices)
        values.append(choice.value<Choice>().value);
    return values;
}

} // namespace

class TestChips : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void countsAreShort_data() {
        QTest::addColumn<qint64>("count");
        QTest::addColumn<QString>("text");
        QTest::newRow("none") << qint64(0) << "";
        QTest::newRow("less than none") << qint64(-1) << "";
        QTest::newRow("one") << qint64(1) << "1";
        QTest::newRow("just below a thousand") << qint64(999) << "999";
        QTest::newRow("a thousand") << qint64(1000) << "1.0k";
        QTest::newRow("rounded") << qint64(1540) << "1.5k";
        QTest::newRow("many") << qint64(123'456) << "123.5k";
    }
    void countsAreShort() {
        QFETCH(qint64, count);
        QTEST(Chips::countText(count), "text");
    }

    void periods() {
        QCOMPARE(labels(Chips::periods()), strings({"24 hours", "3 days", "7 days", "30 days"}));
        QCOMPARE(values(Chips::periods()), (QVariantList{1, 3, 7, 30}));
    }

    void aPeriodWithoutAChipHasItsWordsToo() {
        QCOMPARE(Chips::periodText(1), u"24 hours"_qs);
        QCOMPARE(Chips::periodText(30), u"30 days"_qs);
        QCOMPARE(Chips::periodText(14), u"14 days"_qs);
    }

    void kindsStandInTheOrderOfTheModel() {
        QCOMPARE(labels(Chips::kinds()), strings({"Images", "Videos", "Audio", "Documents"}));
        QCOMPARE(values(Chips::kinds()), (QVariantList{u"image"_qs, u"video"_qs, u"audio"_qs, u"document"_qs}));
    }

    void sortOrders() {
        QCOMPARE(labels(Chips::sortOrders()), strings({"Newest first", "Oldest first", "Name", "Largest first"}));
        QCOMPARE(values(Chips::sortOrders()), (QVariantList{u"newest"_qs, u"oldest"_qs, u"name"_qs, u"size"_qs}));
    }
};

QTEST_GUILESS_MAIN(TestChips)
#include "tst_chips.moc"

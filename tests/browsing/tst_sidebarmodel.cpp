// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/sidebar/RowDifference.h"
#include "browsing/sidebar/SidebarModel.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace lumbra;

namespace {

QStringList letters(const QString& text) {
    return text.split(QString(), Qt::SkipEmptyParts);
}

// "-2,1" takes one row away at 2, "4>0" moves, "+3,2" puts two in.
QString written(const QList<RowDifference::Step>& steps) {
    QStringList texts;
    for (const RowDifference::Step& step : steps) {
        switch (step.kind) {
        case RowDifference::Kind::remove:
            texts.append(QStringLiteral("-%1,%2").arg(step.first).arg(step.count));
            break;
        case RowDifference::Kind::move:
            texts.append(QStringLiteral("%1>%2").arg(step.first).arg(step.to));
            break;
        case RowDifference::Kind::insert:
            texts.append(QStringLiteral("+%1,%2").arg(step.first).arg(step.count));
            break;
        }
    }
    return texts.join(u' ');
}

SidebarRow titled(const QString& id, const QString& title) {
    return {.id = id, .title = title};
}

QList<SidebarRow> rows(const QStringList& ids) {
    QList<SidebarRow> made;
    for (const QString& id : ids)
        made.append(titled(id, id));
    return made;
}

QStringList titles(const SidebarModel& model) {
    QStringList found;
    for (int row = 0; row < model.rowCount(); ++row)
        found.append(model.data(model.index(row), Qt::DisplayRole).toString());
    return found;
}

} // namespace

class tst_SidebarModel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void steps_data();
    void steps();
    void anyListBecomesAnyOther();
    void aLongListThatIsSortedAnewIsNotMovedRowByRow();
    void equalRowsNotifyNobody();
    void onlyRowsThatDifferAreDrawnAnew();
    void aRowThatMovesKeepsItsItem();
};

void tst_SidebarModel::steps_data() {
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("steps");
    const auto row = [](const char* name, const char* before, const char* after, const char* steps) {
        QTest::newRow(name) << QString::fromLatin1(before) << QString::fromLatin1(after) << QString::fromLatin1(steps);
    };
    row("nothing changed", "abc", "abc", "");
    row("from nothing", "", "abc", "+0,3");
    row("to nothing", "abc", "", "-0,3");
    row("neighbours go together", "abcde", "ae", "-1,3");
    row("rows apart go one by one, from the end", "abcde", "bd", "-4,1 -2,1 -0,1");
    row("children open below their row", "abc", "axyzbc", "+1,3");
    row("the last to the top moves one row", "abcd", "dabc", "3>0");
    row("the first to the end moves one row", "abcd", "bcda", "0>3");
    row("two that swap move one row", "abcd", "acbd", "1>2");
    row("all at once", "abcde", "xedb", "-2,1 -0,1 1>2 0>2 +0,1");
}

void tst_SidebarModel::steps() {
    QFETCH(QString, before);
    QFETCH(QString, after);
    QTEST(written(RowDifference::between(letters(before), letters(after))), "steps");
}

void tst_SidebarModel::anyListBecomesAnyOther() {
    QRandomGenerator random(7);
    const auto shuffled = [&] {
        QStringList some = letters(QStringLiteral("abcdefghijklmnop"));
        std::shuffle(some.begin(), some.end(), random);
        return some.first(random.bounded(int(some.size()) + 1));
    };
    SidebarModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    for (int round = 0; round < 300; ++round) {
        const QStringList next = shuffled();
        model.setRows(rows(next));
        QCOMPARE(titles(model), next);
    }
}

void tst_SidebarModel::aLongListThatIsSortedAnewIsNotMovedRowByRow() {
    QStringList names;
    for (int number = 0; number < 500; ++number)
        names.append(QString::number(number));
    QStringList reversed = names;
    std::reverse(reversed.begin(), reversed.end());
    const QList<RowDifference::Step> steps = RowDifference::between(names, reversed);
    for (const RowDifference::Step& step : steps)
        QVERIFY(step.kind != RowDifference::Kind::move);

    SidebarModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.setRows(rows(names));
    model.setRows(rows(reversed));
    QCOMPARE(titles(model), reversed);
}

void tst_SidebarModel::equalRowsNotifyNobody() {
    SidebarModel model;
    model.setRows(rows(letters(QStringLiteral("abc"))));
    const QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    const QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    const QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    model.setRows(rows(letters(QStringLiteral("abc"))));
    QCOMPARE(changed.size() + inserted.size() + reset.size(), 0);
}

void tst_SidebarModel::onlyRowsThatDifferAreDrawnAnew() {
    SidebarModel model;
    QList<SidebarRow> shown = rows(letters(QStringLiteral("abcde")));
    model.setRows(shown);
    const QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    shown[1].title = QStringLiteral("B");
    shown[2].selected = true;
    shown[4].count = QStringLiteral("5");
    model.setRows(shown);
    QCOMPARE(changed.size(), 2);
    QCOMPARE(changed[0][0].toModelIndex().row(), 1);
    QCOMPARE(changed[0][1].toModelIndex().row(), 2);
    QCOMPARE(changed[1][0].toModelIndex().row(), 4);
    QCOMPARE(model.data(model.index(4), SidebarModel::rowRole).value<SidebarRow>().count, QStringLiteral("5"));
}

void tst_SidebarModel::aRowThatMovesKeepsItsItem() {
    SidebarModel model;
    model.setRows(rows(letters(QStringLiteral("abcd"))));
    const QPersistentModelIndex last = model.index(3);
    model.setRows(rows(letters(QStringLiteral("dabc"))));
    QCOMPARE(last.row(), 0);
}

QTEST_GUILESS_MAIN(tst_SidebarModel)
#include "tst_sidebarmodel.moc"

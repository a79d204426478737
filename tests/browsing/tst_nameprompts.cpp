// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/NamePrompts.h"

#include <QSignalSpy>
#include <QTest>

using namespace lumbra;

class tst_nameprompts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aNameIsChecked_data();
    void aNameIsChecked();
    void aRequestStartsWithItsWholeInitialText();
    void theActionTakesTheTrimmedNameOnceTheSheetHasGone();
    void aRefusedNameKeepsTheSheet_data();
    void aRefusedNameKeepsTheSheet();
    void dismissingDoesNothingElse();
    void aNewRequestWithTheSameWordsStartsAnew();
    void anActionMayAskAgain();
};

void tst_nameprompts::aNameIsChecked_data() {
    const QString slash = QStringLiteral("Names can't contain / or :.");
    const QString dot = QStringLiteral("Names starting with a dot are hidden.");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("problem");
    QTest::addColumn<bool>("canCommit");
    QTest::newRow("empty: no message, no button") << QString() << QString() << false;
    QTest::newRow("only blanks: no message, no button") << QStringLiteral(" \t\n ") << QString() << false;
    QTest::newRow("a slash") << QStringLiteral("a/b") << slash << false;
    QTest::newRow("a colon") << QStringLiteral("a:b") << slash << false;
    QTest::newRow("a leading dot") << QStringLiteral(".hidden") << dot << false;
    QTest::newRow("a leading dot with blanks around") << QStringLiteral("  .hidden ") << dot << false;
    QTest::newRow("both: the first wins") << QStringLiteral(".a/b") << slash << false;
    QTest::newRow("a dot within") << QStringLiteral("a.b") << QString() << true;
    QTest::newRow("blanks around a name") << QStringLiteral("  stills ") << QString() << true;
}

void tst_nameprompts::aNameIsChecked() {
    QFETCH(QString, name);
    QFETCH(QString, problem);
    QFETCH(bool, canCommit);
    NamePrompts prompts;
    prompts.ask(NamePrompt::request(QStringLiteral("New Folder"), QString(), {}));
    prompts.setName(name);
    QCOMPARE(prompts.problem(), problem);
    QCOMPARE(prompts.canCommit(), canCommit);
}

void tst_nameprompts::aRequestStartsWithItsWholeInitialText() {
    NamePrompts prompts;
    prompts.ask(NamePrompt::request(QStringLiteral("Rename Folder"), QStringLiteral("stills"), {}));
    QVERIFY(prompts.asking());
    QCOMPARE(prompts.title(), QStringLiteral("Rename Folder"));
    QCOMPARE(prompts.confirm(), QStringLiteral("Rename"));
    QCOMPARE(prompts.name(), QStringLiteral("stills"));
}

void tst_nameprompts::theActionTakesTheTrimmedNameOnceTheSheetHasGone() {
    NamePrompts prompts;
    QString taken;
    bool wasAsking = true;
    prompts.ask(NamePrompt::request(QStringLiteral("New Folder"), QString(), [&](const QString& name) {
        taken = name;
        wasAsking = prompts.asking();
    }));
    prompts.setName(QStringLiteral("  stills "));
    prompts.commit();
    QVERIFY(!prompts.asking());
    QVERIFY(taken.isEmpty()); // not yet: the sheet is still going
    QTRY_COMPARE(taken, QStringLiteral("stills"));
    QVERIFY(!wasAsking);
}

void tst_nameprompts::aRefusedNameKeepsTheSheet_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("blanks") << QStringLiteral("  ");
    QTest::newRow("slash") << QStringLiteral("a/b");
    QTest::newRow("dot") << QStringLiteral(".hidden");
}

void tst_nameprompts::aRefusedNameKeepsTheSheet() {
    QFETCH(QString, name);
    NamePrompts prompts;
    int runs = 0;
    prompts.ask(NamePrompt::request(QStringLiteral("New Folder"), QString(), [&](const QString&) { ++runs; }));
    prompts.setName(name);
    prompts.commit();
    QCoreApplication::processEvents();
    QVERIFY(prompts.asking());
    QCOMPARE(runs, 0);
}

void tst_nameprompts::dismissingDoesNothingElse() {
    NamePrompts prompts;
    int runs = 0;
    prompts.ask(
        NamePrompt::request(QStringLiteral("New Folder"), QStringLiteral("a"), [&](const QString&) { ++runs; }));
    prompts.dismiss();
    prompts.commit();
    QCoreApplication::processEvents();
    QVERIFY(!prompts.asking());
    QCOMPARE(runs, 0);
}

void tst_nameprompts::aNewRequestWithTheSameWordsStartsAnew() {
    NamePrompts prompts;
    const auto request = [] { return NamePrompt::request(QStringLiteral("New Folder"), QStringLiteral("a"), {}); };
    prompts.ask(request());
    prompts.setName(QStringLiteral("typed"));
    QSignalSpy changed(&prompts, &NamePrompts::promptChanged);
    prompts.ask(request());
    QCOMPARE(changed.size(), 1);
    QCOMPARE(prompts.name(), QStringLiteral("a"));
}

void tst_nameprompts::anActionMayAskAgain() {
    NamePrompts prompts;
    prompts.ask(NamePrompt::request(QStringLiteral("New Project"), QStringLiteral("a"), [&](const QString&) {
        prompts.ask(NamePrompt::request(QStringLiteral("New Folder"), QStringLiteral("b"), {}));
    }));
    prompts.commit();
    QTRY_VERIFY(prompts.asking());
    QCOMPARE(prompts.title(), QStringLiteral("New Folder"));
}

QTEST_GUILESS_MAIN(tst_nameprompts)
#include "tst_nameprompts.moc"

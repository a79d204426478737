// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/Confirmations.h"

#include <QSignalSpy>
#include <QTest>

using namespace lumbra;

class ConfirmationsTest : public QObject {
    Q_OBJECT

private:
    Confirmations m_confirmations;
    int m_done = 0;

    Confirmation question(const char* title) {
        return {.title = QString::fromLatin1(title), .confirm = QStringLiteral("Do"), .action = [this] { ++m_done; }};
    }

private Q_SLOTS:
    void init() {
        m_confirmations.dismiss();
        m_done = 0;
    }

    void whatIsAgreedToIsDoneOnce() {
        m_confirmations.ask(question("Sure?"));
        QVERIFY(m_confirmations.asking());
        QCOMPARE(m_confirmations.title(), QStringLiteral("Sure?"));
        m_confirmations.agree();
        m_confirmations.agree();
        QCOMPARE(m_done, 1);
        QVERIFY(!m_confirmations.asking());
        QCOMPARE(m_confirmations.title(), QStringLiteral("Sure?")); // while the alert goes
    }

    void whatIsDismissedIsNotDone() {
        m_confirmations.ask(question("Sure?"));
        m_confirmations.dismiss();
        m_confirmations.agree();
        QCOMPARE(m_done, 0);
    }

    void aNewQuestionDropsTheOldOne() {
        QSignalSpy changed(&m_confirmations, &Confirmations::questionChanged);
        m_confirmations.ask({.title = QStringLiteral("Old?"), .action = [] { QFAIL("dropped"); }});
        m_confirmations.ask(question("New?"));
        QCOMPARE(changed.count(), 2);
        m_confirmations.agree();
        QCOMPARE(m_done, 1);
    }

    void anActionMayAskAgain() {
        m_confirmations.ask(
            {.title = QStringLiteral("First?"), .action = [this] { m_confirmations.ask(question("Second?")); }});
        m_confirmations.agree();
        QVERIFY(m_confirmations.asking());
        m_confirmations.agree();
        QCOMPARE(m_done, 1);
    }
};

QTEST_GUILESS_MAIN(ConfirmationsTest)
#include "tst_confirmations.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/Toasts.h"
#include "support/TestHome.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace lumbra;
using namespace std::chrono_literals;

class tst_toasts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_home = std::make_unique<TestHome>();
        m_library = std::make_unique<Library>(m_home->folder("library"), true);
    }
    void cleanup() {
        m_library.reset();
        m_home.reset();
    }

    void theUsualTimeIsTwoAndAHalfSecondsAndALittle() { QCOMPARE(Toasts::usualTime, 2600ms); }
    void aToastGoesWhenItsTimeIsOver();
    void aSecondToastHasItsFullTime();
    void aRepeatedTextIsANewToast();
    void theSymbolOfAStar_data();
    void theSymbolOfAStar();
    void withoutAnUndoThereIsNoButton();
    void undoRunsTheActionOnceAndTakesTheToastAway();
    void anUndoMayRaiseAToastOfItsOwn();
    void aToastOnItsWayOutKeepsItsWords();

private:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<Library> m_library;
};

void tst_toasts::aToastGoesWhenItsTimeIsOver() {
    Toasts toasts(m_library.get(), 100ms);
    QVERIFY(!toasts.shown());
    m_library->setToast(Toast{.text = QStringLiteral("Copied")});
    QVERIFY(toasts.shown());
    QElapsedTimer time;
    time.start();
    QTRY_VERIFY(!m_library->toast());
    QVERIFY(time.elapsed() >= 95);
    QVERIFY(!toasts.shown());
}

void tst_toasts::aSecondToastHasItsFullTime() {
    Toasts toasts(m_library.get(), 300ms);
    m_library->setToast(Toast{.text = QStringLiteral("first")});
    QElapsedTimer sinceFirst;
    sinceFirst.start();
    QTRY_VERIFY(sinceFirst.elapsed() > 200);
    m_library->setToast(Toast{.text = QStringLiteral("second")});
    QElapsedTimer sinceSecond;
    sinceSecond.start();
    // It goes by its own time, not when the first one's would have been over.
    QTRY_VERIFY(!toasts.shown());
    QCOMPARE(toasts.text(), QStringLiteral("second"));
    QVERIFY(sinceSecond.elapsed() >= 295);
}

void tst_toasts::aRepeatedTextIsANewToast() {
    Toasts toasts(m_library.get());
    QSignalSpy appeared(&toasts, &Toasts::appeared);
    m_library->setToast(Toast{.text = QStringLiteral("Copied")});
    m_library->setToast(Toast{.text = QStringLiteral("Copied")});
    QCOMPARE(appeared.size(), 2);
}

void tst_toasts::theSymbolOfAStar_data() {
    QTest::addColumn<bool>("starred");
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("symbol");
    QTest::addColumn<bool>("amber");
    QTest::newRow("starred") << true << QString() << QStringLiteral("star.fill") << true;
    QTest::newRow("unstarred") << false << QString() << QStringLiteral("star.slash") << true;
    QTest::newRow("its own") << true << QStringLiteral("doc.on.doc.fill") << QStringLiteral("doc.on.doc.fill") << false;
}

void tst_toasts::theSymbolOfAStar() {
    QFETCH(bool, starred);
    QFETCH(QString, given);
    QFETCH(QString, symbol);
    QFETCH(bool, amber);
    Toasts toasts(m_library.get());
    Toast toast{.text = QStringLiteral("text"), .starred = starred};
    if (!given.isEmpty())
        toast.symbol = given;
    m_library->setToast(toast);
    QCOMPARE(toasts.symbol(), symbol);
    QCOMPARE(toasts.amber(), amber);
}

void tst_toasts::withoutAnUndoThereIsNoButton() {
    Toasts toasts(m_library.get());
    m_library->setToast(Toast{.text = QStringLiteral("Copied")});
    QVERIFY(!toasts.undoable());
    toasts.undo();
    QVERIFY(toasts.shown());
}

void tst_toasts::undoRunsTheActionOnceAndTakesTheToastAway() {
    Toasts toasts(m_library.get());
    int runs = 0;
    m_library->setToast(Toast{.text = QStringLiteral("Moved"), .undo = [&] { ++runs; }});
    QVERIFY(toasts.undoable());
    toasts.undo();
    toasts.undo();
    QCOMPARE(runs, 1);
    QVERIFY(!toasts.shown());
}

void tst_toasts::anUndoMayRaiseAToastOfItsOwn() {
    Toasts toasts(m_library.get());
    m_library->setToast(Toast{.text = QStringLiteral("Moved"),
                              .undo = [&] { m_library->setToast(Toast{.text = QStringLiteral("Moved back")}); }});
    toasts.undo();
    QVERIFY(toasts.shown());
    QCOMPARE(toasts.text(), QStringLiteral("Moved back"));
}

void tst_toasts::aToastOnItsWayOutKeepsItsWords() {
    Toasts toasts(m_library.get());
    m_library->setToast(Toast{.text = QStringLiteral("Copied")});
    m_library->setToast(std::nullopt);
    QVERIFY(!toasts.shown());
    QCOMPARE(toasts.text(), QStringLiteral("Copied"));
}

QTEST_GUILESS_MAIN(tst_toasts)
#include "tst_toasts.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/PreferenceKeys.h"
#include "shell/WindowMemory.h"
#include "support/TestHome.h"

#include <QFile>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

using namespace lumbra;

Q_DECLARE_METATYPE(QList<QRect>)

class tst_windowmemory : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_home = std::make_unique<TestHome>();
        m_preferences = std::make_unique<Preferences>(m_home->path().child("settings.ini"));
    }

    void aWindowIsPutWhereThereIsRoom_data();
    void aWindowIsPutWhereThereIsRoom();
    void theFirstWindowHasTheUsualSizeAsFarAsThereIsRoom();
    void theWindowCanNotBeMadeSmallerThanTheLeastSize();
    void placeAndSizeAreKept();
    void aMaximizedWindowComesBackSoAndKeepsItsOtherPlace();
    void aWindowThatIsClosedWhileItMovesIsKept();
    void aFullOrMinimizedWindowComesBackAsItWasBefore_data();
    void aFullOrMinimizedWindowComesBackAsItWasBefore();
    void nonsenseInTheFileIsNoPlace_data();
    void nonsenseInTheFileIsNoPlace();
    void theSidebarsWidthIsKept();
    void aSidebarsWidthFromTheFileIsBounded_data();
    void aSidebarsWidthFromTheFileIsBounded();

private:
    // The preferences as the next start reads them.
    void restart() {
        m_preferences->sync();
        m_preferences = std::make_unique<Preferences>(m_home->path().child("settings.ini"));
    }
    QString keptPlace() const { return m_preferences->value(PreferenceKeys::windowPlace); }
    static QRect screen() { return QGuiApplication::primaryScreen()->availableGeometry(); }

    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<Preferences> m_preferences;
};

void tst_windowmemory::aWindowIsPutWhereThereIsRoom_data() {
    QTest::addColumn<QRect>("kept");
    QTest::addColumn<QList<QRect>>("screens");
    QTest::addColumn<QRect>("placed");
    const QRect laptop(0, 0, 1440, 900);
    const QRect desk(1440, -100, 2560, 1440);
    const QMargins title(2, 24, 2, 2); // a frame
    QTest::newRow("as it was") << QRect(100, 50, 1000, 700) << QList{laptop} << QRect(100, 50, 1000, 700);
    QTest::newRow("over the right edge") << QRect(800, 50, 1000, 700) << QList{laptop} << QRect(440, 50, 1000, 700);
    QTest::newRow("over the upper left corner")
        << QRect(-50, -80, 1000, 700) << QList{laptop} << QRect(0, 0, 1000, 700);
    QTest::newRow("over the lower edge") << QRect(0, 600, 1000, 700) << QList{laptop} << QRect(0, 200, 1000, 700);
    QTest::newRow("larger than the screen") << QRect(100, 50, 3000, 2000) << QList{laptop} << laptop;
    QTest::newRow("smaller than the least size") << QRect(100, 50, 30, 20) << QList{laptop} << QRect(100, 50, 900, 540);
    QTest::newRow("on the second screen")
        << QRect(2000, 100, 1000, 700) << QList{laptop, desk} << QRect(2000, 100, 1000, 700);
    QTest::newRow("on two, mostly on the second")
        << QRect(1200, 100, 1000, 700) << QList{laptop, desk} << QRect(1440, 100, 1000, 700);
    QTest::newRow("on a screen that is gone")
        << QRect(2000, 100, 1000, 700) << QList{laptop} << QRect(220, 100, 1000, 700);
    QTest::newRow("below a panel") << QRect(0, 0, 1000, 700) << QList{QRect(0, 30, 1440, 870)}
                                   << QRect(0, 30, 1000, 700);
    QTest::newRow("a screen smaller than the least size")
        << QRect(100, 50, 1000, 700) << QList{QRect(0, 0, 800, 480)} << QRect(0, 0, 900, 540);
    QTest::newRow("no screen at all") << QRect(100, 50, 1000, 700) << QList<QRect>{} << QRect(100, 50, 1000, 700);
    QTest::newRow("a title bar above") << QRect(100, 0, 1000, 700) << QList{laptop - title}
                                       << QRect(100, 24, 1000, 700);
    QTest::newRow("a frame around a window as large as the screen")
        << laptop << QList{laptop - title} << QRect(2, 24, 1436, 874);
    QTest::newRow("far away") << QRect(100000, -100000, 100000, 100000) << QList{laptop} << laptop;
}

void tst_windowmemory::aWindowIsPutWhereThereIsRoom() {
    QFETCH(QRect, kept);
    QFETCH(QList<QRect>, screens);
    QTEST(WindowMemory::fitting(kept, screens), "placed");
}

void tst_windowmemory::theFirstWindowHasTheUsualSizeAsFarAsThereIsRoom() {
    QCOMPARE(WindowMemory::usualSize, QSize(1440, 900));
    WindowMemory memory(*m_preferences);
    QWindow window;
    memory.attach(window);
    // The screen of tests is narrower than the least size; it is not to be filled.
    QVERIFY(screen().width() < 900);
    QCOMPARE(window.size(), QSize(1440, 900).boundedTo(screen().size()).expandedTo(QSize(900, 540)));
    QVERIFY(!(window.windowStates() & Qt::WindowMaximized));
}

void tst_windowmemory::theWindowCanNotBeMadeSmallerThanTheLeastSize() {
    WindowMemory memory(*m_preferences);
    QWindow window;
    memory.attach(window);
    QCOMPARE(window.minimumSize(), QSize(900, 540));
}

void tst_windowmemory::placeAndSizeAreKept() {
    const QRect place = WindowMemory::fitting(QRect(screen().topLeft() + QPoint(30, 20), QSize(910, 550)), {screen()});
    m_preferences->setValue(PreferenceKeys::windowPlace, QStringLiteral("0 0 900 540"));
    {
        WindowMemory memory(*m_preferences);
        QWindow window;
        memory.attach(window);
        window.setVisible(true);
        window.setGeometry(place);
        QTRY_COMPARE(keptPlace().split(u' ').last(), QString::number(place.height()));
    }
    restart();
    WindowMemory memory(*m_preferences);
    QWindow window;
    memory.attach(window);
    QCOMPARE(window.geometry(), place);
}

void tst_windowmemory::aMaximizedWindowComesBackSoAndKeepsItsOtherPlace() {
    m_preferences->setValue(PreferenceKeys::windowPlace, QStringLiteral("0 0 900 540"));
    {
        WindowMemory memory(*m_preferences);
        QWindow window;
        memory.attach(window);
        window.setVisible(true);
        window.setWindowStates(Qt::WindowMaximized);
        QTRY_VERIFY(m_preferences->value(PreferenceKeys::windowMaximized));
        QCOMPARE(keptPlace(), QStringLiteral("0 0 900 540"));
    }
    restart();
    WindowMemory memory(*m_preferences);
    QWindow window;
    memory.attach(window);
    window.setVisible(true);
    QVERIFY(window.windowStates() & Qt::WindowMaximized);
}

void tst_windowmemory::aWindowThatIsClosedWhileItMovesIsKept() {
    m_preferences->setValue(PreferenceKeys::windowPlace, QStringLiteral("0 0 900 540"));
    WindowMemory memory(*m_preferences);
    QWindow window;
    memory.attach(window);
    window.setVisible(true);
    QCoreApplication::processEvents(); // its first size
    QSignalSpy resized(&window, &QWindow::heightChanged);
    window.resize(901, 541);
    QTRY_VERIFY(!resized.isEmpty());
    window.close();
    QVERIFY2(keptPlace().endsWith(QStringLiteral(" 901 541")), qPrintable(keptPlace()));
}

void tst_windowmemory::aFullOrMinimizedWindowComesBackAsItWasBefore_data() {
    QTest::addColumn<int>("state");
    QTest::newRow("full") << int(Qt::WindowFullScreen);
    QTest::newRow("minimized") << int(Qt::WindowMinimized);
}

void tst_windowmemory::aFullOrMinimizedWindowComesBackAsItWasBefore() {
    QFETCH(int, state);
    m_preferences->setValue(PreferenceKeys::windowPlace, QStringLiteral("0 0 900 540"));
    WindowMemory memory(*m_preferences);
    QWindow window;
    memory.attach(window);
    window.setVisible(true);
    window.setWindowStates(Qt::WindowStates(state));
    window.close(); // which keeps what has changed since
    QCOMPARE(keptPlace(), QStringLiteral("0 0 900 540"));
    QVERIFY(!m_preferences->value(PreferenceKeys::windowMaximized));
}

void tst_windowmemory::nonsenseInTheFileIsNoPlace_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("words") << QStringLiteral("a b c d");
    QTest::newRow("too few") << QStringLiteral("1 2 3");
    QTest::newRow("too many") << QStringLiteral("1 2 1000 700 5");
    QTest::newRow("beyond all numbers") << QStringLiteral("1 2 99999999999999999999 700");
    QTest::newRow("beyond all screens") << QStringLiteral("1 2 2147483647 700");
    QTest::newRow("blanks") << QStringLiteral("   ");
}

void tst_windowmemory::nonsenseInTheFileIsNoPlace() {
    QFETCH(QString, text);
    m_preferences->setValue(PreferenceKeys::windowPlace, text);
    WindowMemory memory(*m_preferences);
    QWindow window;
    memory.attach(window);
    // As the first one.
    Preferences fresh(m_home->path().child("fresh.ini"));
    WindowMemory first(fresh);
    QWindow other;
    first.attach(other);
    QCOMPARE(window.size(), other.size());
}

void tst_windowmemory::theSidebarsWidthIsKept() {
    WindowMemory memory(*m_preferences);
    QCOMPARE(memory.sidebarWidth(), 264);
    QSignalSpy changed(&memory, &WindowMemory::sidebarWidthChanged);
    memory.setSidebarWidth(300);
    memory.setSidebarWidth(300);
    QCOMPARE(changed.size(), 1);
    restart();
    QCOMPARE(WindowMemory(*m_preferences).sidebarWidth(), 300);
}

void tst_windowmemory::aSidebarsWidthFromTheFileIsBounded_data() {
    QTest::addColumn<int>("kept");
    QTest::addColumn<int>("width");
    QTest::newRow("too narrow") << 219 << 220;
    QTest::newRow("the narrowest") << 220 << 220;
    QTest::newRow("the widest") << 380 << 380;
    QTest::newRow("too wide") << 381 << 380;
    QTest::newRow("negative") << -5 << 220;
}

void tst_windowmemory::aSidebarsWidthFromTheFileIsBounded() {
    QFETCH(int, kept);
    m_preferences->setValue(PreferenceKeys::sidebarWidth, kept);
    QTEST(WindowMemory(*m_preferences).sidebarWidth(), "width");
}

QTEST_MAIN(tst_windowmemory)
#include "tst_windowmemory.moc"

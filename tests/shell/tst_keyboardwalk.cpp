// The whole window for who has only a keyboard, or only hears it: wherever Tab leads there is something with a role and
// a name, in the order in which one reads, and it is to be seen that the keys are there.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "KeyboardWindow.h"

using namespace lumbra;

namespace {

// After it in the order in which one reads: in the same line further right, or in a line below, or within it.
bool isReadAfter(const QRectF& next, const QRectF& before) {
    if (before.contains(next.center()))
        return true;
    const bool sameLine = next.top() < before.center().y() && before.top() < next.center().y();
    return sameLine ? next.left() >= before.left() : next.top() >= before.top();
}

} // namespace

class tst_keyboardwalk : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KeyboardWindow::prepare(); }
    void init() { m_ui.open(); }
    void cleanup() { m_ui.close(); }

    void tabWalksThroughEachPage_data();
    void tabWalksThroughEachPage();
    void tabWalksThroughWhatAsks_data();
    void tabWalksThroughWhatAsks();
    void tabGoesBackTheSameWay();
    void theKeysAreNotLostWhenThePageTurns();

private:
    QList<Stop> walk(Qt::Key key = Qt::Key_Tab);
    void check(const QList<Stop>& stops);

    KeyboardWindow m_ui;
};

// All stops, each once, beginning with the next.
QList<Stop> tst_keyboardwalk::walk(Qt::Key key) {
    constexpr int most = 200;
    QList<Stop> stops;
    for (int i = 0; i < most; ++i) {
        m_ui.press(key);
        m_ui.settle();
        const Stop next = m_ui.stop();
        if (!next.item || (!stops.isEmpty() && next.item == stops.first().item))
            break;
        if (stops.isEmpty() || next.item != stops.last().item) // Tab may first complete what is typed
            stops.append(next);
    }
    return stops;
}

void tst_keyboardwalk::check(const QList<Stop>& stops) {
    QVERIFY(stops.size() > 1);
    const QQuickItem* const sidebar = m_ui.ofType("SidebarView");
    int lines = 0; // how often the reading starts again at the top
    for (qsizetype i = 0; i < stops.size(); ++i) {
        const Stop& next = stops[(i + 1) % stops.size()];
        m_ui.check(stops[i], next);
        if (QTest::currentTestFailed())
            return;
        const bool isLeft = m_ui.isBelow(stops[i].item, sidebar);
        const bool staysLeft = m_ui.isBelow(next.item, sidebar);
        if (isLeft != staysLeft ? staysLeft : !isReadAfter(next.place, stops[i].place)) {
            ++lines;
            QVERIFY2(lines == 1, qPrintable(stops[i].text() + QStringLiteral(" is before ") + next.text()));
        }
    }
}

void tst_keyboardwalk::tabWalksThroughEachPage_data() {
    QTest::addColumn<QString>("page");
    for (const char* page : {"recent", "starred", "folder", "empty folder", "no matches", "group", "tidy"})
        QTest::newRow(page) << QString::fromLatin1(page);
}

void tst_keyboardwalk::tabWalksThroughEachPage() {
    QFETCH(QString, page);
    // Beside the details there is no room for chips on a screen of 800 pixels.
    Preferences::shared().setValue(PreferenceKeys::inspector, page == u"folder");
    if (page == u"recent")
        m_ui.library().setPlace(Place::recent());
    else if (page == u"starred")
        m_ui.library().setPlace(Place::starred());
    else if (page == u"folder")
        m_ui.openFolder("site");
    else if (page == u"empty folder")
        m_ui.openFolder("empty");
    else if (page == u"tidy")
        m_ui.library().setPlace(Place::tidy());
    else if (page == u"group")
        m_ui.library().setPlace(Place::group(
            m_ui.library().newGroup(QStringLiteral("Work"), {QStringLiteral("site"), QStringLiteral("film")}).id));
    else {
        m_ui.openFolder("site");
        m_ui.named("search")->setProperty("text", page);
        QTRY_VERIFY(!m_ui.ofType("AssetTile"));
    }
    m_ui.settle();
    check(walk());
}

void tst_keyboardwalk::tabWalksThroughWhatAsks_data() {
    QTest::addColumn<QString>("what");
    for (const char* what : {"a name", "an error", "a question", "files", "the first run"})
        QTest::newRow(what) << QString::fromLatin1(what);
}

void tst_keyboardwalk::tabWalksThroughWhatAsks() {
    QFETCH(QString, what);
    m_ui.openFolder("site");
    if (what == u"a name") {
        m_ui.press(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    } else if (what == u"an error") {
        m_ui.library().setLastError(QStringLiteral("The disk is full."));
    } else if (what == u"a question") {
        m_ui.goToProject(QStringLiteral("film"));
        m_ui.press(Qt::Key_Menu);
        m_ui.settle();
        m_ui.press(Qt::Key_Up); // the last entry is the one that destroys
        m_ui.press(Qt::Key_Return);
    } else if (what == u"files") {
        m_ui.press(Qt::Key_I, Qt::ControlModifier | Qt::ShiftModifier);
    } else {
        m_ui.library().setOnboarding(true);
    }
    QTRY_VERIFY(m_ui.ofType("QQuickOverlay"));
    m_ui.settle();
    QQuickItem* const overlay = m_ui.ofType("QQuickOverlay");
    QVERIFY(m_ui.isBelow(m_ui.focused(), overlay));
    // It is to be seen what Return will do, before any key is pressed.
    if (const QVariant shown = m_ui.focused()->property("visualFocus"); shown.isValid())
        QTRY_VERIFY(m_ui.focused()->property("visualFocus").toBool());
    const QList<Stop> stops = walk();
    for (const Stop& stop : stops)
        QVERIFY2(m_ui.isBelow(stop.item, overlay), qPrintable(stop.text()));
    if (stops.size() != 1) // a single button keeps the keys
        check(stops);
    else
        QVERIFY(!stops.first().name.isEmpty());
}

void tst_keyboardwalk::tabGoesBackTheSameWay() {
    m_ui.openFolder("site");
    const auto names = [](const QList<Stop>& stops) {
        QStringList all;
        for (const Stop& stop : stops)
            all << stop.name;
        return all;
    };
    QStringList there = names(walk());
    const QStringList back = names(walk(Qt::Key_Backtab));
    std::reverse(there.begin(), there.end());
    QCOMPARE(back, there);
}

void tst_keyboardwalk::theKeysAreNotLostWhenThePageTurns() {
    m_ui.openFolder("site");
    QTRY_VERIFY(m_ui.ofType("AssetTile"));
    const auto tabLeadsTo = [&](const char* type) {
        m_ui.settle();
        m_ui.press(Qt::Key_Tab);
        return m_ui.isAt(type);
    };
    QVERIFY(m_ui.isAt("lumbra::KeyFocus"));
    m_ui.openFolder("empty");
    QTRY_VERIFY(!m_ui.ofType("AssetTile"));
    QVERIFY(tabLeadsTo("Slider"));
    m_ui.openFolder("site");
    QTRY_VERIFY(m_ui.ofType("AssetTile"));
    m_ui.settle();
    m_ui.press(Qt::Key_Backtab); // to the folder among the files
    m_ui.press(Qt::Key_Backtab);
    QVERIFY(m_ui.isAt("lumbra::KeyFocus"));
    const ProjectGroup group = m_ui.library().newGroup(QStringLiteral("Work"), {QStringLiteral("site")});
    m_ui.library().setPlace(Place::group(group.id));
    QTRY_VERIFY(m_ui.ofType("ProjectCard"));
    QVERIFY(tabLeadsTo("ProjectCard"));
    m_ui.press(Qt::Key_Return);
    QTRY_VERIFY(m_ui.ofType("AssetTile"));
    QTRY_VERIFY(m_ui.isAt("lumbra::KeyFocus"));
}

QTEST_MAIN(tst_keyboardwalk)
#include "tst_keyboardwalk.moc"

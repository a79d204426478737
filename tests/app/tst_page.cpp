// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFiles.h"
#include "AppHarness.h"
#include "AppNeighbour.h"

#include <QtTest>

using namespace lumbra;

// The page of a folder by pointer and keys, with another program beside it.
class TestPage : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aFilmTellsItsLengthAndIsSkimmed();
    void theDetailsOfTheSelectionComeAndGo();
    void typingFiltersThePage();
    void aTileIsDraggedToAnotherProgram();
    void anotherProgramsFileIsDroppedOnAFolder();
    void anotherProgramsFileIsDroppedOnThePage();

private:
    Location at(const char* relative) const { return m_app.library().child(std::string_view(relative)); }
    AppState::Item control(const char* name) { return m_app.state().control(QString::fromLatin1(name)); }
    AppState::Item tile(const char* path) { return m_app.state().tile(QString::fromLatin1(path)); }

    AppDisplay m_display;
    AppHarness m_app{m_display};
};

void TestPage::initTestCase() {
    AppFiles::picture(at("site/a.png"), AppFiles::colour(1));
    AppFiles::picture(at("site/b.png"), AppFiles::colour(2));
    AppFiles::clip(at("site/film.mp4"), AppFiles::colour(3), 4);
    AppFiles::picture(at("site/shots/c.png"), AppFiles::colour(4));
    AppFiles::picture(m_app.home().path().child("desk/brought.png"), AppFiles::colour(5));
    m_app.start();
    APP_WAIT(m_app, m_app.state().sidebarRow(QStringLiteral("site")).isThere());
    m_app.click(m_app.settled().sidebarRow(QStringLiteral("site")));
    APP_WAIT(m_app, tile("site/a.png").hasPicture && tile("site/film.mp4").hasPicture);
}

void TestPage::aFilmTellsItsLengthAndIsSkimmed() {
    APP_WAIT(m_app, control("length").text == QStringLiteral("0:04"));
    m_app.move(m_app.settled().tile(QStringLiteral("site/film.mp4")));
    APP_WAIT(m_app, control("skim").isThere());
    QCOMPARE(control("length").text, QStringLiteral("0:02"));
    m_app.keepScreenshot(QStringLiteral("skim"));
    m_app.move(m_app.state().tile(QStringLiteral("site/a.png")));
    APP_WAIT(m_app, !control("skim").isThere());
    QCOMPARE(control("length").text, QStringLiteral("0:04"));
}

void TestPage::theDetailsOfTheSelectionComeAndGo() {
    m_app.click(m_app.settled().tile(QStringLiteral("site/a.png")));
    APP_WAIT(m_app, control("inspectedName").text == QStringLiteral("a.png"));
    m_app.settled();
    m_app.keepScreenshot(QStringLiteral("details"));
    m_app.click(control("details"));
    APP_WAIT(m_app, m_app.state().isThere() && !control("inspectedName").isThere());
    m_app.settled();
    m_app.keepScreenshot(QStringLiteral("no-details"));
    m_app.click(control("details"));
    APP_WAIT(m_app, control("inspectedName").isThere());
}

void TestPage::typingFiltersThePage() {
    m_app.click(m_app.settled().control(QStringLiteral("search")));
    m_app.type(QStringLiteral("film"));
    APP_WAIT(m_app, tile("site/film.mp4").isThere() && !tile("site/a.png").isThere());
    QVERIFY(!m_app.state().flag("playing"));
    m_app.press("Escape");
    APP_WAIT(m_app, tile("site/a.png").isThere());
}

void TestPage::aTileIsDraggedToAnotherProgram() {
    AppNeighbour neighbour(m_display, {});
    const QPoint from = m_app.settled().tile(QStringLiteral("site/b.png")).rect.center().toPoint();
    QVERIFY(m_app.pull(from, AppNeighbour::middle, [&] { return neighbour.said("over"); }));
    m_app.keepScreenshot(QStringLiteral("drag-out"));
    m_app.release();
    APP_WAIT(m_app, neighbour.said("dropped " + at("site/b.png").toUrl().toEncoded()));
    APP_WAIT(m_app, neighbour.said("done " + QByteArray::number(int(Qt::CopyAction))));
    QVERIFY(at("site/b.png").exists());
    // The press that began it neither selects nor stays.
    QVERIFY(!m_app.settled().tile(QStringLiteral("site/b.png")).selected);
    m_app.click(m_app.state().tile(QStringLiteral("site/b.png")));
    APP_WAIT(m_app, tile("site/b.png").selected);
}

void TestPage::anotherProgramsFileIsDroppedOnAFolder() {
    const Location brought = m_app.home().path().child("desk/brought.png");
    AppNeighbour neighbour(m_display, brought);
    const QPoint to = m_app.settled().tile(QStringLiteral("site/shots")).rect.center().toPoint();
    QVERIFY(m_app.pull(AppNeighbour::middle, to, [&] { return control("moveHere").isThere(); }));
    m_app.keepScreenshot(QStringLiteral("drop-on-folder"));
    m_app.release();
    APP_WAIT(m_app, at("site/shots/brought.png").exists());
    // It was copied, whatever the other program would rather have.
    APP_WAIT(m_app, neighbour.said("taken " + QByteArray::number(int(Qt::CopyAction))));
    QVERIFY(brought.exists());
}

void TestPage::anotherProgramsFileIsDroppedOnThePage() {
    AppNeighbour neighbour(m_display, m_app.home().path().child("desk/brought.png"));
    const QRectF last = m_app.settled().tile(QStringLiteral("site/film.mp4")).rect;
    const QPoint to(int(last.center().x()), int(last.bottom()) + 150);
    QVERIFY(m_app.pull(AppNeighbour::middle, to, [&] { return control("pageTargeted").isThere(); }));
    m_app.keepScreenshot(QStringLiteral("drop-on-page"));
    m_app.release();
    APP_WAIT(m_app, tile("site/brought.png").hasPicture);
    QCOMPARE(m_app.state().text("error"), QString());
}

QTEST_GUILESS_MAIN(TestPage)
#include "tst_page.moc"

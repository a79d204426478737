// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFiles.h"
#include "AppHarness.h"

#include <QImage>
#include <QProcess>
#include <QtTest>

using namespace lumbra;

// Files come in and go out through the window's panels and the clipboard.
class TestPanels : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aFileIsAddedByItsTypedPath();
    void keysOfTheMenusRestBehindAPanel();
    void aFileIsExportedInPlaceOfAnother();
    void aCopiedPictureIsPastedByAnotherProgram();
    void whatIsAskedForAtOnceIsShownWhenItCan();

private:
    AppState::Item control(const char* name) { return m_app.state().control(QLatin1String(name)); }
    // Until the folder is listed, which the photo lies in.
    void panelAppears() { APP_WAIT(m_app, control("panelChoose").isThere() && control("photo.jpg").isThere()); }
    QImage pasted(const char* type) const;

    AppDisplay m_display;
    AppHarness m_app{m_display};
};

void TestPanels::initTestCase() {
    AppFiles::picture(m_app.library().child("site/first.png"), AppFiles::colour(1));
    AppFiles::picture(m_app.home().path().child("Downloads/photo.jpg"), AppFiles::colour(2));
    m_app.start();
    APP_WAIT(m_app, m_app.state().sidebarRow(QStringLiteral("site")).isThere());
    m_app.click(m_app.settled().sidebarRow(QStringLiteral("site")));
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("site/first.png")).hasPicture);
}

void TestPanels::aFileIsAddedByItsTypedPath() {
    m_app.press("ctrl+shift+i");
    panelAppears();
    m_app.settled();
    m_app.keepScreenshot(QStringLiteral("panel-open"));
    m_app.type(QStringLiteral("ph"));
    APP_WAIT(m_app, control("panelPath").text == QStringLiteral("~/Downloads/ph"));
    APP_WAIT(m_app, !control("panelChoose").enabled);
    m_app.press("Tab");
    APP_WAIT(m_app, control("panelPath").text == QStringLiteral("~/Downloads/photo.jpg"));
    m_app.press("Return");
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("site/photo.jpg")).hasPicture);
    APP_WAIT(m_app, !control("panelChoose").isThere());
    QVERIFY(m_app.home().path().child("Downloads/photo.jpg").exists());
}

void TestPanels::keysOfTheMenusRestBehindAPanel() {
    m_app.press("ctrl+shift+i");
    panelAppears();
    m_app.settled();
    m_app.press("ctrl+shift+n");
    APP_WAIT(m_app, control("newFolderName").isThere());
    QVERIFY(!control("nameField").isThere());
    m_app.settled();
    m_app.press("Escape");
    APP_WAIT(m_app, !control("newFolderName").isThere());
    m_app.settled();
    m_app.press("Escape");
    APP_WAIT(m_app, !control("panelChoose").isThere());
}

void TestPanels::aFileIsExportedInPlaceOfAnother() {
    const Location target = m_app.home().path().child("Downloads/first.png");
    AppFiles::picture(target, AppFiles::colour(5));
    m_app.click(m_app.settled().tile(QStringLiteral("site/first.png")));
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("site/first.png")).selected);
    m_app.press("ctrl+e");
    panelAppears();
    m_app.settled();
    m_app.press("Return");
    APP_WAIT(m_app, m_app.settled().isThere());
    m_app.keepScreenshot(QStringLiteral("panel-replace"));
    QVERIFY(AppFiles::alike(QImage(target.toString()).pixelColor(9, 9), AppFiles::colour(5)));
    m_app.press("Tab");
    m_app.press("Return");
    APP_WAIT(m_app, !control("panelChoose").isThere());
    APP_WAIT(m_app, AppFiles::alike(QImage(target.toString()).pixelColor(9, 9), AppFiles::colour(1)));
}

void TestPanels::aCopiedPictureIsPastedByAnotherProgram() {
    m_app.click(m_app.settled().tile(QStringLiteral("site/photo.jpg")));
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("site/photo.jpg")).selected);
    m_app.press("ctrl+c");
    APP_WAIT(m_app, !pasted("image/tiff").isNull());
    const QImage picture = pasted("image/png");
    QCOMPARE(picture.size(), QSize(640, 480));
    QVERIFY(AppFiles::alike(picture.pixelColor(9, 9), AppFiles::colour(2)));
}

QImage TestPanels::pasted(const char* type) const {
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), m_display.name());
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral("xclip"), {QStringLiteral("-o"), QStringLiteral("-selection"),
                                            QStringLiteral("clipboard"), QStringLiteral("-t"), QLatin1String(type)});
    program.waitForFinished();
    return QImage::fromData(program.readAllStandardOutput());
}

// The panels and sheets of a window come a moment after its page.
void TestPanels::whatIsAskedForAtOnceIsShownWhenItCan() {
    const auto shows = [this](const char* keys, const char* shown) {
        m_app.stop();
        m_app.start(AppHarness::Root::environment, {m_app.library().child("site").toString()});
        APP_WAIT(m_app, m_app.state().isThere());
        QVERIFY(m_app.window());
        m_app.press(keys);
        APP_WAIT(m_app, control(shown).isThere());
    };
    shows("ctrl+shift+i", "panelChoose");
    shows("ctrl+shift+n", "nameConfirm");
    shows("ctrl+k", "paletteField");
}

QTEST_GUILESS_MAIN(TestPanels)
#include "tst_panels.moc"

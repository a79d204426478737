// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/Actions.h"
#include "library/Library.h"
#include "shell/WindowPanels.h"
#include "support/QmlWindow.h"
#include "support/TestHome.h"

#include <QFile>

Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_BrowsingPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_ShellPlugin)

using namespace lumbra;

// What the library's operations ask for, answered by a person in the window.
class WindowPanelsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }

    void init() {
        m_home = std::make_unique<TestHome>();
        m_home->folder("Downloads/inside");
        m_home->file("Downloads/clip.mp4", "clip");
        m_home->file("Downloads/notes.txt", "notes");
        m_home->folder("Library/site");
        m_home->file("Library/site/hero.png", "hero");
        m_home->file("Library/site/logo.png", "logo");
        m_library = std::make_unique<Library>(m_home->path().child("Library"), true);
        m_panels = std::make_unique<WindowPanels>(m_library.get());
        Actions::usePanels(m_panels.get());
        m_window = std::make_unique<QmlWindow>(
            "id: root\n"
            "required property WindowPanels panels\n"
            "WindowPanel { panels: root.panels }",
            "import Lumbra.Shell\n", QVariantMap{{QStringLiteral("panels"), QVariant::fromValue(m_panels.get())}},
            QSize(900, 640));
    }
    void cleanup() {
        Actions::usePanels(nullptr);
        m_window.reset();
        m_panels.reset();
        m_library.reset();
    }

    void filesAreAddedFromDownloads() {
        Actions::importFiles(at("Library/site"), m_library.get());
        appears();
        QCOMPARE(text("panelPath"), QStringLiteral("~/Downloads/"));
        QCOMPARE(text("panelChoose"), QStringLiteral("Add"));
        m_window->press(Qt::Key_Down);
        m_window->press(Qt::Key_A, Qt::ControlModifier);
        m_window->click("panelChoose");
        QTRY_COMPARE(bytes("Library/site/clip.mp4"), QByteArray("clip"));
        QTRY_COMPARE(bytes("Library/site/notes.txt"), QByteArray("notes"));
        QVERIFY(at("Library/site/inside").isFolder());
        QVERIFY(at("Downloads/clip.mp4").exists());
    }

    void theNextFilesAreLookedForWhereTheLastWere() {
        m_home->file("Elsewhere/a.png");
        Actions::importFiles(at("Library/site"), m_library.get());
        appears();
        type("~/Elsewhere/a.png");
        m_window->press(Qt::Key_Return);
        QTRY_VERIFY(at("Library/site/a.png").exists());
        disappears();
        Actions::importFiles(at("Library/site"), m_library.get());
        appears();
        QCOMPARE(text("panelPath"), QStringLiteral("~/Elsewhere/"));
    }

    void aFileIsExportedUnderItsName() {
        Actions::exportFiles({at("Library/site/hero.png")}, m_library.get());
        appears();
        QCOMPARE(text("panelName"), QStringLiteral("hero.png"));
        QCOMPARE(text("panelSummary"), QStringLiteral("~/Downloads/hero.png"));
        QCOMPARE(text("panelChoose"), QStringLiteral("Save"));
        m_window->press(Qt::Key_Return);
        QTRY_COMPARE(bytes("Downloads/hero.png"), QByteArray("hero"));
    }

    void anExportTakesThePlaceOfAFileOnlyWhenTheUserSaysSo() {
        m_home->file("Downloads/hero.png", "older");
        Actions::exportFiles({at("Library/site/hero.png")}, m_library.get());
        appears();
        m_window->press(Qt::Key_Return);
        QTRY_VERIFY(m_window->value("replaceAlert", "opened").toBool());
        QCOMPARE(bytes("Downloads/hero.png"), QByteArray("older"));
        m_window->press(Qt::Key_Tab);
        m_window->press(Qt::Key_Return);
        QTRY_COMPARE(bytes("Downloads/hero.png"), QByteArray("hero"));
    }

    void severalFilesAreExportedIntoAFolder() {
        Actions::exportFiles({at("Library/site/hero.png"), at("Library/site/logo.png")}, m_library.get());
        appears();
        QCOMPARE(text("panelChoose"), QStringLiteral("Export Here"));
        type("new");
        m_window->press(Qt::Key_Return);
        QTRY_COMPARE(bytes("Downloads/new/logo.png"), QByteArray("logo"));
        QTRY_COMPARE(bytes("Downloads/new/hero.png"), QByteArray("hero"));
    }

    void aFolderMayBeDeclined() {
        int answers = 0;
        bool isThere = true;
        Actions::chooseFolder(
            QStringLiteral("Link"), at("Library"),
            [&](const std::optional<Location>& folder) {
                ++answers;
                isThere = folder.has_value();
            },
            QStringLiteral("What it is for."));
        appears();
        QCOMPARE(text("panelChoose"), QStringLiteral("Link"));
        QCOMPARE(m_window->value("windowPanel", "message").toString(), QStringLiteral("What it is for."));
        m_window->press(Qt::Key_Escape);
        disappears();
        QCOMPARE(answers, 1);
        QVERIFY(!isThere);
    }

    void anAnswerMayAskForMore() {
        std::optional<Location> second;
        m_panels->chooseFolder(QStringLiteral("First"), {}, at("Library"), [&](const std::optional<Location>&) {
            m_panels->chooseFolder(QStringLiteral("Second"), {}, at("Downloads"),
                                   [&](const std::optional<Location>& folder) { second = folder; });
        });
        appears();
        m_window->click("panelChoose");
        QTRY_COMPARE(text("panelChoose"), QStringLiteral("Second"));
        appears();
        m_window->click("panelChoose");
        QTRY_COMPARE(second, at("Downloads"));
    }

    void aLaterRequestCancelsTheOneBefore() {
        int declined = 0;
        QList<Location> opened;
        m_panels->chooseFolder(QStringLiteral("Link"), {}, at("Library"),
                               [&](const std::optional<Location>& folder) { declined += folder ? 0 : 1; });
        appears();
        m_panels->openFiles(QStringLiteral("Add"), [&](const QList<Location>& files) { opened = files; });
        QCOMPARE(declined, 1);
        appears();
        QCOMPARE(text("panelChoose"), QStringLiteral("Add"));
        type("notes.txt");
        m_window->press(Qt::Key_Return);
        QTRY_COMPARE(opened, QList<Location>{at("Downloads/notes.txt")});
        QCOMPARE(declined, 1);
    }

    void aStartThatIsGoneBecomesTheHome() {
        m_panels->chooseFolder({}, {}, at("gone"), [](const std::optional<Location>&) {});
        appears();
        QCOMPARE(text("panelPath"), QStringLiteral("~/"));
        QCOMPARE(text("panelChoose"), QStringLiteral("Choose"));
    }

    void theLibraryIsAPlaceToGo() {
        Actions::importFiles(at("Library/site"), m_library.get());
        appears();
        m_window->click("place Library");
        QTRY_COMPARE(text("panelPath"), QStringLiteral("~/Library/"));
    }

private:
    void appears() {
        QTRY_VERIFY(m_window->value("windowPanel", "opened").toBool());
        QTRY_VERIFY(!m_window->value("panelList", "model").value<QObject*>()->property("reading").toBool());
    }
    void disappears() { QTRY_VERIFY(!m_window->value("windowPanel", "visible").toBool()); }
    void type(const char* letters) {
        if (*letters == '~' || *letters == '/')
            m_window->press(Qt::Key_A, Qt::ControlModifier);
        for (; *letters; ++letters)
            QTest::keyClick(m_window->window(), *letters);
    }
    QString text(const char* name) { return m_window->value(name, "text").toString(); }
    Location at(const char* relative) const { return m_home->path().child(relative); }
    QByteArray bytes(const char* relative) const {
        QFile file(at(relative).toString());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<Library> m_library;
    std::unique_ptr<WindowPanels> m_panels;
    std::unique_ptr<QmlWindow> m_window;
};

QTEST_MAIN(WindowPanelsTest)
#include "tst_windowpanels.moc"

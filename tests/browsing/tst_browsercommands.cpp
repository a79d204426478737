// SPDX-License-Identifier: GPL-3.0-or-later
#include "BrowserWindow.h"
#include "browsing/MenuEntry.h"
#include "browsing/browser/BrowserCommands.h"
#include "library/Actions.h"
#include "support/TestPanels.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

using namespace lumbra;

// What the window's menus and the keys of the page do to the selected files.
class BrowserCommandsTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<Window> m_window;
    std::unique_ptr<BrowserCommands> m_commands;
    TestPanels m_panels;
    std::optional<NamePrompt> m_prompt;
    Location m_a;
    Location m_b;

    Browser& browser() const { return *m_window->browser; }
    Library& library() const { return *m_window->library; }
    bool press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        return browser().press(key, modifiers, false);
    }
    void select(const Location& file, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        browser().click(cellOf(file), modifiers);
    }
    void selectBoth() const {
        select(m_a);
        select(m_b, Qt::ControlModifier);
        QCOMPARE(browser().selected().size(), 2);
    }
    void name(const char* given) {
        QVERIFY(m_prompt);
        std::exchange(m_prompt, std::nullopt)->action(QString::fromUtf8(given));
    }

private Q_SLOTS:
    void init() {
        m_window = std::make_unique<Window>();
        m_a = m_window->file("one/a.png", 20);
        m_b = m_window->file("one/b.png", 10);
        m_window->open(Place::folder(m_window->folder("one")));
        m_commands = std::make_unique<BrowserCommands>(&browser());
        m_panels = {};
        m_prompt.reset();
        Actions::usePanels(&m_panels);
        browser().setNamePrompt([this](const NamePrompt& prompt) { m_prompt = prompt; });
        QTRY_COMPARE(browser().assets().size(), 2);
    }
    void cleanup() {
        Actions::usePanels(nullptr);
        m_commands.reset();
        m_window.reset();
    }

    void commandsFollowTheSelectionAndThePlace() {
        QVERIFY(!m_commands->hasSelection());
        QVERIFY(m_commands->hasFolder());
        select(m_a);
        QVERIFY(m_commands->hasSelection());
        QSignalSpy changed(m_commands.get(), &BrowserCommands::hasFolderChanged);
        library().setPlace(Place::recent());
        QVERIFY(!m_commands->hasFolder());
        QVERIFY(!m_commands->hasSelection());
        QCOMPARE(changed.count(), 1);
    }

    void theRenamedFileIsSelectedUnderItsNewName() {
        select(m_a);
        m_commands->rename();
        QCOMPARE(m_prompt->title, QStringLiteral("Rename"));
        QCOMPARE(m_prompt->initial, QStringLiteral("a.png"));
        QCOMPARE(m_prompt->confirm, QStringLiteral("Rename"));
        name("c.png");
        const Location renamed = m_window->folder("one").child("c.png");
        QCOMPARE(browser().selection(), PathSet{renamed});
        QCOMPARE(browser().anchor(), std::optional(renamed));
        QTRY_COMPARE(names(browser().selected()), QStringList{QStringLiteral("c.png")});
    }

    void aFailedRenameLeavesTheSelection() {
        select(m_a);
        m_commands->rename();
        name("b.png");
        QVERIFY(library().lastError());
        QCOMPARE(browser().selection(), PathSet{m_a});
    }

    void severalFilesAreNotRenamed() {
        selectBoth();
        m_commands->rename();
        QVERIFY(!m_prompt);
    }

    void starsAreToggledTogether() {
        star(m_a, 1000);
        library().contentChanged();
        selectBoth();
        m_commands->star();
        QVERIFY(Stars::read(m_a) && Stars::read(m_b));
        QVERIFY(press(Qt::Key_S));
        QVERIFY(!Stars::read(m_a) && !Stars::read(m_b));
    }

    // In one, since the desktop's trash keeps to the home that it saw first.
    void theKeyAndTheMenuTrashTheSelectionAndEmptyIt() {
        const Location c = m_window->file("one/c.png");
        QTRY_COMPARE(browser().assets().size(), 3);
        selectBoth();
        QVERIFY(press(Qt::Key_Delete));
        QVERIFY(browser().selection().isEmpty());
        QTRY_VERIFY(!m_a.exists() && !m_b.exists());
        QTRY_COMPARE(names(browser().assets()), QStringList{QStringLiteral("c.png")});
        select(c);
        m_commands->trash();
        QVERIFY(browser().selection().isEmpty());
        QTRY_VERIFY(!c.exists());
        QTRY_VERIFY(browser().assets().isEmpty());
    }

    void whatIsTrashedBesideTheSelectionLeavesItAlone() {
        select(m_a);
        browser().trash({m_window->folder("one/gone.png")});
        QCOMPARE(browser().selection(), PathSet{m_a});
    }

    void copyIsDoneATurnLater() {
        QGuiApplication::clipboard()->setText(QStringLiteral("before"));
        select(m_a);
        QVERIFY(press(Qt::Key_C, Qt::ControlModifier));
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("before"));
        QTRY_COMPARE(QGuiApplication::clipboard()->mimeData()->urls(), QList{m_a.toUrl()});
        QCOMPARE(library().toast()->text, QStringLiteral("Copied a.png. Paste it anywhere."));
    }

    void copyOfNothingLeavesWhatIsThere() {
        QGuiApplication::clipboard()->setText(QStringLiteral("before"));
        QVERIFY(press(Qt::Key_C, Qt::ControlModifier));
        QCoreApplication::processEvents();
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("before"));
        m_commands->copyPaths();
        QCOMPARE(QGuiApplication::clipboard()->text(), QString()); // paths of nothing are no text
    }

    void theMenuOfATileActsOnAllThatIsSelectedWithIt() {
        selectBoth();
        const auto entry = [this](const Location& file, const char* title) {
            for (const QVariant& each : browser().menu(cellOf(file)))
                if (const auto found = each.value<MenuEntry>(); found.title == QString::fromUtf8(title))
                    return std::optional(found);
            return std::optional<MenuEntry>();
        };
        QVERIFY(!entry(m_a, "Rename…") && !entry(m_a, "Copy Path"));
        const auto copy = entry(m_a, "Copy Paths");
        QVERIFY(copy);
        copy->run();
        QStringList paths = QGuiApplication::clipboard()->text().split(u'\n');
        paths.sort();
        QCOMPARE(paths, QStringList({m_a.toString(), m_b.toString()}));
        entry(m_b, "Star")->run();
        QTRY_VERIFY(Stars::read(m_a) && Stars::read(m_b));
        QVERIFY(entry(m_a, "Unstar"));
        QTRY_VERIFY(names(browser().selected()).size() == 2 && browser().firstSelected().isStarred());
        QVERIFY(entry(m_a, "Unstar"));
        select(m_a);
        QVERIFY(entry(m_b, "Rename…") && entry(m_b, "Copy Path")); // which is not selected
    }

    void aNewFolderIsMadeInTheFolderThatIsShown() {
        m_commands->newFolder();
        QCOMPARE(m_prompt->title, QStringLiteral("New Folder"));
        QCOMPARE(m_prompt->initial, QStringLiteral("untitled folder"));
        QCOMPARE(m_prompt->confirm, QStringLiteral("Create"));
        name("shots");
        QVERIFY(m_window->folder("one/shots").isFolder());
        QVERIFY(library().place() == Place::folder(m_window->folder("one")));
    }

    void filesAreAddedToTheFolderThatIsShown() {
        const Location file = m_window->home.file("desk/c.png");
        m_commands->addFiles();
        QCOMPARE(m_panels.asked, QStringLiteral("open"));
        m_panels.answerFiles({file});
        QTRY_COMPARE(browser().assets().size(), 3);
    }

    void theInspectorIsShownAndHidden() {
        const bool before = browser().settings()->showInspector();
        QVERIFY(before);
        m_commands->toggleInspector();
        QVERIFY(!browser().settings()->showInspector());
        m_commands->toggleInspector();
        QVERIFY(browser().settings()->showInspector());
    }

    void withoutAFolderNothingIsMadeOrAdded() {
        library().setPlace(Place::recent());
        m_commands->newFolder();
        m_commands->addFiles();
        QVERIFY(!m_prompt);
        QVERIFY(m_panels.asked.isEmpty());
    }

    void theSelectionIsExported() {
        m_commands->exportFiles();
        QVERIFY(m_panels.asked.isEmpty());
        select(m_a);
        m_commands->exportFiles();
        QCOMPARE(m_panels.asked, QStringLiteral("save"));
        const Location target = m_window->home.folder("out").child("x.png");
        m_panels.answerPath(target);
        QTRY_VERIFY(target.exists());
        QVERIFY(m_a.exists());
    }
};

QTEST_MAIN(BrowserCommandsTest)
#include "tst_browsercommands.moc"

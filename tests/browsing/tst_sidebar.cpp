// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/sidebar/Sidebar.h"
#include "core/ProjectLinks.h"
#include "library/Library.h"
#include "platform/Preferences.h"
#include "support/TestHome.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <unistd.h>

using namespace lumbra;

namespace {

QString text(const char* latin) {
    return QString::fromLatin1(latin);
}

QStringList texts(const char* latin) {
    return text(latin).split(QStringLiteral(", "), Qt::SkipEmptyParts);
}

QList<MenuEntry> entriesOf(const QVariantList& menu) {
    QList<MenuEntry> entries;
    for (const QVariant& entry : menu)
        entries.append(entry.value<MenuEntry>());
    return entries;
}

// "-" for a divider, "Title >" for a submenu.
QString written(const QList<MenuEntry>& entries) {
    QStringList lines;
    for (const MenuEntry& entry : entries)
        lines.append(entry.isDivider() ? text("-") : entry.isSubmenu() ? entry.title + text(" >") : entry.title);
    return lines.join(QStringLiteral(", "));
}

MenuEntry find(const QList<MenuEntry>& entries, const char* title) {
    for (const MenuEntry& entry : entries) {
        if (entry.title == QString::fromUtf8(title))
            return entry;
    }
    qFatal("no entry %s", title);
}

} // namespace

class tst_Sidebar : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<Library> m_library;
    std::unique_ptr<Sidebar> m_sidebar;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
    std::optional<NamePrompt> m_prompt;

    Location root() const { return m_home->path().child("Library"); }
    Location at(const char* relative) const { return root().child(std::string_view(relative)); }

    void folders(const char* names) {
        const QStringList all = texts(names);
        for (const QString& name : all)
            m_home->folder((QStringLiteral("Library/") + name).toStdString());
    }

    void link(const Location& target, const char* name) {
        QVERIFY(::symlink(target.path().constData(), at(name).path().constData()) == 0);
    }

    // Opens the library that the folders make, with its pane.
    void open() {
        m_library = std::make_unique<Library>(root(), true);
        m_sidebar = std::make_unique<Sidebar>(m_library.get());
        m_tester = std::make_unique<QAbstractItemModelTester>(m_sidebar->rows(),
                                                              QAbstractItemModelTester::FailureReportingMode::Fatal);
        m_sidebar->setNamePrompt([this](const NamePrompt& prompt) { m_prompt = prompt; });
        if (!QTest::qWaitFor([this] { return !m_library->indexing(); }, 10000))
            qFatal("the first walk does not end");
    }

    QStringList rows() const {
        QStringList all;
        for (const SidebarRow& row : m_sidebar->rows()->rows())
            all.append(QString(row.depth, u'.') + row.title);
        return all;
    }

    // The project list alone.
    QString projects() const {
        const QStringList all = rows();
        return all.mid(all.indexOf(text("Projects")) + 1).join(QStringLiteral(", "));
    }

    int rowOf(const char* title, SidebarRow::Type type) const {
        const QList<SidebarRow>& all = m_sidebar->rows()->rows();
        for (int row = 0; row < all.size(); ++row) {
            if (all[row].title == QString::fromUtf8(title) && all[row].type == type)
                return row;
        }
        return -1;
    }
    int projectRow(const char* name) const { return rowOf(name, SidebarRow::Type::project); }
    int folderRow(const char* name) const { return rowOf(name, SidebarRow::Type::folder); }
    int groupRow(const char* name) const { return rowOf(name, SidebarRow::Type::group); }
    const SidebarRow& shown(int row) const { return m_sidebar->rows()->rows()[row]; }

    QList<MenuEntry> menuOf(int row) const { return entriesOf(m_sidebar->menu(row)); }

    void drop(const char* project, int row) { m_sidebar->drop(row, m_sidebar->dragPayload(projectRow(project))); }

    // "Name(a b)" for each stored group.
    QString groups() const {
        QStringList all;
        const QList<ProjectGroup> stored = m_library->state().groups;
        for (const ProjectGroup& group : stored)
            all.append(group.name + u'(' + group.projects.join(u' ') + u')');
        return all.join(QStringLiteral(", "));
    }

private Q_SLOTS:
    void init();
    void cleanup();

    void theLibraryItsPinsAndItsProjectsAreListed();
    void choosingARowGoesThere();
    void aTitleCannotBeChosen();
    void rowsFollowTheDisk();
    void theMostActiveProjectStandsFirst();
    void theOrderOfProjectsSurvivesALaunch();
    void aProjectIsFreshOnTheDayOfItsFiles();
    void aFilterOpensGroupsAndHidesPinsAndSuggestion();

    void anOpenProjectListsItsFolders();
    void aNewSubfolderShowsOnceItsParentIsReopened();
    void aFolderThatAppearsLearnsWhetherItHasChildren();
    void goingToAFolderOpensTheWayToIt();
    void followingAPlaceClosesNothing();
    void goingIntoAProjectElsewhereOpensIt();
    void closingARowKeepsWhatWasOpenBelow();

    void theKeyboardStepsOverTitles();
    void theKeyboardOpensClosesAndClimbs();
    void theKeyboardStartsAtTheRowOfThePlace();

    void droppingAProjectOnItsSiblingMakesAGroupOfTheirWord();
    void droppingAStrangerMakesANewGroup();
    void droppingAProjectOnItselfDoesNothing();
    void droppingOnAGroupedProjectJoinsItsGroup();
    void droppingOnAGroupAddsToIt();
    void droppingOnTheHeaderTakesOutOfTheGroup();
    void foreignTextIsNotDropped();
    void onlyProjectsCanBeDragged();

    void projectMenuHoldsWhatTheProjectAllows();
    void pinningFromTheMenuPinsAndUnpins();
    void projectsAreGroupedFromTheMenu();
    void aProjectGetsAColor();
    void aHiddenProjectComesBackFromTheOptions();
    void aLinkedProjectCanBeUnlinked();
    void copyPathCopiesThePath();
    void groupMenuRenamesColorsAndUngroups();
    void folderMenuHoldsWhatAFolderAllows();
    void pinnedRowsCanBeUnpinned();
    void optionsHoldTheOrderAndTheLibrary();
    void rowsWithoutAMenuHaveNone();

    void theSuggestionGroupsOrGoes();
    void theFootTellsOfIndexingAndThenOfTheLibrary();
    void thePaletteOpens();
};

void tst_Sidebar::init() {
    m_home = std::make_unique<TestHome>();
    m_home->folder("Library");
    m_prompt.reset();
}

void tst_Sidebar::cleanup() {
    m_tester.reset();
    m_sidebar.reset();
    m_library.reset();
    Preferences::shared().remove(text("projectsByActivity"));
}

void tst_Sidebar::theLibraryItsPinsAndItsProjectsAreListed() {
    folders("cats/renders, dogs");
    open();
    m_library->togglePin(at("cats/renders"));
    QTRY_COMPARE(rows(), texts("Recent, Starred, Tidy, Pinned, renders, Projects, cats, dogs"));
    QCOMPARE(shown(4).badgeName, text("cats"));
    QCOMPARE(shown(4).hue, m_library->hueFor(text("cats")));
}

void tst_Sidebar::choosingARowGoesThere() {
    folders("cats/renders, dogs");
    open();
    m_sidebar->choose(1);
    QVERIFY(m_library->place() == Place::starred());
    m_sidebar->choose(2);
    QVERIFY(m_library->place() == Place::tidy());
    m_sidebar->choose(projectRow("dogs"));
    QVERIFY(m_library->place() == Place::folder(at("dogs")));
    QTRY_VERIFY(shown(projectRow("dogs")).selected);
    QVERIFY(!shown(0).selected);

    const ProjectGroup group = m_library->newGroup(text("Pets"), {text("cats")});
    QTRY_VERIFY(groupRow("Pets") >= 0);
    m_sidebar->choose(groupRow("Pets"));
    QVERIFY(m_library->place() == Place::group(group.id));
}

void tst_Sidebar::aTitleCannotBeChosen() {
    folders("cats");
    open();
    m_sidebar->choose(rowOf("Projects", SidebarRow::Type::projectsHeader));
    m_sidebar->choose(-1);
    m_sidebar->choose(99);
    QVERIFY(m_library->place() == Place::recent());
}

void tst_Sidebar::rowsFollowTheDisk() {
    folders("cats");
    open();
    QTRY_COMPARE(projects(), text("cats"));
    folders("dogs");
    m_library->reloadProjects();
    QTRY_COMPARE(projects(), text("cats, dogs"));
    m_library->hide(m_library->projects().first());
    QTRY_COMPARE(projects(), text("dogs"));
}

void tst_Sidebar::theMostActiveProjectStandsFirst() {
    TestHome::touch(m_home->file("Library/ants/a.png"), 1000);
    TestHome::touch(m_home->file("Library/bees/b.png"), 3000);
    TestHome::touch(m_home->file("Library/cats/c.png"), 2000);
    TestHome::touch(m_home->file("Library/dogs/d.png"), 4000);
    folders("eels");
    open();
    QTRY_COMPARE(projects(), text("dogs, bees, cats, ants, eels"));
    m_library->newGroup(text("G"), {text("ants"), text("bees")});
    QTRY_COMPARE(projects(), text("dogs, G, .ants, .bees, cats, eels"));
    m_sidebar->setByActivity(false);
    QCOMPARE(projects(), text("cats, dogs, eels, G, .ants, .bees"));
}

void tst_Sidebar::theOrderOfProjectsSurvivesALaunch() {
    open();
    QVERIFY(m_sidebar->byActivity());
    const QSignalSpy changed(m_sidebar.get(), &Sidebar::byActivityChanged);
    m_sidebar->setByActivity(false);
    m_sidebar->setByActivity(false);
    QCOMPARE(changed.size(), 1);
    QVERIFY(!Sidebar(m_library.get()).byActivity());
}

void tst_Sidebar::aProjectIsFreshOnTheDayOfItsFiles() {
    m_home->file("Library/new/a.png");
    TestHome::touch(m_home->file("Library/old/b.png"), Date::now().seconds - 90000);
    open();
    QTRY_VERIFY(shown(projectRow("new")).fresh);
    QVERIFY(!shown(projectRow("old")).fresh);
    QCOMPARE(shown(0).count, text("1"));
}

void tst_Sidebar::aFilterOpensGroupsAndHidesPinsAndSuggestion() {
    folders("acme-a, acme-b, cats, dogs");
    open();
    const ProjectGroup group = m_library->newGroup(text("Pets"), {text("cats"), text("dogs")});
    m_library->toggleCollapsed(group.id);
    m_library->togglePin(at("cats"));
    QTRY_COMPARE(rows(),
                 texts("Recent, Starred, Tidy, Pinned, cats, Projects, 2 projects start with acme. Group them?, "
                       "Pets, acme-a, acme-b"));
    m_sidebar->setFilter(text("dog"));
    QCOMPARE(rows(), texts("Recent, Starred, Tidy, Projects, Pets, .cats, .dogs"));
    QVERIFY(m_library->groupWithId(group.id)->collapsed);
    m_sidebar->setFilter(text("nothing"));
    QCOMPARE(projects(), QStringLiteral("No project matches “nothing”"));
}

void tst_Sidebar::anOpenProjectListsItsFolders() {
    folders("cats/b, cats/a10, cats/a9, cats/.hidden, cats/node_modules, dogs");
    open();
    m_sidebar->toggle(projectRow("cats"));
    QVERIFY(shown(projectRow("cats")).isExpanded());
    QTRY_COMPARE(projects(), text("cats, .a9, .a10, .b, dogs"));
    m_sidebar->toggle(projectRow("cats"));
    QCOMPARE(projects(), text("cats, dogs"));
}

void tst_Sidebar::aNewSubfolderShowsOnceItsParentIsReopened() {
    folders("cats/a");
    open();
    m_sidebar->toggle(projectRow("cats"));
    QTRY_COMPARE(projects(), text("cats, .a"));
    folders("cats/b");
    m_library->contentChanged();
    QCoreApplication::processEvents();
    QCOMPARE(projects(), text("cats, .a"));
    m_sidebar->toggle(projectRow("cats"));
    m_sidebar->toggle(projectRow("cats"));
    QTRY_COMPARE(projects(), text("cats, .a, .b"));
}

void tst_Sidebar::aFolderThatAppearsLearnsWhetherItHasChildren() {
    folders("cats/leaf, cats/branch/twig");
    open();
    m_sidebar->toggle(projectRow("cats"));
    QTRY_COMPARE(projects(), text("cats, .branch, .leaf"));
    QVERIFY(!shown(folderRow("branch")).isExpandable());
    m_sidebar->appeared(folderRow("leaf"));
    m_sidebar->appeared(folderRow("branch"));
    QTRY_VERIFY(shown(folderRow("branch")).isExpandable());
    QVERIFY(!shown(folderRow("leaf")).isExpandable());
    m_sidebar->toggle(folderRow("branch"));
    QTRY_COMPARE(projects(), text("cats, .branch, ..twig, .leaf"));
}

void tst_Sidebar::goingToAFolderOpensTheWayToIt() {
    folders("cats/a/b/c, dogs");
    open();
    m_library->setPlace(Place::folder(at("cats/a/b")));
    QTRY_COMPARE(projects(), text("cats, .a, ..b, ...c, dogs"));
    QVERIFY(shown(folderRow("b")).selected);
    QCOMPARE(shown(folderRow("b")).symbol, text("folder.fill"));
}

void tst_Sidebar::followingAPlaceClosesNothing() {
    folders("cats/a, dogs/b");
    open();
    m_library->setPlace(Place::folder(at("cats/a")));
    QTRY_COMPARE(projects(), text("cats, .a, dogs"));
    m_library->setPlace(Place::folder(at("dogs/b")));
    QTRY_COMPARE(projects(), text("cats, .a, dogs, .b"));
    m_library->setPlace(Place::recent());
    QTRY_VERIFY(shown(0).selected);
    QCOMPARE(projects(), text("cats, .a, dogs, .b"));
}

void tst_Sidebar::goingIntoAProjectElsewhereOpensIt() {
    m_home->folder("x/a");
    link(m_home->path().child("x"), "far");
    open();
    m_library->setPlace(Place::folder(m_home->path().child("x").child("a")));
    QTRY_COMPARE(projects(), text("far, .a"));
    QTRY_VERIFY(shown(folderRow("a")).selected);
}

void tst_Sidebar::closingARowKeepsWhatWasOpenBelow() {
    folders("cats/a/b");
    open();
    m_library->setPlace(Place::folder(at("cats/a")));
    QTRY_COMPARE(projects(), text("cats, .a, ..b"));
    m_sidebar->toggle(projectRow("cats"));
    QCOMPARE(projects(), text("cats"));
    m_sidebar->toggle(projectRow("cats"));
    QCOMPARE(projects(), text("cats, .a, ..b"));
}

void tst_Sidebar::theKeyboardStepsOverTitles() {
    folders("cats");
    open();
    QTRY_COMPARE(rows(), texts("Recent, Starred, Tidy, Projects, cats"));
    QCOMPARE(m_sidebar->step(2, 1), 4);
    QCOMPARE(m_sidebar->step(4, -1), 2);
    QCOMPARE(m_sidebar->step(4, 1), 4);
    QCOMPARE(m_sidebar->step(0, -1), 0);
    QCOMPARE(m_sidebar->step(-1, 1), 0);
    QCOMPARE(m_sidebar->step(5, -1), 4);
}

void tst_Sidebar::theKeyboardOpensClosesAndClimbs() {
    folders("cats/a, dogs");
    open();
    m_library->newGroup(text("Pets"), {text("cats"), text("dogs")});
    QTRY_COMPARE(projects(), text("Pets, .cats, .dogs"));
    const int pets = groupRow("Pets");
    QCOMPARE(m_sidebar->expand(pets), pets + 1);
    QCOMPARE(m_sidebar->expand(pets + 1), pets + 1);
    QTRY_COMPARE(projects(), text("Pets, .cats, ..a, .dogs"));
    QCOMPARE(m_sidebar->expand(pets + 1), pets + 2);
    QCOMPARE(m_sidebar->expand(pets + 2), pets + 2);
    QCOMPARE(m_sidebar->collapse(pets + 2), pets + 1);
    QCOMPARE(m_sidebar->collapse(pets + 1), pets + 1);
    QCOMPARE(projects(), text("Pets, .cats, .dogs"));
    QCOMPARE(m_sidebar->collapse(pets + 2), pets);
    QCOMPARE(m_sidebar->collapse(pets), pets);
    QCOMPARE(projects(), text("Pets"));
    QCOMPARE(m_sidebar->collapse(pets), pets);
    QCOMPARE(m_sidebar->expand(pets), pets);
    QCOMPARE(projects(), text("Pets, .cats, .dogs"));
}

void tst_Sidebar::theKeyboardStartsAtTheRowOfThePlace() {
    folders("cats, dogs");
    open();
    QCOMPARE(m_sidebar->selectedRow(), 0);
    m_library->togglePin(at("dogs"));
    m_library->setPlace(Place::folder(at("dogs")));
    QTRY_COMPARE(m_sidebar->selectedRow(), projectRow("dogs"));
    m_library->setPlace(Place::folder(m_home->path()));
    QTRY_COMPARE(m_sidebar->selectedRow(), -1);
    QCOMPARE(m_sidebar->firstResult(), projectRow("cats"));
}

void tst_Sidebar::droppingAProjectOnItsSiblingMakesAGroupOfTheirWord() {
    folders("cats-a, cats-b");
    open();
    drop("cats-b", projectRow("cats-a"));
    QCOMPARE(groups(), text("Cats(cats-a cats-b)"));
    QTRY_COMPARE(projects(), text("Cats, .cats-a, .cats-b"));
}

void tst_Sidebar::droppingAStrangerMakesANewGroup() {
    folders("cats-a, dogs");
    open();
    drop("dogs", projectRow("cats-a"));
    QCOMPARE(groups(), text("New Group(cats-a dogs)"));
}

void tst_Sidebar::droppingAProjectOnItselfDoesNothing() {
    folders("cats-a, cats-b");
    open();
    const int row = projectRow("cats-a");
    QVERIFY(!m_sidebar->accepts(row, m_sidebar->dragPayload(row)));
    drop("cats-a", row);
    QVERIFY(m_library->state() == LibraryState());
}

void tst_Sidebar::droppingOnAGroupedProjectJoinsItsGroup() {
    folders("ants, cats-a, dogs");
    open();
    m_library->newGroup(text("Pets"), {text("cats-a")});
    QTRY_VERIFY(groupRow("Pets") >= 0);
    drop("dogs", projectRow("cats-a"));
    QCOMPARE(groups(), text("Pets(cats-a dogs)"));
}

void tst_Sidebar::droppingOnAGroupAddsToIt() {
    folders("cats, dogs");
    open();
    m_library->newGroup(text("Pets"), {text("cats")});
    m_library->newGroup(text("Others"), {text("dogs")});
    QTRY_VERIFY(groupRow("Others") >= 0);
    drop("dogs", groupRow("Pets"));
    QCOMPARE(groups(), text("Pets(cats dogs)"));
}

void tst_Sidebar::droppingOnTheHeaderTakesOutOfTheGroup() {
    folders("cats, dogs");
    open();
    m_library->newGroup(text("Pets"), {text("cats"), text("dogs")});
    QTRY_VERIFY(groupRow("Pets") >= 0);
    drop("dogs", rowOf("Projects", SidebarRow::Type::projectsHeader));
    QCOMPARE(groups(), text("Pets(cats)"));
}

void tst_Sidebar::foreignTextIsNotDropped() {
    folders("cats");
    open();
    const int row = projectRow("cats");
    for (const char* payload : {"", "dogs", "lumbra-project:", "lumbra-project:unknown", "file:///etc/passwd"}) {
        QVERIFY(!m_sidebar->accepts(row, text(payload)));
        m_sidebar->drop(row, text(payload));
    }
    QVERIFY(!m_sidebar->accepts(0, text("lumbra-project:cats")));
    QVERIFY(!m_sidebar->accepts(99, text("lumbra-project:cats")));
    QVERIFY(m_library->state() == LibraryState());
}

void tst_Sidebar::onlyProjectsCanBeDragged() {
    folders("cats/a");
    open();
    m_sidebar->toggle(projectRow("cats"));
    QTRY_VERIFY(folderRow("a") >= 0);
    QCOMPARE(m_sidebar->dragPayload(projectRow("cats")), text("lumbra-project:cats"));
    QCOMPARE(m_sidebar->dragPayload(folderRow("a")), QString());
    QCOMPARE(m_sidebar->dragPayload(0), QString());
}

void tst_Sidebar::projectMenuHoldsWhatTheProjectAllows() {
    folders("cats, dogs");
    open();
    QCOMPARE(written(menuOf(projectRow("cats"))),
             text("Pin to Top, Add to Group >, -, Color >, -, Show in Finder, Copy Path, -, Hide Project"));

    m_home->file("Library/dogs/.lumbra.json", "{\"repo\": \"/somewhere/dogs\"}");
    m_library->reloadProjects();
    m_library->newGroup(text("Pets"), {text("dogs")});
    m_library->togglePin(at("dogs"));
    QTRY_VERIFY(groupRow("Pets") >= 0);
    QCOMPARE(written(menuOf(projectRow("dogs"))),
             text("Unpin, Add to Group >, Remove from Group, -, Color >, -, Show Repository in Finder, "
                  "Open Repository in Terminal, Unlink Repository, -, Show in Finder, Copy Path, -, Hide Project"));
}

void tst_Sidebar::pinningFromTheMenuPinsAndUnpins() {
    folders("cats");
    open();
    find(menuOf(projectRow("cats")), "Pin to Top").run();
    QCOMPARE(m_library->state().pins, texts("cats"));
    QTRY_VERIFY(shown(projectRow("cats")).pinned);
    find(menuOf(projectRow("cats")), "Unpin").run();
    QVERIFY(m_library->state().pins.isEmpty());
    QTRY_VERIFY(!shown(projectRow("cats")).pinned);
}

void tst_Sidebar::projectsAreGroupedFromTheMenu() {
    folders("cats, dogs");
    open();
    MenuEntry add = find(menuOf(projectRow("cats")), "Add to Group");
    QCOMPARE(written(add.children), QStringLiteral("New Group…"));
    find(add.children, "New Group…").run();
    QVERIFY(m_prompt);
    QCOMPARE(m_prompt->title, text("New Group"));
    QCOMPARE(m_prompt->initial, QString());
    QCOMPARE(m_prompt->confirm, text("Create"));
    m_prompt->action(text("Pets"));
    QCOMPARE(groups(), text("Pets(cats)"));

    QTRY_VERIFY(groupRow("Pets") >= 0);
    add = find(menuOf(projectRow("cats")), "Add to Group");
    QCOMPARE(written(add.children), QStringLiteral("Pets, -, New Group…"));
    QVERIFY(!find(add.children, "Pets").enabled);
    add = find(menuOf(projectRow("dogs")), "Add to Group");
    QVERIFY(find(add.children, "Pets").enabled);
    find(add.children, "Pets").run();
    QCOMPARE(groups(), text("Pets(cats dogs)"));
    find(menuOf(projectRow("cats")), "Remove from Group").run();
    QCOMPARE(groups(), text("Pets(dogs)"));
}

void tst_Sidebar::aProjectGetsAColor() {
    folders("cats");
    open();
    const QList<MenuEntry> colors = find(menuOf(projectRow("cats")), "Color").children;
    QCOMPARE(written(colors), text("Amber, Teal, Violet, Sky, Rose, Lime, Sand, Periwinkle, Coral, Mint"));
    const int before = m_library->hueFor(text("cats"));
    for (int index = 0; index < colors.size(); ++index) {
        QCOMPARE(colors[index].isChecked(), index == before);
        QCOMPARE(colors[index].hue, index);
    }
    const int other = (before + 1) % 10;
    colors[other].run();
    QCOMPARE(m_library->state().colors.value(text("cats")), other);
    QTRY_COMPARE(shown(projectRow("cats")).hue, other);
}

void tst_Sidebar::aHiddenProjectComesBackFromTheOptions() {
    folders("cats, dogs");
    open();
    find(menuOf(projectRow("cats")), "Hide Project").run();
    QTRY_COMPARE(projects(), text("dogs"));
    const QList<MenuEntry> options = entriesOf(m_sidebar->optionsMenu());
    const QList<MenuEntry> hidden = find(options, "Hidden Projects").children;
    QCOMPARE(written(hidden), text("Show cats"));
    hidden.first().run();
    QTRY_COMPARE(projects(), text("cats, dogs"));
}

void tst_Sidebar::aLinkedProjectCanBeUnlinked() {
    folders("cats");
    const Location repo = m_home->folder("code/cats");
    QProcess git;
    git.start(text("git"), {text("init"), text("-q"), repo.toString()});
    QVERIFY(git.waitForFinished());
    ProjectLinks::link(at("cats"), repo);
    open();
    QTRY_COMPARE(shown(projectRow("cats")).help, text("Linked to ") + repo.toString());
    find(menuOf(projectRow("cats")), "Unlink Repository").run();
    QTRY_COMPARE(shown(projectRow("cats")).help, QString());
    QVERIFY(!ProjectLinks::repoOf(at("cats")));
}

void tst_Sidebar::copyPathCopiesThePath() {
    folders("cats");
    open();
    find(menuOf(projectRow("cats")), "Copy Path").run();
    QCOMPARE(QGuiApplication::clipboard()->text(), at("cats").toString());
}

void tst_Sidebar::groupMenuRenamesColorsAndUngroups() {
    folders("cats, dogs");
    open();
    const ProjectGroup group = m_library->newGroup(text("Pets"), {text("cats")});
    QTRY_VERIFY(groupRow("Pets") >= 0);
    const QList<MenuEntry> menu = menuOf(groupRow("Pets"));
    QCOMPARE(written(menu), QStringLiteral("Rename Group…, Color >, Ungroup"));

    find(menu, "Rename Group…").run();
    QVERIFY(m_prompt);
    QCOMPARE(m_prompt->title, text("Rename Group"));
    QCOMPARE(m_prompt->initial, text("Pets"));
    QCOMPARE(m_prompt->confirm, text("Rename"));
    m_prompt->action(text("Beasts"));
    QCOMPARE(groups(), text("Beasts(cats)"));

    const int other = (m_library->groupHue(group) + 1) % 10;
    find(menu, "Color").children[other].run();
    QCOMPARE(m_library->groupWithId(group.id)->color, std::optional(other));
    QTRY_COMPARE(shown(projectRow("cats")).hue, other);

    find(menu, "Ungroup").run();
    QCOMPARE(groups(), QString());
    QTRY_COMPARE(projects(), text("cats, dogs"));
}

void tst_Sidebar::folderMenuHoldsWhatAFolderAllows() {
    folders("cats/a");
    open();
    m_sidebar->toggle(projectRow("cats"));
    QTRY_VERIFY(folderRow("a") >= 0);
    QCOMPARE(written(menuOf(folderRow("a"))), text("Pin to Top, -, Show in Finder, Copy Path"));
    find(menuOf(folderRow("a")), "Pin to Top").run();
    QCOMPARE(m_library->state().pins, texts("cats/a"));
    QTRY_VERIFY(shown(folderRow("a")).pinned);
    QCOMPARE(written(menuOf(folderRow("a"))), text("Unpin, -, Show in Finder, Copy Path"));
}

void tst_Sidebar::pinnedRowsCanBeUnpinned() {
    folders("cats/a, cats/b");
    open();
    m_library->togglePin(at("cats/a"));
    m_library->togglePin(at("cats/b"));
    QTRY_VERIFY(rowOf("b", SidebarRow::Type::pinned) >= 0);
    QCOMPARE(written(menuOf(rowOf("a", SidebarRow::Type::pinned))), text("Unpin, Show in Finder, Copy Path"));
    find(menuOf(rowOf("a", SidebarRow::Type::pinned)), "Unpin").run();
    QCOMPARE(m_library->state().pins, texts("cats/b"));
    QTRY_COMPARE(rowOf("a", SidebarRow::Type::pinned), -1);
    m_sidebar->unpin(rowOf("b", SidebarRow::Type::pinned));
    QVERIFY(m_library->state().pins.isEmpty());
}

void tst_Sidebar::optionsHoldTheOrderAndTheLibrary() {
    open();
    const QList<MenuEntry> options = entriesOf(m_sidebar->optionsMenu());
    QCOMPARE(written(options), QStringLiteral("New Group…, -, Sort Projects, By recent activity, By name, -, "
                                              "Show Library in Finder"));
    QVERIFY(find(options, "Sort Projects").isHeading());
    QVERIFY(find(options, "By recent activity").isChecked());
    find(options, "By name").run();
    QVERIFY(!m_sidebar->byActivity());
    QVERIFY(find(entriesOf(m_sidebar->optionsMenu()), "By name").isChecked());
    QCOMPARE(written(entriesOf(m_sidebar->newMenu())), QStringLiteral("New Group…"));
}

void tst_Sidebar::rowsWithoutAMenuHaveNone() {
    folders("cats");
    open();
    for (int row = -1; row < rowOf("Projects", SidebarRow::Type::projectsHeader) + 1; ++row)
        QVERIFY(m_sidebar->menu(row).isEmpty());
}

void tst_Sidebar::theSuggestionGroupsOrGoes() {
    folders("acme-a, acme-b, zoo-a, zoo-b");
    open();
    QTRY_VERIFY(rows().contains(text("2 projects start with acme. Group them?")));
    m_sidebar->acceptSuggestion();
    QCOMPARE(groups(), text("Acme(acme-a acme-b)"));
    QTRY_VERIFY(rows().contains(text("2 projects start with zoo. Group them?")));
    m_sidebar->dismissSuggestion();
    QTRY_COMPARE(projects(), text("Acme, .acme-a, .acme-b, zoo-a, zoo-b"));
    QCOMPARE(groups(), text("Acme(acme-a acme-b)"));
}

void tst_Sidebar::theFootTellsOfIndexingAndThenOfTheLibrary() {
    folders("cats, dogs");
    m_library = std::make_unique<Library>(root(), true);
    m_sidebar = std::make_unique<Sidebar>(m_library.get());
    QVERIFY(m_sidebar->footer().busy);
    QCOMPARE(m_sidebar->footer().text, QStringLiteral("Indexing…"));
    QTRY_VERIFY(!m_sidebar->footer().busy);
    QCOMPARE(m_sidebar->footer().symbol, text("folder"));
    QCOMPARE(m_sidebar->footer().text, QStringLiteral("~/Library \u00b7 2 projects"));
}

void tst_Sidebar::thePaletteOpens() {
    open();
    m_sidebar->openPalette();
    QVERIFY(m_library->paletteOpen());
}

QTEST_MAIN(tst_Sidebar)
#include "tst_sidebar.moc"

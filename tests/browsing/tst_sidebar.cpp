// SPDX-License-Identifier: GPL-3.0-or-later
#include "SidebarPane.h"

#include <QSignalSpy>

#include <unistd.h>

using namespace lumbra;

class tst_Sidebar : public QObject, SidebarPane {
    Q_OBJECT

private:
    void link(const Location& target, const char* name) {
        QVERIFY(::symlink(target.path().constData(), at(name).path().constData()) == 0);
    }

private Q_SLOTS:
    void init() { make(); }
    void cleanup() { takeDown(); }

    void theLibraryItsPinsAndItsProjectsAreListed();
    void choosingARowGoesThere();
    void aTitleCannotBeChosen();
    void rowsFollowTheDisk();
    void theMostActiveProjectStandsFirst();
    void theOrderOfProjectsSurvivesALaunch();
    void aProjectIsFreshOnTheDayOfItsFiles();
    void aFilterOpensGroupsAndHidesPinsAndSuggestion();
    void theChevronOfAGroupWorksUnderAFilter();
    void turningToAnotherProjectDrawsTwoRowsAnew();

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

    void theSuggestionGroupsOrGoes();
    void theFootTellsOfIndexingAndThenOfTheLibrary();
    void theSuggestionsOfTidyAreCounted();
    void aStateThatNamesWhatIsNotThereShowsTheRest();
    void aProjectThatIsRenamedOutsideLeavesNoRowSelected();
    void aProjectThatIsGoneLeavesItsGroup();
};

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

void tst_Sidebar::theChevronOfAGroupWorksUnderAFilter() {
    folders("cats, dogs");
    open();
    const ProjectGroup group = m_library->newGroup(text("Pets"), {text("cats"), text("dogs")});
    m_sidebar->setFilter(text("dog"));
    QTRY_COMPARE(projects(), text("Pets, .cats, .dogs"));
    m_sidebar->toggle(groupRow("Pets"));
    QVERIFY(m_library->groupWithId(group.id)->collapsed);
    QVERIFY(!shown(groupRow("Pets")).isExpanded());
    QCOMPARE(projects(), text("Pets, .cats, .dogs"));
    m_sidebar->toggle(groupRow("Pets"));
    QVERIFY(!m_library->groupWithId(group.id)->collapsed);
    m_sidebar->toggle(groupRow("Pets"));
    m_sidebar->setFilter(QString());
    QCOMPARE(projects(), text("Pets"));
}

// However many there are.
void tst_Sidebar::turningToAnotherProjectDrawsTwoRowsAnew() {
    for (int number = 0; number < 200; ++number)
        m_home->folder("Library/project " + std::to_string(number));
    open();
    QTRY_VERIFY(projectRow("project 7") >= 0);
    m_sidebar->choose(projectRow("project 7"));
    QTRY_COMPARE(m_sidebar->selectedRow(), projectRow("project 7"));
    QSignalSpy changed(m_sidebar->rows(), &QAbstractItemModel::dataChanged);
    QSignalSpy inserted(m_sidebar->rows(), &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(m_sidebar->rows(), &QAbstractItemModel::rowsRemoved);
    const int before = m_sidebar->selectedRow();
    const int after = projectRow("project 150");
    m_sidebar->choose(after);
    QTRY_COMPARE(m_sidebar->selectedRow(), after);
    QSet<int> drawn;
    for (const QList<QVariant>& signal : changed) {
        for (int row = signal[0].toModelIndex().row(); row <= signal[1].toModelIndex().row(); ++row)
            drawn.insert(row);
    }
    QCOMPARE(drawn, (QSet<int>{before, after}));
    QVERIFY(inserted.isEmpty() && removed.isEmpty());
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
    QCOMPARE(m_sidebar->footer().text, QStringLiteral("~/Library"));
    QCOMPARE(m_sidebar->footer().tail, QStringLiteral(" \u00b7 2 projects"));
}

void tst_Sidebar::theSuggestionsOfTidyAreCounted() {
    open();
    m_sidebar->setTidySuggestions(3);
    QTRY_COMPARE(shown(2).count, text("3"));
    m_sidebar->setTidySuggestions(0);
    QTRY_COMPARE(shown(2).count, QString());
}

void tst_Sidebar::aStateThatNamesWhatIsNotThereShowsTheRest() {
    folders("cats, dogs, elks");
    m_home->file("Library/.lumbra/library.json", R"({"pins": ["gone", "cats/gone", "dogs"],
        "groups": [{"id": "6F9619FF-8B86-D011-B42D-00C04FC964FF", "name": "Pets", "projects": ["gone", "cats", "cats"],
                    "collapsed": false},
                   {"id": "6F9619FF-8B86-D011-B42D-00C04FC964F0", "name": "Empty", "projects": ["gone"], "color": 99,
                    "collapsed": true}],
        "hidden": ["nowhere", "elks"], "colors": {"gone": 3, "dogs": -7}, "dismissed": ["gone"]})");
    open();
    m_sidebar->setByActivity(false);
    QCOMPARE(rows().mid(3).join(text(", ")), text("Pinned, dogs, Projects, dogs, Pets, .cats"));
    QCOMPARE(shown(groupRow("Pets")).count, text("1"));
    // What it names is kept as it is: it may come back.
    QCOMPARE(m_library->state().groups.first().projects, texts("gone, cats, cats"));
    folders("gone");
    QTRY_VERIFY(projectRow("gone") >= 0);
    QCOMPARE(shown(projectRow("gone")).depth, 1);
    QCOMPARE(m_library->lastError(), std::nullopt);
}

void tst_Sidebar::aProjectThatIsRenamedOutsideLeavesNoRowSelected() {
    folders("cats, dogs");
    open();
    m_sidebar->choose(projectRow("cats"));
    QTRY_VERIFY(shown(projectRow("cats")).selected);
    QVERIFY(QDir().rename(at("cats").toString(), at("lynx").toString()));
    QTRY_VERIFY(projectRow("lynx") >= 0 && projectRow("cats") < 0);
    QCOMPARE(m_sidebar->selectedRow(), -1);
    m_sidebar->choose(projectRow("lynx"));
    QTRY_VERIFY(shown(projectRow("lynx")).selected);
}

void tst_Sidebar::aProjectThatIsGoneLeavesItsGroup() {
    folders("cats, dogs");
    open();
    m_library->newGroup(text("Pets"), {text("cats"), text("dogs")});
    QTRY_VERIFY(groupRow("Pets") >= 0);
    m_sidebar->choose(projectRow("cats"));
    QVERIFY(QDir(at("cats").toString()).removeRecursively());
    QTRY_COMPARE(projects(), text("Pets, .dogs"));
    QVERIFY(QDir(at("dogs").toString()).removeRecursively());
    QTRY_COMPARE(projects(), QString());
    QCOMPARE(m_library->lastError(), std::nullopt);
}

QTEST_MAIN(tst_Sidebar)
#include "tst_sidebar.moc"

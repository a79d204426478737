// SPDX-License-Identifier: GPL-3.0-or-later
#include "SidebarPane.h"
#include "core/ProjectLinks.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QProcess>

using namespace lumbra;

namespace {

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

class tst_SidebarMenus : public QObject, SidebarPane {
    Q_OBJECT

private:
    QList<MenuEntry> menuOf(int row) const { return entriesOf(m_sidebar->menu(row)); }

private Q_SLOTS:
    void init() { make(); }
    void cleanup() { takeDown(); }

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
    void optionsHoldTheSwitchOfTheUnderstanding();
    void rowsWithoutAMenuHaveNone();
};

void tst_SidebarMenus::projectMenuHoldsWhatTheProjectAllows() {
    folders("cats, dogs");
    open();
    QCOMPARE(written(menuOf(projectRow("cats"))),
             QStringLiteral("Pin to Top, Add to Group >, -, New Folder…, Rename Project…, Color >, -, "
                            "Link to Repository…, -, Show in Finder, Copy Path, -, Hide Project, "
                            "Move Project to Trash…"));

    m_home->file("Library/dogs/.lumbra.json", "{\"repo\": \"/somewhere/dogs\"}");
    m_library->reloadProjects();
    m_library->newGroup(text("Pets"), {text("dogs")});
    m_library->togglePin(at("dogs"));
    QTRY_VERIFY(groupRow("Pets") >= 0);
    QCOMPARE(written(menuOf(projectRow("dogs"))),
             QStringLiteral("Unpin, Add to Group >, Remove from Group, -, New Folder…, Rename Project…, Color >, -, "
                            "Show Repository in Finder, Open Repository in Terminal, Change Linked Repository…, "
                            "Unlink Repository, -, Show in Finder, Copy Path, -, Hide Project, "
                            "Move Project to Trash…"));
}

void tst_SidebarMenus::pinningFromTheMenuPinsAndUnpins() {
    folders("cats");
    open();
    find(menuOf(projectRow("cats")), "Pin to Top").run();
    QCOMPARE(m_library->state().pins, texts("cats"));
    QTRY_VERIFY(shown(projectRow("cats")).pinned);
    find(menuOf(projectRow("cats")), "Unpin").run();
    QVERIFY(m_library->state().pins.isEmpty());
    QTRY_VERIFY(!shown(projectRow("cats")).pinned);
}

void tst_SidebarMenus::projectsAreGroupedFromTheMenu() {
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

void tst_SidebarMenus::aProjectGetsAColor() {
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

void tst_SidebarMenus::aHiddenProjectComesBackFromTheOptions() {
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

void tst_SidebarMenus::aLinkedProjectCanBeUnlinked() {
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

void tst_SidebarMenus::copyPathCopiesThePath() {
    folders("cats");
    open();
    find(menuOf(projectRow("cats")), "Copy Path").run();
    QCOMPARE(QGuiApplication::clipboard()->text(), at("cats").toString());
}

void tst_SidebarMenus::groupMenuRenamesColorsAndUngroups() {
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

void tst_SidebarMenus::folderMenuHoldsWhatAFolderAllows() {
    folders("cats/a");
    open();
    m_sidebar->toggle(projectRow("cats"));
    QTRY_VERIFY(folderRow("a") >= 0);
    QCOMPARE(written(menuOf(folderRow("a"))),
             QStringLiteral("Pin to Top, -, New Folder Inside…, Add Files…, Rename Folder…, -, Show in Finder, "
                            "Copy Path, -, Move to Trash"));
    find(menuOf(folderRow("a")), "Pin to Top").run();
    QCOMPARE(m_library->state().pins, texts("cats/a"));
    QTRY_VERIFY(shown(folderRow("a")).pinned);
    QVERIFY(written(menuOf(folderRow("a"))).startsWith(text("Unpin, -, ")));
}

void tst_SidebarMenus::pinnedRowsCanBeUnpinned() {
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

void tst_SidebarMenus::optionsHoldTheOrderAndTheLibrary() {
    open();
    const QList<MenuEntry> options = entriesOf(m_sidebar->optionsMenu());
    QCOMPARE(written(options), QStringLiteral("New Project…, New Group…, -, Sort Projects, By recent activity, "
                                              "By name, -, Show Library in Finder"));
    QVERIFY(find(options, "Sort Projects").isHeading());
    QVERIFY(find(options, "By recent activity").isChecked());
    find(options, "By name").run();
    QVERIFY(!m_sidebar->byActivity());
    QVERIFY(find(entriesOf(m_sidebar->optionsMenu()), "By name").isChecked());
    QCOMPARE(written(entriesOf(m_sidebar->newMenu())), QStringLiteral("New Project…, New Group…"));
}

void tst_SidebarMenus::optionsHoldTheSwitchOfTheUnderstanding() {
    folders("cats");
    open();
    InsightEngine insights(m_library.get());
    m_sidebar->setInsights(&insights);
    m_library->hide(m_library->projects().first());
    const auto options = [this] { return entriesOf(m_sidebar->optionsMenu()); };
    QCOMPARE(written(options()), QStringLiteral("New Project…, New Group…, -, Sort Projects, By recent activity, "
                                                "By name, -, Hidden Projects >, -, Understand Files with Apple "
                                                "Intelligence, %1, -, Show Library in Finder")
                                     .arg(insights.aiStatus()));
    const MenuEntry status = find(options(), qUtf8Printable(insights.aiStatus()));
    QVERIFY(status.isNote() && !status.enabled);

    const auto toggle = [&options] { return find(options(), "Understand Files with Apple Intelligence"); };
    QVERIFY(toggle().isChecked());
    toggle().run();
    QVERIFY(!insights.enabled());
    QVERIFY(!toggle().isChecked());
    toggle().run();
    QVERIFY(insights.enabled());
}

void tst_SidebarMenus::rowsWithoutAMenuHaveNone() {
    folders("cats");
    open();
    for (int row = -1; row < rowOf("Projects", SidebarRow::Type::projectsHeader) + 1; ++row)
        QVERIFY(m_sidebar->menu(row).isEmpty());
}

QTEST_MAIN(tst_SidebarMenus)
#include "tst_sidebarmenus.moc"

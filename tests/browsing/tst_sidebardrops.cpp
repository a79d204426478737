// SPDX-License-Identifier: GPL-3.0-or-later
#include "SidebarPane.h"

using namespace lumbra;

class tst_SidebarDrops : public QObject, SidebarPane {
    Q_OBJECT

private:
    void drop(const char* project, int row) { m_sidebar->drop(row, m_sidebar->dragPayload(projectRow(project))); }

private Q_SLOTS:
    void init() { make(); }
    void cleanup() { takeDown(); }

    void droppingAProjectOnItsSiblingMakesAGroupOfTheirWord();
    void droppingAStrangerMakesANewGroup();
    void droppingAProjectOnItselfDoesNothing();
    void droppingOnAGroupedProjectJoinsItsGroup();
    void droppingOnAGroupAddsToIt();
    void droppingOnTheHeaderTakesOutOfTheGroup();
    void foreignTextIsNotDropped();
    void onlyProjectsCanBeDragged();
};

void tst_SidebarDrops::droppingAProjectOnItsSiblingMakesAGroupOfTheirWord() {
    folders("cats-a, cats-b");
    open();
    drop("cats-b", projectRow("cats-a"));
    QCOMPARE(groups(), text("Cats(cats-a cats-b)"));
    QTRY_COMPARE(projects(), text("Cats, .cats-a, .cats-b"));
}

void tst_SidebarDrops::droppingAStrangerMakesANewGroup() {
    folders("cats-a, dogs");
    open();
    drop("dogs", projectRow("cats-a"));
    QCOMPARE(groups(), text("New Group(cats-a dogs)"));
}

void tst_SidebarDrops::droppingAProjectOnItselfDoesNothing() {
    folders("cats-a, cats-b");
    open();
    const int row = projectRow("cats-a");
    QVERIFY(!m_sidebar->accepts(row, m_sidebar->dragPayload(row)));
    drop("cats-a", row);
    QVERIFY(m_library->state() == LibraryState());
}

void tst_SidebarDrops::droppingOnAGroupedProjectJoinsItsGroup() {
    folders("ants, cats-a, dogs");
    open();
    m_library->newGroup(text("Pets"), {text("cats-a")});
    QTRY_VERIFY(groupRow("Pets") >= 0);
    drop("dogs", projectRow("cats-a"));
    QCOMPARE(groups(), text("Pets(cats-a dogs)"));
}

void tst_SidebarDrops::droppingOnAGroupAddsToIt() {
    folders("cats, dogs");
    open();
    m_library->newGroup(text("Pets"), {text("cats")});
    m_library->newGroup(text("Others"), {text("dogs")});
    QTRY_VERIFY(groupRow("Others") >= 0);
    drop("dogs", groupRow("Pets"));
    QCOMPARE(groups(), text("Pets(cats dogs)"));
}

void tst_SidebarDrops::droppingOnTheHeaderTakesOutOfTheGroup() {
    folders("cats, dogs");
    open();
    m_library->newGroup(text("Pets"), {text("cats"), text("dogs")});
    QTRY_VERIFY(groupRow("Pets") >= 0);
    drop("dogs", rowOf("Projects", SidebarRow::Type::projectsHeader));
    QCOMPARE(groups(), text("Pets(cats)"));
}

void tst_SidebarDrops::foreignTextIsNotDropped() {
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

void tst_SidebarDrops::onlyProjectsCanBeDragged() {
    folders("cats/a");
    open();
    m_sidebar->toggle(projectRow("cats"));
    QTRY_VERIFY(folderRow("a") >= 0);
    QCOMPARE(m_sidebar->dragPayload(projectRow("cats")), text("lumbra-project:cats"));
    QCOMPARE(m_sidebar->dragPayload(folderRow("a")), QString());
    QCOMPARE(m_sidebar->dragPayload(0), QString());
}

QTEST_MAIN(tst_SidebarDrops)
#include "tst_sidebardrops.moc"

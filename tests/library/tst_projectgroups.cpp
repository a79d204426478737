// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/ProjectGroups.h"

#include <QtTest>

using namespace lumbra;

class ProjectGroupsTest : public QObject {
    Q_OBJECT

private:
    static QStringList list(std::initializer_list<const char*> names) {
        QStringList result;
        for (const char* name : names)
            result.append(QString::fromUtf8(name));
        return result;
    }

    static ProjectGroup group(const char* name, std::initializer_list<const char*> projects) {
        return {QUuid::createUuid(), QString::fromUtf8(name), list(projects), std::nullopt, false};
    }

private Q_SLOTS:
    void suggestions_data() {
        QTest::addColumn<QStringList>("visible");
        QTest::addColumn<QStringList>("dismissed");
        QTest::addColumn<QString>("prefix");
        QTest::addColumn<QStringList>("projects");
        QTest::newRow("two siblings") << list({"acme_api", "acme-web"}) << QStringList() << QStringLiteral("acme")
                                      << list({"acme-web", "acme_api"});
        QTest::newRow("the first piece is too short")
            << list({"ab-one", "ab-two"}) << QStringList() << QString() << QStringList();
        QTest::newRow("length is counted in characters as people see them")
            << list({"e\u0301a-one", "e\u0301a-two", "\U0001F44D\U0001F3FDz-one", "\U0001F44D\U0001F3FDz-two"})
            << QStringList() << QString() << QStringList();
        QTest::newRow("one project alone")
            << list({"acme-web", "other"}) << QStringList() << QString() << QStringList();
        QTest::newRow("equal counts: the alphabetically first")
            << list({"zeta-a", "zeta-b", "zeta-c", "beta-a", "beta-b", "beta-c"}) << QStringList()
            << QStringLiteral("beta") << list({"beta-a", "beta-b", "beta-c"});
        QTest::newRow("the larger wins") << list({"zeta-a", "zeta-b", "zeta-c", "beta-a", "beta-b"}) << QStringList()
                                         << QStringLiteral("zeta") << list({"zeta-a", "zeta-b", "zeta-c"});
        QTest::newRow("after a dismissal the next best")
            << list({"zeta-a", "zeta-b", "zeta-c", "beta-a", "beta-b"}) << list({"zeta"}) << QStringLiteral("beta")
            << list({"beta-a", "beta-b"});
        QTest::newRow("case does not part them") << list({"Acme web", "acme.api"}) << QStringList()
                                                 << QStringLiteral("acme") << list({"Acme web", "acme.api"});
        QTest::newRow("a name without separators is its own first piece")
            << list({"acme", "acme-web"}) << QStringList() << QStringLiteral("acme") << list({"acme", "acme-web"});
    }
    void suggestions() {
        QFETCH(QStringList, visible);
        QFETCH(QStringList, dismissed);
        QFETCH(QString, prefix);
        QFETCH(QStringList, projects);
        LibraryState state;
        state.dismissed = dismissed;
        const auto found = ProjectGroups::suggestion(state, visible);
        QCOMPARE(found.has_value(), !prefix.isEmpty());
        if (found) {
            QCOMPARE(found->prefix, prefix);
            QCOMPARE(found->projects, projects);
        }
    }

    void groupedProjectsDoNotCount() {
        const LibraryState state = ProjectGroups::adding({}, group("Any", {"acme-web"}));
        QVERIFY(!ProjectGroups::suggestion(state, list({"acme-web", "acme-api"})));
    }

    void aNewGroupTakesItsProjectsFromTheOthers() {
        LibraryState state = ProjectGroups::adding({}, group("First", {"a", "b"}));
        state = ProjectGroups::adding(state, group("Second", {"b", "c"}));
        QCOMPARE(state.groups.size(), 2);
        QCOMPARE(state.groups[0].projects, list({"a"}));
        QCOMPARE(state.groups[1].projects, list({"b", "c"}));
        QCOMPARE(state.dismissed, list({"first", "second"}));
        state = ProjectGroups::adding(state, group("Third", {"a"}));
        QCOMPARE(state.groups.size(), 2); // the first was left empty
    }

    void aGroupMayBeMadeEmpty() {
        LibraryState state = ProjectGroups::adding({}, group("Empty", {}));
        QCOMPARE(state.groups.size(), 1);
        state = ProjectGroups::moving(state, QStringLiteral("a"), state.groups[0].id);
        QCOMPARE(state.groups[0].projects, list({"a"}));
    }

    void movingTheLastProjectOutRemovesTheGroup() {
        LibraryState state = ProjectGroups::adding({}, group("First", {"a"}));
        QVERIFY(ProjectGroups::removing(state, QStringLiteral("a")).groups.isEmpty());
        QVERIFY(ProjectGroups::moving(state, QStringLiteral("a"), QUuid::createUuid()).groups.isEmpty());
    }

    void movingIntoItsOwnGroupPutsItLast() {
        LibraryState state = ProjectGroups::adding({}, group("First", {"a", "b"}));
        state = ProjectGroups::moving(state, QStringLiteral("a"), state.groups[0].id);
        QCOMPARE(state.groups[0].projects, list({"b", "a"}));
    }
};

QTEST_GUILESS_MAIN(ProjectGroupsTest)
#include "tst_projectgroups.moc"

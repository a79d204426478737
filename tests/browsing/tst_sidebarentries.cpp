// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/sidebar/SidebarEntries.h"

#include <QTest>

using namespace lumbra;

namespace {

Project project(const QString& name) {
    return {name, Location(QStringView(u"/library")).child(name), {}};
}

QList<Project> projects(const QStringList& names) {
    QList<Project> made;
    for (const QString& name : names)
        made.append(project(name));
    return made;
}

ProjectGroup group(const QString& name, const QStringList& members, bool collapsed = false) {
    return {QUuid::createUuid(), name, members, {}, collapsed};
}

// "loose" for a project, "group(a b)" for a group with its members.
QString written(const SidebarEntry& entry) {
    if (const auto* loose = std::get_if<Project>(&entry))
        return loose->name;
    const auto& grouped = std::get<GroupEntry>(entry);
    QStringList names;
    for (const Project& member : grouped.members)
        names.append(member.name);
    return grouped.group.name + u'(' + names.join(u' ') + u')';
}

QString written(const QList<SidebarEntry>& entries) {
    QStringList texts;
    for (const SidebarEntry& entry : entries)
        texts.append(written(entry));
    return texts.join(QStringLiteral(", "));
}

using Ages = QMap<QString, double>; // seconds since 1970 by project name

} // namespace

Q_DECLARE_METATYPE(lumbra::SidebarEntries::Order)

class tst_SidebarEntries : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void list_data();
    void list();
    void filterMatchesWhateverTheCaseAndTheComposition();
    void aDuplicateNameIsListedOnceInItsGroup();
};

void tst_SidebarEntries::list_data() {
    using Order = SidebarEntries::Order;
    QTest::addColumn<QStringList>("visible");
    QTest::addColumn<QList<ProjectGroup>>("groups");
    QTest::addColumn<Ages>("activity");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<Order>("order");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char* name, const QString& visible, const QList<ProjectGroup>& groups,
                        const Ages& activity, const QString& filter, Order order, const QString& expected) {
        QTest::newRow(name) << visible.split(u' ', Qt::SkipEmptyParts) << groups << activity << filter << order
                            << expected;
    };
    const QString a = QStringLiteral("a"), b = QStringLiteral("b"), c = QStringLiteral("c"), d = QStringLiteral("d");
    const QString none;
    const ProjectGroup bc = group(QStringLiteral("G"), {b, c});

    row("an empty library lists nothing", none, {}, {}, none, Order::activity, none);
    row("the newest activity stands first", QStringLiteral("a b c"), {}, {{a, 1}, {b, 3}, {c, 2}}, none,
        Order::activity, QStringLiteral("b, c, a"));
    row("a project without activity stands last", QStringLiteral("a b c"), {}, {{b, 1}, {c, 2}}, none, Order::activity,
        QStringLiteral("c, b, a"));
    row("projects without activity keep the library's order", QStringLiteral("b a c"), {}, {}, none, Order::activity,
        QStringLiteral("b, a, c"));
    row("a group stands at the date of its most active member", QStringLiteral("a b c d"), {bc},
        {{a, 2}, {b, 1}, {c, 3}, {d, 4}}, none, Order::activity, QStringLiteral("d, G(b c), a"));
    row("a group stands before a project of the same date", QStringLiteral("a b c"), {bc}, {{a, 3}, {c, 3}}, none,
        Order::activity, QStringLiteral("G(b c), a"));
    row("groups of the same date keep their stored order", QStringLiteral("a b"),
        {group(QStringLiteral("Z"), {a}), group(QStringLiteral("Y"), {b})}, {}, none, Order::activity,
        QStringLiteral("Z(a), Y(b)"));
    row("members keep the group's order, whatever their activity", QStringLiteral("a b c"),
        {group(QStringLiteral("G"), {c, a, b})}, {{a, 9}}, none, Order::activity, QStringLiteral("G(c a b)"));
    row("numbers in names sort by value", QStringLiteral("file10 file9 File1"), {}, {}, none, Order::name,
        QStringLiteral("File1, file9, file10"));
    row("groups and projects sort among each other by name", QStringLiteral("a b c h"), {bc}, {{a, 9}}, none,
        Order::name, QStringLiteral("a, G(b c), h"));
    row("equal names keep groups first", QStringLiteral("a g b"), {group(QStringLiteral("G"), {b})}, {}, none,
        Order::name, QStringLiteral("a, G(b), g"));
    row("a group all of whose projects are hidden is not listed", QStringLiteral("a"), {bc}, {}, none, Order::activity,
        QStringLiteral("a"));
    row("an empty group is not listed", QStringLiteral("a"), {group(QStringLiteral("G"), {})}, {}, none,
        Order::activity, QStringLiteral("a"));
    row("a hidden project is counted out of its group", QStringLiteral("a b"), {bc}, {}, none, Order::name,
        QStringLiteral("a, G(b)"));
    row("a hidden member lends its group no date", QStringLiteral("a b"), {bc}, {{a, 2}, {b, 1}, {c, 3}}, none,
        Order::activity, QStringLiteral("a, G(b)"));
    row("a filter keeps the projects that hold it", QStringLiteral("cats dogs cattle"), {}, {}, QStringLiteral("CAT"),
        Order::name, QStringLiteral("cats, cattle"));
    row("a filter keeps a collapsed group for one member, with all of them", QStringLiteral("cats dogs"),
        {group(QStringLiteral("G"), {QStringLiteral("cats"), QStringLiteral("dogs")}, true)}, {}, QStringLiteral("dog"),
        Order::name, QStringLiteral("G(cats dogs)"));
    row("a filter keeps a group for its own name", QStringLiteral("cats dogs"),
        {group(QStringLiteral("Pets"), {QStringLiteral("cats"), QStringLiteral("dogs")})}, {}, QStringLiteral("pet"),
        Order::name, QStringLiteral("Pets(cats dogs)"));
    row("a filter that only a hidden member matches drops the group", QStringLiteral("b"), {bc}, {},
        QStringLiteral("c"), Order::name, none);
    row("a filter that matches nothing empties the list", QStringLiteral("a b c"), {bc}, {}, QStringLiteral("x"),
        Order::name, none);
}

void tst_SidebarEntries::list() {
    QFETCH(QStringList, visible);
    QFETCH(QList<ProjectGroup>, groups);
    QFETCH(Ages, activity);
    QFETCH(QString, filter);
    QFETCH(SidebarEntries::Order, order);
    QFETCH(QString, expected);

    QHash<Location, Date> dates;
    for (auto age = activity.cbegin(); age != activity.cend(); ++age)
        dates.insert(project(age.key()).url, Date{age.value()});
    QCOMPARE(written(SidebarEntries::list({projects(visible), groups, dates, filter, order})), expected);
}

void tst_SidebarEntries::filterMatchesWhateverTheCaseAndTheComposition() {
    QVERIFY(SidebarEntries::matches(QStringLiteral("Anything"), QString()));
    QVERIFY(SidebarEntries::matches(QStringLiteral("ÉTUDE"), QStringLiteral("étu")));
    QVERIFY(SidebarEntries::matches(QStringLiteral("e\u0301tude"), QStringLiteral("\u00e9t")));
    QVERIFY(SidebarEntries::matches(QStringLiteral("סרטונים"), QStringLiteral("רטו")));
    QVERIFY(!SidebarEntries::matches(QStringLiteral("cats"), QStringLiteral("cats ")));
}

void tst_SidebarEntries::aDuplicateNameIsListedOnceInItsGroup() {
    const QString a = QStringLiteral("a");
    const QList<Project> twice{project(a), {a, Location(QStringView(u"/elsewhere/a")), {}}};
    const auto entries = SidebarEntries::list({twice, {group(QStringLiteral("G"), {a})}, {}, {}, {}});
    QCOMPARE(written(entries), QStringLiteral("G(a)"));
}

QTEST_GUILESS_MAIN(tst_SidebarEntries)
#include "tst_sidebarentries.moc"

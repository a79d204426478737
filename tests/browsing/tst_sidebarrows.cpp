// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/sidebar/SidebarRows.h"

#include <QTest>

using namespace lumbra;
using Type = SidebarRow::Type;
using Chevron = SidebarRow::Chevron;

namespace {

Location at(QStringView path) {
    return Location(path);
}

Project project(const QString& name) {
    return {name, at(u"/library").child(name), {}};
}

const QUuid groupId = QUuid::createUuid();

GroupEntry pets(bool collapsed) {
    const QString cats = QStringLiteral("cats"), dogs = QStringLiteral("dogs");
    return {{groupId, QStringLiteral("Pets"), {cats, dogs}, {}, collapsed}, {project(cats), project(dogs)}};
}

SidebarRows::Facts facts() {
    SidebarRows::Facts facts;
    facts.now = {1'700'000'000};
    facts.entries = {pets(false), project(QStringLiteral("site"))};
    return facts;
}

// The titles, indented by depth.
QStringList titles(const SidebarRows::Facts& facts) {
    QStringList texts;
    for (const SidebarRow& row : SidebarRows::list(facts))
        texts.append(QString(row.depth, u'.') + row.title);
    return texts;
}

SidebarRow row(const SidebarRows::Facts& facts, const QString& title) {
    for (const SidebarRow& row : SidebarRows::list(facts)) {
        if (row.title == title)
            return row;
    }
    qFatal("no row %s", qUtf8Printable(title));
}

} // namespace

class tst_SidebarRows : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void thePaneStandsInItsOrder();
    void aFilterTakesAwayPinsAndSuggestion();
    void aFilterShowsTheMembersOfACollapsedGroup();
    void theChevronOfAGroupTellsWhatIsStoredUnderAFilterToo();
    void aFilterWithoutMatchSaysSo();
    void anEmptyLibrarySaysNothingOfAFilter();
    void recentBearsWhatIsNew_data();
    void recentBearsWhatIsNew();
    void starredBearsItsNumber();
    void tidyBearsItsNumber();
    void aGroupShowsItsMembersUnlessCollapsed();
    void theRowOfThePlaceIsSelected_data();
    void theRowOfThePlaceIsSelected();
    void aPinnedProjectIsMarkedAndSelectedInBothPlaces();
    void aPinOutsideAnyProjectHasNoBadge();
    void aProjectIsFreshForADay();
    void aLinkedProjectNamesItsRepository();
    void foldersFollowTheOpenRowsThatWereListed();
    void aFolderHasAChevronOnlyOnceSubfoldersAreKnown();
    void theFolderOnViewIsFilled();
    void coloursGoWithNames();
    void everyRowHasItsOwnId();
};

void tst_SidebarRows::thePaneStandsInItsOrder() {
    SidebarRows::Facts all = facts();
    all.pins = {{at(u"/library/site/final"), QStringLiteral("site")}};
    all.suggestion = GroupSuggestion{QStringLiteral("acme"), {QStringLiteral("acme-a"), QStringLiteral("acme-b")}};
    QCOMPARE(titles(all),
             (QStringList{QStringLiteral("Recent"), QStringLiteral("Starred"), QStringLiteral("Tidy"),
                          QStringLiteral("Pinned"), QStringLiteral("final"), QStringLiteral("Projects"),
                          QStringLiteral("2 projects start with acme. Group them?"), QStringLiteral("Pets"),
                          QStringLiteral(".cats"), QStringLiteral(".dogs"), QStringLiteral("site")}));
    QCOMPARE(row(all, QStringLiteral("2 projects start with acme. Group them?")).button,
             QStringLiteral("Group as Acme"));
}

void tst_SidebarRows::aFilterTakesAwayPinsAndSuggestion() {
    SidebarRows::Facts filtered = facts();
    filtered.pins = {{at(u"/library/site/final"), QStringLiteral("site")}};
    filtered.suggestion = GroupSuggestion{QStringLiteral("acme"), {QStringLiteral("acme-a")}};
    filtered.filter = QStringLiteral("cat");
    filtered.entries = {pets(false)};
    QCOMPARE(titles(filtered), (QStringList{QStringLiteral("Recent"), QStringLiteral("Starred"), QStringLiteral("Tidy"),
                                            QStringLiteral("Projects"), QStringLiteral("Pets"), QStringLiteral(".cats"),
                                            QStringLiteral(".dogs")}));
}

void tst_SidebarRows::aFilterShowsTheMembersOfACollapsedGroup() {
    SidebarRows::Facts filtered = facts();
    filtered.entries = {pets(true)};
    QVERIFY(!titles(filtered).contains(QStringLiteral(".dogs")));
    filtered.filter = QStringLiteral("dog");
    QVERIFY(titles(filtered).contains(QStringLiteral(".cats")));
    QVERIFY(titles(filtered).contains(QStringLiteral(".dogs")));
}

void tst_SidebarRows::theChevronOfAGroupTellsWhatIsStoredUnderAFilterToo() {
    SidebarRows::Facts filtered = facts();
    filtered.filter = QStringLiteral("dog");
    filtered.entries = {pets(true)};
    QCOMPARE(row(filtered, QStringLiteral("Pets")).chevron, Chevron::closed);
    filtered.entries = {pets(false)};
    QCOMPARE(row(filtered, QStringLiteral("Pets")).chevron, Chevron::open);
}

void tst_SidebarRows::aFilterWithoutMatchSaysSo() {
    SidebarRows::Facts filtered = facts();
    filtered.entries.clear();
    filtered.filter = QStringLiteral("50%1");
    const SidebarRow last = SidebarRows::list(filtered).last();
    QCOMPARE(last.title, QStringLiteral("No project matches “50%1”"));
    QVERIFY(!last.isChoosable());
}

void tst_SidebarRows::anEmptyLibrarySaysNothingOfAFilter() {
    SidebarRows::Facts empty = facts();
    empty.entries.clear();
    QCOMPARE(titles(empty).last(), QStringLiteral("Projects"));
}

void tst_SidebarRows::recentBearsWhatIsNew_data() {
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("badge");
    QTest::addColumn<QString>("help");
    QTest::newRow("nothing") << 0 << QString() << QString();
    QTest::newRow("99 reads 99") << 99 << QStringLiteral("99") << QStringLiteral("99 new in the last day");
    QTest::newRow("100 reads 99+") << 100 << QStringLiteral("99+") << QStringLiteral("100 new in the last day");
}

void tst_SidebarRows::recentBearsWhatIsNew() {
    QFETCH(int, count);
    SidebarRows::Facts some = facts();
    some.newToday = count;
    const SidebarRow recent = row(some, QStringLiteral("Recent"));
    QTEST(recent.count, "badge");
    QTEST(recent.countHelp, "help");
    QVERIFY(recent.countAccented);
}

void tst_SidebarRows::starredBearsItsNumber() {
    SidebarRows::Facts some = facts();
    QCOMPARE(row(some, QStringLiteral("Starred")).count, QString());
    some.starred = 1234;
    QCOMPARE(row(some, QStringLiteral("Starred")).count, QStringLiteral("1234"));
}

void tst_SidebarRows::tidyBearsItsNumber() {
    SidebarRows::Facts some = facts();
    QCOMPARE(row(some, QStringLiteral("Tidy")).count, QString());
    some.tidy = 12;
    QCOMPARE(row(some, QStringLiteral("Tidy")).count, QStringLiteral("12"));
    QVERIFY(!row(some, QStringLiteral("Tidy")).countAccented);
}

void tst_SidebarRows::aGroupShowsItsMembersUnlessCollapsed() {
    SidebarRows::Facts some = facts();
    QCOMPARE(row(some, QStringLiteral("Pets")).count, QStringLiteral("2"));
    QCOMPARE(row(some, QStringLiteral("Pets")).chevron, Chevron::open);
    some.entries = {pets(true)};
    QCOMPARE(row(some, QStringLiteral("Pets")).count, QStringLiteral("2"));
    QCOMPARE(row(some, QStringLiteral("Pets")).chevron, Chevron::closed);
    QCOMPARE(titles(some).last(), QStringLiteral("Pets"));
}

void tst_SidebarRows::theRowOfThePlaceIsSelected_data() {
    QTest::addColumn<Place>("place");
    QTest::addColumn<QString>("title");
    QTest::newRow("recent") << Place::recent() << QStringLiteral("Recent");
    QTest::newRow("starred") << Place::starred() << QStringLiteral("Starred");
    QTest::newRow("tidy") << Place::tidy() << QStringLiteral("Tidy");
    QTest::newRow("a group") << Place::group(groupId) << QStringLiteral("Pets");
    QTest::newRow("a project") << Place::folder(at(u"/library/site")) << QStringLiteral("site");
    QTest::newRow("a member of a group") << Place::folder(at(u"/library/dogs")) << QStringLiteral("dogs");
    QTest::newRow("a place that has no row") << Place::folder(at(u"/library/site/deep")) << QString();
}

void tst_SidebarRows::theRowOfThePlaceIsSelected() {
    QFETCH(Place, place);
    QFETCH(QString, title);
    SidebarRows::Facts some = facts();
    some.place = place;
    QStringList selected;
    for (const SidebarRow& row : SidebarRows::list(some)) {
        if (row.selected)
            selected.append(row.title);
    }
    QCOMPARE(selected.join(u' '), title);
}

void tst_SidebarRows::aPinnedProjectIsMarkedAndSelectedInBothPlaces() {
    SidebarRows::Facts some = facts();
    some.pins = {{at(u"/library/site"), QStringLiteral("site")}};
    some.place = Place::folder(at(u"/library/site"));
    const QList<SidebarRow> rows = SidebarRows::list(some);
    QCOMPARE(rows[4].type, Type::pinned);
    QVERIFY(rows[4].selected);
    QCOMPARE(rows.last().type, Type::project);
    QVERIFY(rows.last().selected);
    QVERIFY(rows.last().pinned);
    QVERIFY(!row(some, QStringLiteral("cats")).pinned);
}

void tst_SidebarRows::aPinOutsideAnyProjectHasNoBadge() {
    SidebarRows::Facts some = facts();
    some.pins = {{at(u"/library/stray"), std::nullopt}};
    const SidebarRow pin = row(some, QStringLiteral("stray"));
    QVERIFY(pin.badgeName.isEmpty());
    QCOMPARE(pin.symbol, QStringLiteral("folder"));
}

void tst_SidebarRows::aProjectIsFreshForADay() {
    SidebarRows::Facts some = facts();
    some.activity.insert(at(u"/library/cats"), some.now - 86399);
    some.activity.insert(at(u"/library/dogs"), some.now - 86400);
    QVERIFY(row(some, QStringLiteral("cats")).fresh);
    QVERIFY(!row(some, QStringLiteral("dogs")).fresh);
    QVERIFY(!row(some, QStringLiteral("site")).fresh);
}

void tst_SidebarRows::aLinkedProjectNamesItsRepository() {
    SidebarRows::Facts some = facts();
    Project linked = project(QStringLiteral("linked"));
    linked.repo = at(u"/code/linked");
    some.entries.append(linked);
    QCOMPARE(row(some, QStringLiteral("linked")).help, QStringLiteral("Linked to /code/linked"));
    QCOMPARE(row(some, QStringLiteral("site")).help, QString());
}

void tst_SidebarRows::foldersFollowTheOpenRowsThatWereListed() {
    SidebarRows::Facts some = facts();
    const Location cats = at(u"/library/cats");
    some.open = {cats, cats.child("a"), at(u"/library/site")};
    some.subfolders = {{cats, {cats.child("a"), cats.child("b")}},
                       {cats.child("a"), {cats.child("a").child("deep")}},
                       {cats.child("b"), {cats.child("b").child("closed")}}};
    QCOMPARE(titles(some).mid(4), (QStringList{QStringLiteral("Pets"), QStringLiteral(".cats"), QStringLiteral("..a"),
                                               QStringLiteral("...deep"), QStringLiteral("..b"),
                                               QStringLiteral(".dogs"), QStringLiteral("site")}));
}

void tst_SidebarRows::aFolderHasAChevronOnlyOnceSubfoldersAreKnown() {
    SidebarRows::Facts some = facts();
    const Location site = at(u"/library/site");
    some.open = {site};
    some.subfolders = {{site, {site.child("unknown"), site.child("leaf"), site.child("closed"), site.child("opened")}},
                       {site.child("leaf"), {}},
                       {site.child("closed"), {site.child("closed").child("x")}},
                       {site.child("opened"), {site.child("opened").child("y")}}};
    some.open.insert(site.child("opened"));
    QCOMPARE(row(some, QStringLiteral("unknown")).chevron, Chevron::none);
    QCOMPARE(row(some, QStringLiteral("leaf")).chevron, Chevron::none);
    QCOMPARE(row(some, QStringLiteral("closed")).chevron, Chevron::closed);
    QCOMPARE(row(some, QStringLiteral("opened")).chevron, Chevron::open);
}

void tst_SidebarRows::theFolderOnViewIsFilled() {
    SidebarRows::Facts some = facts();
    const Location site = at(u"/library/site");
    some.open = {site};
    some.subfolders = {{site, {site.child("a"), site.child("b")}}};
    some.place = Place::folder(site.child("a"));
    some.pins = {{site.child("b"), QStringLiteral("site")}};
    QCOMPARE(row(some, QStringLiteral("a")).symbol, QStringLiteral("folder.fill"));
    QVERIFY(row(some, QStringLiteral("a")).selected);
    const SidebarRow b = SidebarRows::list(some).last();
    QCOMPARE(b.symbol, QStringLiteral("folder"));
    QVERIFY(b.pinned);
}

void tst_SidebarRows::coloursGoWithNames() {
    SidebarRows::Facts some = facts();
    some.hues = {{QStringLiteral("cats"), 3}, {QStringLiteral("site"), 7}};
    some.groupHues = {{groupId, 3}};
    some.pins = {{at(u"/library/site/final"), QStringLiteral("site")}};
    QCOMPARE(row(some, QStringLiteral("Pets")).hue, 3);
    QCOMPARE(row(some, QStringLiteral("cats")).hue, 3);
    QCOMPARE(row(some, QStringLiteral("site")).hue, 7);
    QCOMPARE(row(some, QStringLiteral("final")).hue, 7);
    QCOMPARE(row(some, QStringLiteral("final")).badgeName, QStringLiteral("site"));
}

void tst_SidebarRows::everyRowHasItsOwnId() {
    SidebarRows::Facts some = facts();
    const Location shared = at(u"/library/cats");
    // Two names for one folder, a project in two groups, a group and a pin named twice.
    some.entries = {pets(false), pets(false),
                    GroupEntry{{QUuid::createUuid(), QStringLiteral("More"), {QStringLiteral("cats")}, {}, false},
                               {project(QStringLiteral("cats"))}},
                    Project{QStringLiteral("link"), shared, {}}};
    some.pins = {{shared, QStringLiteral("cats")}, {shared, QStringLiteral("cats")}};
    some.open = {shared};
    some.subfolders = {{shared, {shared.child("a")}}};
    QSet<QString> ids;
    const QList<SidebarRow> rows = SidebarRows::list(some);
    for (const SidebarRow& row : rows)
        ids.insert(row.id);
    QCOMPARE(ids.size(), rows.size());
    QCOMPARE(titles(some).count(QStringLiteral("..a")), 2);
    QCOMPARE(titles(some).count(QStringLiteral(".a")), 1);
}

QTEST_GUILESS_MAIN(tst_SidebarRows)
#include "tst_sidebarrows.moc"

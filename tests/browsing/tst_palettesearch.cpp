// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/palette/PaletteSearch.h"
#include "support/Strings.h"
#include "support/TestHome.h"

#include <QTest>

using namespace lumbra;

class tst_palettesearch : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTextIsScored_data();
    void aTextIsScored();
    void whatIsTypedIsTrimmedAndPutIntoLowerCase();

    void withoutAQueryFiveGroupsAndProjectsShowGroupsFirst();
    void withAQueryAtMostSixGroupsAndProjectsShow();
    void anExactNameStandsAboveOneThatOnlyBeginsWithTheQuery();
    void aGroupStandsAboveAProjectOfTheSameScore();
    void amongEqualRanksTheOrderIsThatOfTheLibrary();
    void aGroupsRow();
    void aProjectsSubtitleIsTheFirstThatApplies_data();
    void aProjectsSubtitleIsTheFirstThatApplies();

    void aFoldersRow();
    void aFilesRow_data();
    void aFilesRow();
    void theActions_data();
    void theActions();
    void anActionRuns();

    void rowsAreNumberedAndTheFirstOfEachKindBearsTheSectionsTitle();
    void aRowsIdentityHoldsItsKindItsWordsAndItsNumber();
    void aRowsHint_data();
    void aRowsHint();
    void theTextWithoutResults();

private:
    static Location at(const char* path) { return Location(QByteArray(path)); }
    static Project project(const char* name) {
        return {QString::fromUtf8(name), at("/lib").child(std::string_view(name)), {}};
    }
    static ProjectGroup group(const char* name, const QStringList& projects = {}) {
        return {QUuid::createUuid(), QString::fromUtf8(name), projects, {}, false};
    }
    static PaletteSearch::Facts facts(const QList<ProjectGroup>& groups, const QList<Project>& projects) {
        return {.groups = groups,
                .projects = projects,
                .hueOfGroup = [](const ProjectGroup&) { return 3; },
                .hueOfProject = [](const Project&) { return 7; },
                .starred = 42,
                .root = Location::home().child("Lumbra")};
    }
    static QStringList titles(const QList<PaletteResult>& rows) {
        QStringList all;
        for (const PaletteResult& row : rows)
            all.append(row.title);
        return all;
    }
    static PaletteQuery typed(const char* text) { return PaletteQuery::typed(QString::fromUtf8(text)); }
    static QString text(const char* utf8) { return QString::fromUtf8(utf8); }

    TestHome m_home;
};

void tst_palettesearch::aTextIsScored_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("query");
    QTest::addColumn<std::optional<int>>("score");
    using Score = std::optional<int>;
    const auto row = [](const char* name, const char* text, const char* query, Score score) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(query) << score;
    };
    row("an empty query scores nothing of note, however long the text", "a name of more than eight letters", "", 0);
    row("within a short text", "ademo", "demo", 0);
    row("at the beginning", "demos", "demo", 30);
    row("the whole text", "demo", "demo", 80);
    row("seven characters cost nothing", "xxxdemo", "demo", 0);
    row("eight cost one", "xxxxdemo", "demo", -1);
    row("fifteen still cost one", "xxxxxxxxxxxdemo", "demo", -1);
    row("sixteen cost two", "xxxxxxxxxxxxdemo", "demo", -2);
    row("the beginning of a long text", "demonstrations of it", "demo", 28);
    row("the text's capitals do not count", "DEMO", "demo", 80);
    row("the query's capitals do: it is taken as it is", "demo", "Demo", {});
    row("a word is missing", "demo", "demo final", {});
    row("all words, in another order", "final-demo", "demo final", -1);
    row("the first word begins the text", "demo-final", "demo final", 29);
    row("another word begins the text", "final-demo", "demo fin", -1);
    row("many blanks between words", "demo-final", "demo   final", 29);
    row("the whole query with its blank", "demo final", "demo final", 79);
    row("equal but for the blanks between", "demo final", "demo  final", 29);
    row("words that overlap", "demo", "dem emo", 30);
    row("the same word twice", "demo", "demo demo", 30);
    row("a query of blanks alone", "ademo", " ", 0);
    row("accents composed or not", "cafe\xCC\x81", "caf\xC3\xA9", 80);
    row("characters are counted, not bytes", "\xE5\xA4\x9C\xE6\x99\xAF\xE7\x85\xA7", "\xE5\xA4\x9C", 30);
    row("an emoji of several parts is one character",
        "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7"
        "123456",
        "1", 0);
}

void tst_palettesearch::aTextIsScored() {
    QFETCH(QString, text);
    QFETCH(QString, query);
    QTEST(score(text, query), "score");
}

void tst_palettesearch::whatIsTypedIsTrimmedAndPutIntoLowerCase() {
    QCOMPARE(typed("  Demo Final ").text(), text("demo final"));
    QVERIFY(typed("   ").isEmpty());
    QCOMPARE(typed("ÜBER").text(), text("über"));
}

void tst_palettesearch::withoutAQueryFiveGroupsAndProjectsShowGroupsFirst() {
    const auto all = facts({group("zoo"), group("alps")}, {project("a"), project("b"), project("c"), project("d")});
    QCOMPARE(titles(PaletteSearch::projects(typed(""), all)), (strings({"zoo", "alps", "a", "b", "c"})));
}

void tst_palettesearch::withAQueryAtMostSixGroupsAndProjectsShow() {
    const auto all = facts({group("a1")},
                           {project("a2"), project("a3"), project("a4"), project("a5"), project("a6"), project("a7")});
    QCOMPARE(titles(PaletteSearch::projects(typed("a"), all)), (strings({"a1", "a2", "a3", "a4", "a5", "a6"})));
}

void tst_palettesearch::anExactNameStandsAboveOneThatOnlyBeginsWithTheQuery() {
    const auto all = facts({}, {project("a demo"), project("demo-reel"), project("demo")});
    QCOMPARE(titles(PaletteSearch::projects(typed("demo"), all)), (strings({"demo", "demo-reel", "a demo"})));
}

void tst_palettesearch::aGroupStandsAboveAProjectOfTheSameScore() {
    const auto all = facts({group("demos")}, {project("demo1")});
    QCOMPARE(titles(PaletteSearch::projects(typed("demo"), all)), (strings({"demos", "demo1"})));
    // But not above one of a higher rank: the five are less than what an equal name is worth.
    const auto exact = facts({group("demos")}, {project("demo")});
    QCOMPARE(titles(PaletteSearch::projects(typed("demo"), exact)), (strings({"demo", "demos"})));
}

void tst_palettesearch::amongEqualRanksTheOrderIsThatOfTheLibrary() {
    const auto all = facts({}, {project("demo3"), project("demo1"), project("demo2")});
    QCOMPARE(titles(PaletteSearch::projects(typed("demo"), all)), (strings({"demo3", "demo1", "demo2"})));
}

void tst_palettesearch::aGroupsRow() {
    const ProjectGroup alps = group("Alps", strings({"alps-1"}));
    const PaletteResult row = PaletteSearch::projects(typed(""), facts({alps}, {})).first();
    QCOMPARE(row.kind, PaletteResult::Kind::project);
    QCOMPARE(row.subtitle, text("Group · 1 projects"));
    QCOMPARE(row.place, std::optional(Place::group(alps.id)));
    QCOMPARE(row.badge->name, text("Alps"));
    QCOMPARE(row.badge->hue, 3);
}

void tst_palettesearch::aProjectsSubtitleIsTheFirstThatApplies_data() {
    QTest::addColumn<bool>("grouped");
    QTest::addColumn<bool>("linked");
    QTest::addColumn<QString>("subtitle");
    QTest::newRow("in a group, and linked") << true << true << text("in Alps");
    QTest::newRow("in a group") << true << false << text("in Alps");
    QTest::newRow("linked") << false << true << text("linked to ~/code/site");
    QTest::newRow("neither") << false << false << text("Project");
}

void tst_palettesearch::aProjectsSubtitleIsTheFirstThatApplies() {
    QFETCH(bool, grouped);
    QFETCH(bool, linked);
    Project site = project("site");
    if (linked)
        site.repo = Location::home().child("code/site");
    const auto all = facts({group("Alps", grouped ? strings({"site"}) : strings({"other"}))}, {site});
    const PaletteResult row = PaletteSearch::projects(typed("site"), all).first();
    QTEST(row.subtitle, "subtitle");
    QCOMPARE(row.place, std::optional(Place::folder(site.url)));
    QCOMPARE(row.badge->hue, 7);
}

void tst_palettesearch::aFoldersRow() {
    const PaletteResult row = PaletteSearch::folder({at("/lib/site/renders/final"), text("site/renders/final")}, 1);
    QCOMPARE(row.kind, PaletteResult::Kind::folder);
    QCOMPARE(row.title, text("final"));
    QCOMPARE(row.subtitle, text("site / renders / final · 1 items"));
    QCOMPARE(row.place, std::optional(Place::folder(at("/lib/site/renders/final"))));
}

void tst_palettesearch::aFilesRow_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("inProject");
    QTest::addColumn<QString>("about");
    QTest::addColumn<QString>("subtitle");
    QTest::newRow("deep in a project") << text("/lib/site/renders/final/a.png") << true << QString()
                                       << text("site / renders / final · 2 hours ago");
    QTest::newRow("directly in a project")
        << text("/lib/site/a.png") << true << QString() << text("site · 2 hours ago");
    QTest::newRow("understood") << text("/lib/site/a.png") << true << text("A red kite")
                                << text("A red kite · site · 2 hours ago");
    QTest::newRow("in no project") << text("/lib/a.png") << false << QString() << text("2 hours ago");
}

void tst_palettesearch::aFilesRow() {
    QFETCH(QString, path);
    QFETCH(bool, inProject);
    QFETCH(QString, about);
    const Date now{1'700'000'000};
    const Asset asset{Location(QStringView(path)), AssetKind::image, 10, now - 7200, {}};
    const auto row = PaletteSearch::file(asset, inProject ? std::optional(project("site")) : std::nullopt, about, now);
    QCOMPARE(row.kind, PaletteResult::Kind::file);
    QCOMPARE(row.title, text("a.png"));
    QTEST(row.subtitle, "subtitle");
    QCOMPARE(row.asset, std::optional(asset));
    QVERIFY(!row.place);
    QVERIFY(!row.badge);
}

void tst_palettesearch::theActions_data() {
    QTest::addColumn<QString>("query");
    QTest::addColumn<QStringList>("rows");
    const QString recent = text("Go to Recent|Newest across every project");
    const QString starred = text("Go to Starred|42 kept");
    const QString finder = text("Show the library in Finder|~/Lumbra");
    QTest::newRow("all without a query") << QString() << QStringList{recent, starred, finder};
    QTest::newRow("by their titles") << text("go to") << QStringList{recent, starred};
    QTest::newRow("in any order of words") << text("library SHOW") << QStringList{finder};
    QTest::newRow("none") << text("newest") << QStringList{};
}

void tst_palettesearch::theActions() {
    QFETCH(QString, query);
    QStringList rows;
    for (const PaletteResult& row : PaletteSearch::actions(PaletteQuery::typed(query), facts({}, {}), {}))
        rows.append(row.title + u'|' + row.subtitle);
    QTEST(rows, "rows");
}

void tst_palettesearch::anActionRuns() {
    QStringList ran;
    const auto rows = PaletteSearch::actions({}, facts({}, {}),
                                             {.goToRecent = [&] { ran.append(text("recent")); },
                                              .goToStarred = [&] { ran.append(text("starred")); },
                                              .showLibrary = [&] { ran.append(text("library")); }});
    for (const PaletteResult& row : rows)
        row.run();
    QCOMPARE(ran, (strings({"recent", "starred", "library"})));
}

void tst_palettesearch::rowsAreNumberedAndTheFirstOfEachKindBearsTheSectionsTitle() {
    using Kind = PaletteResult::Kind;
    QList<PaletteResult> rows;
    for (const Kind kind : {Kind::project, Kind::project, Kind::folder, Kind::file, Kind::file, Kind::action})
        rows.append({.kind = kind});
    QStringList sections;
    qsizetype number = 0;
    for (const PaletteResult& row : PaletteSearch::numbered(rows)) {
        QCOMPARE(row.index, number++);
        sections.append(row.section);
    }
    QCOMPARE(sections, (strings({"Projects", "", "Folders", "Files", "", "Actions"})));
}

void tst_palettesearch::aRowsIdentityHoldsItsKindItsWordsAndItsNumber() {
    const PaletteResult row{
        .kind = PaletteResult::Kind::file, .title = text("a %2.png"), .subtitle = text("site"), .index = 4};
    QCOMPARE(row.id(), text("file|a %2.png|site|4"));
}

void tst_palettesearch::aRowsHint_data() {
    QTest::addColumn<std::optional<AssetKind>>("kind");
    QTest::addColumn<QString>("hint");
    using Kind = std::optional<AssetKind>;
    QTest::newRow("video") << Kind(AssetKind::video) << text("↩ open  ⌘↩ play");
    QTest::newRow("audio") << Kind(AssetKind::audio) << text("↩ open  ⌘↩ play");
    QTest::newRow("image") << Kind(AssetKind::image) << text("↩");
    QTest::newRow("document") << Kind(AssetKind::document) << text("↩");
    QTest::newRow("no file") << Kind() << text("↩");
}

void tst_palettesearch::aRowsHint() {
    QFETCH(std::optional<AssetKind>, kind);
    PaletteResult row;
    if (kind)
        row.asset = Asset{at("/lib/site/a"), *kind, 1, {}, {}};
    QTEST(row.hint(), "hint");
}

void tst_palettesearch::theTextWithoutResults() {
    QCOMPARE(PaletteSearch::emptyText({}), text("Start typing."));
    QCOMPARE(PaletteSearch::emptyText(text("Zebra ")), text("Nothing matches “Zebra ”."));
}

QTEST_GUILESS_MAIN(tst_palettesearch)
#include "tst_palettesearch.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/sidebar/SidebarRules.h"
#include "support/TestHome.h"

#include <QTest>

using namespace lumbra;

namespace {

Location at(QStringView path) {
    return Location(path);
}

} // namespace

class tst_SidebarRules : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void newBadge_data();
    void newBadge();
    void freshUntilExactlyOneDay_data();
    void freshUntilExactlyOneDay();
    void openedBy_data();
    void openedBy();
    void groupNameFor_data();
    void groupNameFor();
    void onlyTheFirstCharacterIsCapitalized();
    void dragPayloadsCarryTheNameAndNothingElseIsOne();
    void aProjectHasTheHueOfItsGroupOrItsOwn();
    void theFooterShortensTheHomeAndKeepsItsPlural();
    void theFooterTellsOfOneThingAtATime_data();
    void theFooterTellsOfOneThingAtATime();
};

void tst_SidebarRules::newBadge_data() {
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("badge");
    QTest::newRow("none") << 0 << QString();
    QTest::newRow("one") << 1 << QStringLiteral("1");
    QTest::newRow("99 reads 99") << 99 << QStringLiteral("99");
    QTest::newRow("100 reads 99+") << 100 << QStringLiteral("99+");
    QTest::newRow("many") << 123456 << QStringLiteral("99+");
}

void tst_SidebarRules::newBadge() {
    QFETCH(int, count);
    QTEST(SidebarRules::newBadge(count), "badge");
}

void tst_SidebarRules::freshUntilExactlyOneDay_data() {
    QTest::addColumn<double>("age");
    QTest::addColumn<bool>("fresh");
    QTest::newRow("now") << 0.0 << true;
    QTest::newRow("a second short of a day") << 86399.0 << true;
    QTest::newRow("exactly a day") << 86400.0 << false;
    QTest::newRow("older") << 86401.0 << false;
    QTest::newRow("a clock that runs ahead") << -60.0 << true;
}

void tst_SidebarRules::freshUntilExactlyOneDay() {
    QFETCH(double, age);
    const Date now{1'700'000'000};
    QTEST(SidebarRules::isFresh(now - age, now), "fresh");
    QVERIFY(!SidebarRules::isFresh(std::nullopt, now));
}

void tst_SidebarRules::openedBy_data() {
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("project");
    QTest::addColumn<QStringList>("opened");
    QTest::newRow("the root opens nothing") << QStringLiteral("/home/library") << QString() << QStringList();
    QTest::newRow("a project opens itself") << QStringLiteral("/home/library/p") << QStringLiteral("/home/library/p")
                                            << QStringList{QStringLiteral("/home/library/p")};
    QTest::newRow("a folder opens itself and all above it")
        << QStringLiteral("/home/library/p/a/b") << QStringLiteral("/home/library/p")
        << QStringList{QStringLiteral("/home/library/p"), QStringLiteral("/home/library/p/a"),
                       QStringLiteral("/home/library/p/a/b")};
    QTest::newRow("a project elsewhere is opened even where its path is short")
        << QStringLiteral("/x/p/a") << QStringLiteral("/x/p") << QStringList{QStringLiteral("/x/p")};
    QTest::newRow("a folder in no project opens its own path")
        << QStringLiteral("/home/library/stray") << QString() << QStringList{QStringLiteral("/home/library/stray")};
}

void tst_SidebarRules::openedBy() {
    QFETCH(QString, folder);
    QFETCH(QString, project);
    QFETCH(QStringList, opened);
    const auto containing = project.isEmpty() ? std::nullopt : std::optional(at(project));
    QSet<Location> expected;
    for (const QString& path : opened)
        expected.insert(at(path));
    QCOMPARE(SidebarRules::openedBy(at(folder), at(u"/home/library"), containing), expected);
}

void tst_SidebarRules::groupNameFor_data() {
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("dropped");
    QTest::addColumn<QString>("name");
    const auto row = [](const char* title, const char16_t* target, const char16_t* dropped, const char16_t* name) {
        QTest::newRow(title) << QString::fromUtf16(target) << QString::fromUtf16(dropped) << QString::fromUtf16(name);
    };
    row("cats-b on cats-a makes Cats", u"cats-a", u"cats-b", u"Cats");
    row("dogs on cats-a makes New Group", u"cats-a", u"dogs", u"New Group");
    row("the case of the names does not matter", u"CATS_a", u"cats.b", u"CATS");
    row("only the beginning counts", u"cats-a", u"my-cats", u"New Group");
    row("the word need not end there", u"cat-a", u"catalogue", u"Cat");
    row("empty pieces are passed over", u"--cats", u"cats", u"Cats");
    row("the rest of the word stands as it is", u"myApp web", u"myapp-api", u"MyApp");
    row("a name without any piece has no word", u"___", u"___", u"New Group");
    row("letters of any alphabet are raised", u"über-a", u"Über-b", u"Über");
}

void tst_SidebarRules::groupNameFor() {
    QFETCH(QString, target);
    QFETCH(QString, dropped);
    QTEST(SidebarRules::groupNameFor(target, dropped), "name");
}

void tst_SidebarRules::onlyTheFirstCharacterIsCapitalized() {
    QCOMPARE(SidebarRules::capitalized(QStringLiteral("acme")), QStringLiteral("Acme"));
    QCOMPARE(SidebarRules::capitalized(QStringLiteral("aCME")), QStringLiteral("ACME"));
    QCOMPARE(SidebarRules::capitalized(QStringLiteral("🎬film")), QStringLiteral("🎬film"));
    QCOMPARE(SidebarRules::capitalized(QStringLiteral("e\u0301t")), QStringLiteral("E\u0301t"));
    QCOMPARE(SidebarRules::capitalized(QString()), QString());
}

void tst_SidebarRules::dragPayloadsCarryTheNameAndNothingElseIsOne() {
    QCOMPARE(SidebarRules::dragPayload(QStringLiteral("cats")), QStringLiteral("lumbra-project:cats"));
    QCOMPARE(SidebarRules::projectNameIn(QStringLiteral("lumbra-project:a:b")), QStringLiteral("a:b"));
    QVERIFY(!SidebarRules::projectNameIn(QStringLiteral("cats")));
    QVERIFY(!SidebarRules::projectNameIn(QStringLiteral(" lumbra-project:cats")));
    QVERIFY(!SidebarRules::projectNameIn(QString()));
}

void tst_SidebarRules::aProjectHasTheHueOfItsGroupOrItsOwn() {
    const QString cats = QStringLiteral("cats"), dogs = QStringLiteral("dogs"), ants = QStringLiteral("ants"),
                  bees = QStringLiteral("bees"), eels = QStringLiteral("eels");
    LibraryState state;
    const ProjectGroup pets{QUuid::createUuid(), QStringLiteral("Pets"), {cats, dogs}, 4, false};
    const ProjectGroup more{QUuid::createUuid(), QStringLiteral("More"), {ants, cats}, {}, false};
    const ProjectGroup named{QUuid::createUuid(), QStringLiteral("Named"), {}, {}, false};
    state.groups = {pets, more, named};
    state.colors = {{cats, 9}, {bees, 7}, {QStringLiteral("Named"), 3}};
    QList<Project> projects;
    for (const QString& name : {cats, dogs, ants, bees, eels})
        projects.append({name, at(u"/library").child(name), {}});

    QCOMPARE(SidebarRules::groupHue(state, pets), 4);
    QCOMPARE(SidebarRules::groupHue(state, more), Hue::indexFor(QStringLiteral("More")));
    QCOMPARE(SidebarRules::groupHue(state, named), 3);
    QCOMPARE(SidebarRules::hues(state, projects), (QHash<QString, int>{{cats, 4},
                                                                       {dogs, 4},
                                                                       {ants, Hue::indexFor(QStringLiteral("More"))},
                                                                       {bees, 7},
                                                                       {eels, Hue::indexFor(eels)}}));
}

void tst_SidebarRules::theFooterShortensTheHomeAndKeepsItsPlural() {
    const TestHome home;
    const auto text = [](const Location& root, qsizetype projects) {
        const SidebarFooter footer = SidebarRules::footer({.root = root, .projects = projects});
        return footer.text + footer.tail;
    };
    QCOMPARE(text(home.path().child("Media"), 1), QStringLiteral("~/Media \u00b7 1 projects"));
    QCOMPARE(text(at(u"/srv/media"), 12), QStringLiteral("/srv/media \u00b7 12 projects"));
}

void tst_SidebarRules::theFooterTellsOfOneThingAtATime_data() {
    QTest::addColumn<bool>("indexing");
    QTest::addColumn<QString>("paused");
    QTest::addColumn<int>("done");
    QTest::addColumn<int>("planned");
    QTest::addColumn<QString>("current");
    QTest::addColumn<SidebarFooter>("footer");
    const QString paused = QStringLiteral("Paused while Low Power Mode is on");
    const QString current = QStringLiteral("fox.png");
    const SidebarFooter rest = SidebarRules::footer({.root = at(u"/srv/media"), .projects = 3});
    QTest::newRow("nothing") << false << QString() << 0 << 0 << QString() << rest;
    QTest::newRow("indexing before all") << true << paused << 1 << 9 << current
                                         << SidebarFooter{.busy = true, .text = QStringLiteral("Indexing…")};
    QTest::newRow("a pause before the work") << false << paused << 1 << 9 << current
                                             << SidebarFooter{.symbol = QStringLiteral("pause.circle"), .text = paused};
    QTest::newRow("work") << false << QString() << 1 << 4 << current
                          << SidebarFooter{.share = 0.25,
                                           .text = QStringLiteral("Understanding 1 of 4"),
                                           .detail = QStringLiteral("Looking at fox.png")};
    QTest::newRow("between two files") << false << QString() << 0 << 4 << QString()
                                       << SidebarFooter{.share = 0, .text = QStringLiteral("Understanding 0 of 4")};
    QTest::newRow("all done") << false << QString() << 4 << 4 << QString() << rest;
}

void tst_SidebarRules::theFooterTellsOfOneThingAtATime() {
    QFETCH(bool, indexing);
    QFETCH(QString, paused);
    QFETCH(int, done);
    QFETCH(int, planned);
    QFETCH(QString, current);
    QFETCH(SidebarFooter, footer);
    const auto given = [](const QString& text) { return text.isEmpty() ? std::nullopt : std::optional(text); };
    QVERIFY(SidebarRules::footer({indexing, given(paused), done, planned, given(current), at(u"/srv/media"), 3})
            == footer);
}

QTEST_GUILESS_MAIN(tst_SidebarRules)
#include "tst_sidebarrules.moc"

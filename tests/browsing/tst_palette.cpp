// SPDX-License-Identifier: GPL-3.0-or-later
#include "PaletteFixture.h"

#include <QMutex>
#include <QSignalSpy>

using namespace lumbra;

class tst_palette : public QObject, private PaletteFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { make(); }
    void cleanup() { takeDown(); }

    void withoutAQueryItShowsProjectsAndActionsAndNoFolderOrFile();
    void aQueryFindsInAllSections();
    void theQueryIsTrimmedAndPutIntoLowerCase();
    void aHiddenProjectAndItsFoldersDoNotShowButItsFilesDo();
    void whatIsTypedBeforeTheNamesAreReadyIsAnsweredWhenTheyAre();
    void theQueryIsNotKeptBetweenOpenings();
    void openedBeforeItWasMadeItShows();

    void filesFoundByTheirContentComeAfterThoseFoundByName();
    void aFileFoundByNameIsNotRepeated();
    void atMostEightFilesShow();
    void whatTheStoreFindsBeyondTheIndexDoesNotShow();
    void theStoreIsAskedForTwelve();
    void insightTitlesComeFirstInTheSubtitle();
    void theAnswerToAnOlderQueryIsDropped();
    void whoTypesFasterThanTheStoreAnswersAsksItOnlyForTheLast();
    void anAnswerThatComesAfterClosingChangesNothing();
    void nothingMatchesIsSaidOnlyOnceTheStoreHasAnswered();
};

void tst_palette::withoutAQueryItShowsProjectsAndActionsAndNoFolderOrFile() {
    file("site/renders/a.png");
    open();
    const ProjectGroup zoo = m_library->newGroup(QStringLiteral("Zoo"), strings({"site"}));
    m_library->setPaletteOpen(false);
    open();
    QCOMPARE(rows(), strings({"Projects: Zoo, film, site",
                              "Actions: Go to Recent, Go to Starred, Show the library in Finder"}));
    QCOMPARE(m_palette->highlighted(), 0);
    QCOMPARE(m_palette->emptyText(), QString());
    QCOMPARE(m_palette->results()->results()[2].subtitle, QStringLiteral("in Zoo"));
}

void tst_palette::aQueryFindsInAllSections() {
    file("site/go/ago.png", 2000);
    file("film/go go.mp4", 1000);
    m_home->folder("Library/gong");
    open();
    QTRY_COMPARE(m_library->statsFor(at("site/go")).count, 1);
    type("go");
    QTRY_COMPARE(rows(), strings({"Projects: gong", "Folders: go", "Files: ago.png, go go.mp4",
                                  "Actions: Go to Recent, Go to Starred"}));
    QCOMPARE(m_palette->results()->results()[1].subtitle, QStringLiteral("site / go · 1 items"));
}

void tst_palette::theQueryIsTrimmedAndPutIntoLowerCase() {
    file("site/final-demo.mp4");
    open();
    type("  Demo FINAL ");
    QTRY_COMPARE(rows(), strings({"Files: final-demo.mp4"}));
}

void tst_palette::aHiddenProjectAndItsFoldersDoNotShowButItsFilesDo() {
    file("secret/secrets/secret.png");
    open();
    m_library->hide(*m_library->projectContaining(at("secret")));
    m_library->setPaletteOpen(false);
    open();
    type("secret");
    QTRY_COMPARE(rows(), strings({"Files: secret.png"}));
    QVERIFY(m_palette->results()->results()[0].subtitle.startsWith(QStringLiteral("secret / secrets · ")));
}

void tst_palette::whatIsTypedBeforeTheNamesAreReadyIsAnsweredWhenTheyAre() {
    file("site/demo.png");
    open();
    type("demo"); // in the same turn
    QCOMPARE(rows(), QStringList());
    QCOMPARE(m_palette->emptyText(), QString()); // it is not known yet that there are none
    QTRY_COMPARE(rows(), strings({"Files: demo.png"}));
}

void tst_palette::theQueryIsNotKeptBetweenOpenings() {
    open();
    type("film");
    QTRY_COMPARE(rows(), strings({"Projects: film"}));
    m_palette->close();
    QVERIFY(!m_library->paletteOpen());
    open();
    QCOMPARE(m_palette->query(), QString());
    QCOMPARE(titles(PaletteResult::Kind::project), strings({"film", "site"}));
}

void tst_palette::openedBeforeItWasMadeItShows() {
    m_library = std::make_unique<Library>(m_home->path().child("Library"), true);
    m_library->setPaletteOpen(true);
    const Palette palette(m_library.get());
    QVERIFY(palette.shown());
}

void tst_palette::filesFoundByTheirContentComeAfterThoseFoundByName() {
    const Location found = file("site/b.png", 5000);
    const Location second = file("film/c.png", 6000);
    file("site/kite.png", 1000);
    open();
    insights(QStringLiteral("kite"), {found, second});
    type("Kite");
    QTRY_COMPARE(rows(), strings({"Files: kite.png, b.png, c.png"}));
}

void tst_palette::aFileFoundByNameIsNotRepeated() {
    const Location kite = file("site/kite.png");
    const Location other = file("site/b.png");
    open();
    insights(QStringLiteral("kite"), {kite, other});
    type("kite");
    QTRY_COMPARE(rows(), strings({"Files: kite.png, b.png"}));
}

void tst_palette::atMostEightFilesShow() {
    QList<Location> hits;
    for (int number = 0; number < 7; ++number)
        file(qPrintable(QStringLiteral("site/kite%1.png").arg(number)), 1000 + number);
    for (int number = 0; number < 5; ++number)
        hits.append(file(qPrintable(QStringLiteral("film/shot%1.png").arg(number))));
    open();
    insights(QStringLiteral("kite"), hits);
    type("kite");
    QTRY_COMPARE(titles(PaletteResult::Kind::file), strings({"kite6.png", "kite5.png", "kite4.png", "kite3.png",
                                                             "kite2.png", "kite1.png", "shot0.png", "shot1.png"}));
}

void tst_palette::whatTheStoreFindsBeyondTheIndexDoesNotShow() {
    const Location found = file("site/b.png");
    open();
    insights(QStringLiteral("kite"), {at("site/gone.png"), found, m_home->file("elsewhere.png")});
    type("kite");
    QTRY_COMPARE(rows(), strings({"Files: b.png"}));
}

void tst_palette::theStoreIsAskedForTwelve() {
    open();
    std::atomic<int> asked = 0;
    m_palette->setInsights({.search =
                                [&](const QString&, int limit) {
                                    asked = limit;
                                    return QStringList();
                                },
                            .title = [](const Asset&) { return QString(); }});
    type("kite");
    QTRY_COMPARE(asked.load(), 12);
}

void tst_palette::insightTitlesComeFirstInTheSubtitle() {
    const Location found = file("film/b.png");
    file("site/kite.png");
    open();
    m_palette->setInsights({.search = [=](const QString&, int) { return QStringList{found.toString()}; },
                            .title = [](const Asset& asset) { return QStringLiteral("About ") + asset.url.name(); }});
    type("kite");
    QTRY_COMPARE(titles(PaletteResult::Kind::file).size(), 2);
    const auto subtitle = [&](int row) { return m_palette->results()->results()[row].subtitle; };
    QTRY_VERIFY(subtitle(0).startsWith(QStringLiteral("About kite.png · site · ")));
    QVERIFY(subtitle(1).startsWith(QStringLiteral("About b.png · film · ")));
}

void tst_palette::theAnswerToAnOlderQueryIsDropped() {
    const Location old = file("site/old.png");
    const Location present = file("site/present.png");
    open();
    QSemaphore asked;
    QSemaphore answer;
    m_palette->setInsights({.search =
                                [&](const QString& query, int) {
                                    asked.release();
                                    answer.acquire();
                                    return QStringList{(query == u"first" ? old : present).toString()};
                                },
                            .title = [](const Asset&) { return QString(); }});
    type("first");
    QVERIFY(acquired(asked));
    type("second");
    QSignalSpy inserted(m_palette->results(), &PaletteRows::rowsInserted);
    answer.release();
    QVERIFY(acquired(asked)); // the second question
    QCOMPARE(inserted.size(), 0);
    QCOMPARE(rows(), QStringList());
    answer.release();
    QTRY_COMPARE(rows(), strings({"Files: present.png"}));
}

void tst_palette::whoTypesFasterThanTheStoreAnswersAsksItOnlyForTheLast() {
    open();
    QMutex mutex;
    QStringList queries;
    QSemaphore answer;
    m_palette->setInsights({.search =
                                [&](const QString& query, int) {
                                    {
                                        const QMutexLocker lock(&mutex);
                                        queries.append(query);
                                    }
                                    answer.acquire();
                                    return QStringList();
                                },
                            .title = [](const Asset&) { return QString(); }});
    const auto asked = [&] {
        const QMutexLocker lock(&mutex);
        return queries;
    };
    type("k");
    QTRY_COMPARE(asked(), strings({"k"}));
    for (const char* text : {"ki", "kit", "kite"})
        type(text);
    answer.release(2);
    QTRY_COMPARE(m_palette->emptyText(), QStringLiteral("Nothing matches “kite”."));
    QCOMPARE(asked(), strings({"k", "kite"}));
}

void tst_palette::anAnswerThatComesAfterClosingChangesNothing() {
    const Location found = file("site/b.png");
    open();
    QSemaphore asked;
    QSemaphore answer;
    m_palette->setInsights({.search =
                                [&](const QString&, int) {
                                    asked.release();
                                    answer.acquire();
                                    return QStringList{found.toString()};
                                },
                            .title = [](const Asset&) { return QString(); }});
    type("kite");
    QVERIFY(acquired(asked));
    m_palette->close();
    QSignalSpy inserted(m_palette->results(), &PaletteRows::rowsInserted);
    answer.release(2);
    open();
    type("kite");
    QTRY_COMPARE(rows(), strings({"Files: b.png"}));
    QCOMPARE(asked.available(), 1); // asked once more, for what was typed after
}

void tst_palette::nothingMatchesIsSaidOnlyOnceTheStoreHasAnswered() {
    open();
    QSemaphore answer;
    m_palette->setInsights({.search =
                                [&](const QString&, int) {
                                    answer.acquire();
                                    return QStringList();
                                },
                            .title = [](const Asset&) { return QString(); }});
    type("Zebra ");
    QCOMPARE(m_palette->emptyText(), QString());
    answer.release();
    QTRY_COMPARE(m_palette->emptyText(), QStringLiteral("Nothing matches “Zebra ”."));
    type("");
    QCOMPARE(m_palette->emptyText(), QString());
}

QTEST_MAIN(tst_palette)
#include "tst_palette.moc"

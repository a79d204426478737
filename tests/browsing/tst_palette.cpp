// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/palette/Palette.h"
#include "support/Strings.h"
#include "support/TestHome.h"

#include <QAbstractItemModelTester>
#include <QMutex>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>

using namespace lumbra;

class tst_palette : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

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

    void theArrowKeysStopAtTheEnds();
    void aNewQueryHighlightsTheFirstRow();
    void theHighlightStaysOnItsRowWhenOthersCome();
    void returnGoesToAProject();
    void returnGoesToAGroup();
    void returnGoesToAFolder();
    void returnRevealsAFile();
    void returnRunsAnAction();
    void returnPlaysOnlyWithControlAlone_data();
    void returnPlaysOnlyWithControlAlone();
    void playingTakesTheFilesOfTheFolderNewestFirst();
    void anImageIsPlayedToo();
    void controlWithReturnOnAProjectGoesThere();
    void returnOnAnEmptyListLeavesThePaletteOpen();
    void escapeCloses();
    void otherKeysAreTheFields();
    void aRowIsOpenedByItsNumber();
    void aRowThatIsNotThereOpensNothing();
    void aFileThatHasGoneOpensWhereItWas();

private:
    Location at(const char* relative) const { return m_library->root().child(std::string_view(relative)); }
    Location file(const char* relative, double modified = 1000) const {
        const Location made = m_home->file(std::string("Library/") + relative);
        TestHome::touch(made, modified);
        return made;
    }
    void open();
    void type(const char* text) { m_palette->setQuery(QString::fromUtf8(text)); }
    // Once only, unlike the macros that try again.
    static bool acquired(QSemaphore& semaphore) {
        return QTest::qWaitFor([&] { return semaphore.tryAcquire(); });
    }
    // The rows once the names are ready, as "section: title, title".
    QStringList rows() const;
    QStringList titles(PaletteResult::Kind kind) const;
    int rowOf(const char* title) const;
    void highlight(const char* title) {
        QTRY_VERIFY(rowOf(title) >= 0);
        while (m_palette->highlighted() < rowOf(title))
            m_palette->press(Qt::Key_Down, {});
    }
    void insights(const QString& answered, const QList<Location>& found);

    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<Library> m_library;
    std::unique_ptr<Palette> m_palette;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void tst_palette::init() {
    m_home = std::make_unique<TestHome>();
    m_home->folder("Library/site");
    m_home->folder("Library/film");
}

void tst_palette::cleanup() {
    m_tester.reset();
    m_palette.reset();
    m_library.reset();
    m_home.reset();
}

void tst_palette::open() {
    if (!m_library) {
        m_library = std::make_unique<Library>(m_home->path().child("Library"), true);
        QTRY_VERIFY(!m_library->indexing());
        m_palette = std::make_unique<Palette>(m_library.get());
        m_tester = std::make_unique<QAbstractItemModelTester>(m_palette->results(),
                                                              QAbstractItemModelTester::FailureReportingMode::Fatal);
    }
    m_library->setPaletteOpen(true);
}

QStringList tst_palette::rows() const {
    QStringList all;
    for (const PaletteResult& row : m_palette->results()->results()) {
        if (!row.section.isEmpty())
            all.append(row.section + u':');
        all.last() += u' ' + row.title + u',';
    }
    for (QString& section : all)
        section.chop(1);
    return all;
}

QStringList tst_palette::titles(PaletteResult::Kind kind) const {
    QStringList all;
    for (const PaletteResult& row : m_palette->results()->results())
        if (row.kind == kind)
            all.append(row.title);
    return all;
}

int tst_palette::rowOf(const char* title) const {
    const QList<PaletteResult>& all = m_palette->results()->results();
    for (int row = 0; row < all.size(); ++row)
        if (all[row].title == QString::fromUtf8(title))
            return row;
    return -1;
}

void tst_palette::insights(const QString& answered, const QList<Location>& found) {
    QStringList paths;
    for (const Location& url : found)
        paths.append(url.toString());
    m_palette->setInsights(
        {.search = [=](const QString& query, int) { return query == answered ? paths : QStringList(); },
         .title = [](const Asset&) { return QString(); }});
}

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

void tst_palette::theArrowKeysStopAtTheEnds() {
    open();
    QCOMPARE(m_palette->results()->rowCount(), 5); // two projects, three actions
    QVERIFY(m_palette->press(Qt::Key_Up, {}));
    QCOMPARE(m_palette->highlighted(), 0);
    for (int presses = 0; presses < 4; ++presses)
        m_palette->press(Qt::Key_Down, {});
    QCOMPARE(m_palette->highlighted(), 4);
    m_palette->press(Qt::Key_Down, {});
    QCOMPARE(m_palette->highlighted(), 4);
    m_palette->press(Qt::Key_Up, {});
    QCOMPARE(m_palette->highlighted(), 3);
}

void tst_palette::aNewQueryHighlightsTheFirstRow() {
    open();
    m_palette->press(Qt::Key_Down, {});
    m_palette->press(Qt::Key_Down, {});
    type("i");
    QCOMPARE(m_palette->highlighted(), 0);
}

void tst_palette::theHighlightStaysOnItsRowWhenOthersCome() {
    const Location found = file("site/b.png");
    open();
    QSemaphore answer;
    m_palette->setInsights({.search =
                                [&](const QString&, int) {
                                    answer.acquire();
                                    return QStringList{found.toString()};
                                },
                            .title = [](const Asset&) { return QString(); }});
    type("go to");
    QTRY_COMPARE(rows(), strings({"Actions: Go to Recent, Go to Starred"}));
    m_palette->press(Qt::Key_Down, {});
    answer.release();
    QTRY_COMPARE(rows(), strings({"Files: b.png", "Actions: Go to Recent, Go to Starred"}));
    QCOMPARE(m_palette->highlighted(), 2);
}

void tst_palette::returnGoesToAProject() {
    open();
    highlight("site");
    m_palette->press(Qt::Key_Return, {});
    QVERIFY(!m_library->paletteOpen());
    QCOMPARE(m_library->place(), Place::folder(at("site")));
}

void tst_palette::returnGoesToAGroup() {
    open();
    const ProjectGroup zoo = m_library->newGroup(QStringLiteral("Zoo"), strings({"site"}));
    type("zoo");
    m_palette->press(Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(m_library->place(), Place::group(zoo.id));
}

void tst_palette::returnGoesToAFolder() {
    file("site/renders/final/a.png");
    open();
    type("final");
    highlight("final");
    m_palette->press(Qt::Key_Return, {});
    QCOMPARE(m_library->place(), Place::folder(at("site/renders/final")));
}

void tst_palette::returnRevealsAFile() {
    const Location demo = file("site/renders/demo.mp4");
    open();
    type("demo");
    highlight("demo.mp4");
    m_palette->press(Qt::Key_Return, {});
    QCOMPARE(m_library->place(), Place::folder(at("site/renders")));
    QCOMPARE(m_library->pendingReveal(), std::optional(demo));
    QVERIFY(!m_library->playing());
}

void tst_palette::returnRunsAnAction() {
    open();
    highlight("Go to Starred");
    m_palette->press(Qt::Key_Return, {});
    QVERIFY(!m_library->paletteOpen());
    QCOMPARE(m_library->place(), Place::starred());
}

void tst_palette::returnPlaysOnlyWithControlAlone_data() {
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("plays");
    QTest::newRow("none") << int(Qt::NoModifier) << false;
    QTest::newRow("control") << int(Qt::ControlModifier) << true;
    QTest::newRow("control, on the keypad") << int(Qt::ControlModifier | Qt::KeypadModifier) << true;
    QTest::newRow("control and shift") << int(Qt::ControlModifier | Qt::ShiftModifier) << false;
    QTest::newRow("alt") << int(Qt::AltModifier) << false;
    QTest::newRow("shift") << int(Qt::ShiftModifier) << false;
}

void tst_palette::returnPlaysOnlyWithControlAlone() {
    QFETCH(int, modifiers);
    file("site/demo.mp4");
    open();
    type("demo");
    highlight("demo.mp4");
    m_palette->press(Qt::Key_Return, Qt::KeyboardModifiers(modifiers));
    QVERIFY(!m_library->paletteOpen());
    QTEST(m_library->playing().has_value(), "plays");
    QCOMPARE(m_library->pendingReveal().has_value(), !m_library->playing().has_value());
}

void tst_palette::playingTakesTheFilesOfTheFolderNewestFirst() {
    file("site/renders/old.mp4", 1000);
    const Location demo = file("site/renders/demo.mp4", 2000);
    file("site/renders/new.png", 3000);
    file("site/renders/below/other.mp4", 4000);
    file("site/above.mp4", 5000);
    file("site/renders-2/beside.mp4", 6000);
    open();
    type("demo");
    highlight("demo.mp4");
    m_palette->press(Qt::Key_Return, Qt::ControlModifier);
    QVERIFY(m_library->playing());
    QCOMPARE(m_library->playing()->asset.url, demo);
    QStringList order;
    const Assets played = m_library->playing()->order;
    for (const Asset& asset : played)
        order.append(asset.url.name());
    QCOMPARE(order, strings({"new.png", "demo.mp4", "old.mp4"}));
}

void tst_palette::anImageIsPlayedToo() {
    file("site/still.png");
    open();
    type("still");
    highlight("still.png");
    QCOMPARE(m_palette->results()->results()[0].hint(), QStringLiteral("↩"));
    m_palette->press(Qt::Key_Return, Qt::ControlModifier);
    QVERIFY(m_library->playing());
}

void tst_palette::controlWithReturnOnAProjectGoesThere() {
    open();
    highlight("site");
    m_palette->press(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(m_library->place(), Place::folder(at("site")));
    QVERIFY(!m_library->playing());
}

void tst_palette::returnOnAnEmptyListLeavesThePaletteOpen() {
    open();
    const Place place = m_library->place();
    type("zebra");
    QTRY_VERIFY(!m_palette->emptyText().isEmpty());
    m_palette->press(Qt::Key_Down, {});
    QVERIFY(m_palette->press(Qt::Key_Return, {}));
    QVERIFY(m_library->paletteOpen());
    QCOMPARE(m_library->place(), place);
}

void tst_palette::escapeCloses() {
    open();
    type("film");
    QVERIFY(m_palette->press(Qt::Key_Escape, {}));
    QVERIFY(!m_library->paletteOpen());
}

void tst_palette::otherKeysAreTheFields() {
    open();
    QVERIFY(!m_palette->press(Qt::Key_A, {}));
    QVERIFY(!m_palette->press(Qt::Key_Left, {}));
    QVERIFY(!m_palette->press(Qt::Key_Home, {}));
}

void tst_palette::aRowIsOpenedByItsNumber() {
    open();
    m_palette->openRow(rowOf("site"));
    QCOMPARE(m_library->place(), Place::folder(at("site")));
}

void tst_palette::aRowThatIsNotThereOpensNothing() {
    open();
    m_palette->openRow(-1);
    m_palette->openRow(99);
    QVERIFY(m_library->paletteOpen());
}

void tst_palette::aFileThatHasGoneOpensWhereItWas() {
    const Location demo = file("site/demo.mp4");
    open();
    type("demo");
    highlight("demo.mp4");
    QVERIFY(QFile::remove(demo.toString()));
    m_palette->press(Qt::Key_Return, {});
    QCOMPARE(m_library->place(), Place::folder(at("site")));
    QVERIFY(!m_library->lastError());
}

QTEST_MAIN(tst_palette)
#include "tst_palette.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "look/panel/PathChoice.h"
#include "support/TestHome.h"

#include <QSignalSpy>
#include <QTest>

using namespace lumbra;

// What can be chosen, by whatever a panel sends: rows, keys, typed paths and names.
class PathChoiceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_home = std::make_unique<TestHome>();
        m_home->folder("media/stills");
        m_home->folder("media/sounds");
        for (const char* file : {"media/a.png", "media/b.png", "media/c.png"})
            m_home->file(file);
        m_choice = std::make_unique<PathChoice>();
        m_chosen = std::make_unique<QSignalSpy>(m_choice.get(), &PathChoice::chosen);
    }

    void severalFilesAndFoldersAreOpenedTogether() {
        start(PathChoice::Open, "media");
        m_choice->press(row("stills"));
        m_choice->press(row("b.png"), Qt::ControlModifier);
        QCOMPARE(m_choice->summary(), QStringLiteral("2 items"));
        m_choice->choose();
        QCOMPARE(chosen(), paths({"media/stills", "media/b.png"}));
    }

    void aRangeIsSelectedWithShift() {
        start(PathChoice::Open, "media");
        m_choice->press(row("c.png"));
        m_choice->press(row("a.png"), Qt::ShiftModifier);
        QCOMPARE(m_choice->selectedRows().size(), 3);
        m_choice->press(row("b.png"), Qt::ShiftModifier);
        QCOMPARE(m_choice->selectedRows(), QList<int>({row("b.png"), row("c.png")}));
        m_choice->press(row("b.png"), Qt::ControlModifier);
        QCOMPARE(m_choice->selectedRows(), QList<int>({row("c.png")}));
    }

    void theArrowKeysSelectAndExtend() {
        start(PathChoice::Open, "media");
        m_choice->move(1);
        QCOMPARE(m_choice->selectedRows(), QList<int>({0}));
        m_choice->move(1);
        m_choice->move(1, Qt::ShiftModifier);
        QCOMPARE(m_choice->selectedRows(), QList<int>({1, 2}));
        m_choice->move(1000);
        QCOMPARE(m_choice->selectedRows(), QList<int>({4}));
        m_choice->move(-1000);
        QCOMPARE(m_choice->currentRow(), 0);
    }

    void everythingIsSelectedAtOnce() {
        start(PathChoice::Open, "media");
        m_choice->selectAll();
        m_choice->choose();
        QCOMPARE(chosen().size(), 5);
    }

    void onlyOneFolderIsChosen() {
        start(PathChoice::Folder, "media");
        QCOMPARE(m_choice->listing()->rowCount(), 2);
        m_choice->press(row("stills"));
        m_choice->press(row("sounds"), Qt::ControlModifier);
        m_choice->selectAll();
        m_choice->choose();
        QCOMPARE(chosen(), paths({"media/sounds"}));
    }

    void withNothingSelectedTheTypedPathCounts_data() {
        QTest::addColumn<PathChoice::Kind>("kind");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("path"); // empty for nothing
        QTest::newRow("open a file") << PathChoice::Open << QStringLiteral("~/media/a.png")
                                     << QStringLiteral("/media/a.png");
        QTest::newRow("open a folder") << PathChoice::Open << QStringLiteral("~/media") << QStringLiteral("/media");
        QTest::newRow("open what is not there") << PathChoice::Open << QStringLiteral("~/media/x") << QString();
        QTest::newRow("choose a folder") << PathChoice::Folder << QStringLiteral("~/media/")
                                         << QStringLiteral("/media");
        QTest::newRow("choose a file") << PathChoice::Folder << QStringLiteral("~/media/a.png") << QString();
        QTest::newRow("choose below nothing") << PathChoice::Folder << QStringLiteral("~/x/y") << QString();
    }
    void withNothingSelectedTheTypedPathCounts() {
        QFETCH(PathChoice::Kind, kind);
        QFETCH(QString, typed);
        QFETCH(QString, path);
        start(kind, "media");
        m_choice->go(typed);
        m_choice->choose(); // at once, before the disk has answered
        QTRY_VERIFY(!m_choice->listing()->reading());
        QCOMPARE(m_choice->choosable(), !path.isEmpty());
        QCOMPARE(chosen(), path.isEmpty() ? QStringList() : QStringList{m_home->path().toString() + path});
    }

    void aFolderThatIsChosenByANewNameIsMade() {
        start(PathChoice::Folder, "media");
        m_choice->go(QStringLiteral("~/media/new"));
        m_choice->choose();
        QTRY_COMPARE(chosen(), paths({"media/new"}));
        QVERIFY(m_home->path().child("media/new").isFolder());
    }

    void goingIntoAFolderDropsTheSelection() {
        start(PathChoice::Open, "media");
        m_choice->press(row("stills"));
        m_choice->activate(row("stills"));
        settle();
        QVERIFY(m_choice->selectedRows().isEmpty());
        QCOMPARE(m_choice->listing()->folder(), paths({"media/stills"}).first());
        m_choice->goUp();
        settle();
        QCOMPARE(m_choice->listing()->folder(), paths({"media"}).first());
    }

    void aDoubleClickOnAFileChoosesIt() {
        start(PathChoice::Open, "media");
        m_choice->activate(row("b.png"));
        QCOMPARE(chosen(), paths({"media/b.png"}));
    }

    void tabCompletes() {
        start(PathChoice::Open, "media");
        m_choice->go(QStringLiteral("~/media/st"));
        settle();
        QVERIFY(m_choice->complete());
        QCOMPARE(m_choice->listing()->path(), QStringLiteral("~/media/stills/"));
        settle();
        QVERIFY(!m_choice->complete());
    }

    void aFolderIsMadeAndEntered() {
        start(PathChoice::Open, "media");
        QSignalSpy made(m_choice.get(), &PathChoice::folderMade);
        m_choice->makeFolder(QStringLiteral("  new folder "));
        QTRY_COMPARE(made.size(), 1);
        QVERIFY(m_home->path().child("media/new folder").isFolder());
        settle();
        QCOMPARE(m_choice->listing()->folder(), paths({"media/new folder"}).first());
    }

    void aFolderThatCannotBeMadeIsExplained_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("a name that is taken") << QStringLiteral("stills");
        QTest::newRow("a path") << QStringLiteral("a/b");
        QTest::newRow("dots") << QStringLiteral("..");
        QTest::newRow("too long") << QString(200, u'ä');
    }
    void aFolderThatCannotBeMadeIsExplained() {
        QFETCH(QString, name);
        start(PathChoice::Open, "media");
        QSignalSpy made(m_choice.get(), &PathChoice::folderMade);
        m_choice->makeFolder(name);
        QTRY_VERIFY(!m_choice->problem().isEmpty());
        QCOMPARE(made.size(), 0);
        m_choice->go(QStringLiteral("~/"));
        QVERIFY(m_choice->problem().isEmpty());
    }

    void aNameIsSavedUnder_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("path"); // empty where there is nothing to save under
        QTest::newRow("a name") << QStringLiteral("new.png") << QStringLiteral("/media/new.png");
        QTest::newRow("a path below the folder")
            << QStringLiteral("stills/new.png") << QStringLiteral("/media/stills/new.png");
        QTest::newRow("a path in the home") << QStringLiteral("~/new.png") << QStringLiteral("/new.png");
        QTest::newRow("a path up") << QStringLiteral("../new.png") << QStringLiteral("/new.png");
        QTest::newRow("nothing") << QString() << QString();
        QTest::newRow("a folder") << QStringLiteral("stills/") << QString();
        QTest::newRow("dots") << QStringLiteral("..") << QString();
        QTest::newRow("too long") << QString(256, u'x') << QString();
    }
    void aNameIsSavedUnder() {
        QFETCH(QString, name);
        QFETCH(QString, path);
        start(PathChoice::Save, "media", "old.png");
        m_choice->setName(name);
        QCOMPARE(m_choice->choosable(), !path.isEmpty());
        m_choice->choose();
        if (!path.isEmpty())
            QTRY_COMPARE(chosen(), QStringList{m_home->path().toString() + path});
    }

    void savingInAFolderThatIsNotThereIsExplained() {
        start(PathChoice::Save, "media", "a.png");
        m_choice->setName(QStringLiteral("nowhere/a.png"));
        m_choice->choose();
        QTRY_COMPARE(m_choice->problem(), QStringLiteral("There is no folder “~/media/nowhere”."));
        m_choice->setName(QStringLiteral("b"));
        QVERIFY(m_choice->problem().isEmpty());
    }

    void savingOverSomethingAsksFirst_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("isFolder");
        QTest::newRow("a file") << QStringLiteral("a.png") << false;
        QTest::newRow("a folder") << QStringLiteral("stills") << true;
        QTest::newRow("a link that leads nowhere") << QStringLiteral("broken") << false;
    }
    void savingOverSomethingAsksFirst() {
        QFETCH(QString, name);
        QFETCH(bool, isFolder);
        QVERIFY(QFile::link(QStringLiteral("/no/such/thing"), m_home->path().child("media/broken").toString()));
        start(PathChoice::Save, "media", qPrintable(name));
        QSignalSpy asked(m_choice.get(), &PathChoice::replaceAsked);
        m_choice->choose();
        QTRY_COMPARE(asked.size(), 1);
        QCOMPARE(asked.first(), QVariantList({name, isFolder}));
        QVERIFY(m_chosen->isEmpty());
        m_choice->replace();
        QCOMPARE(chosen(), QStringList{m_home->path().child("media").child(name).toString()});
    }

    void aClickOnAFileTakesItsName() {
        start(PathChoice::Save, "media", "old.png");
        m_choice->press(row("b.png"));
        QCOMPARE(m_choice->name(), QStringLiteral("b.png"));
        m_choice->press(row("stills"));
        QCOMPARE(m_choice->name(), QStringLiteral("b.png"));
        QCOMPARE(m_choice->summary(), QStringLiteral("~/media/stills/b.png"));
    }

    void theArrowKeysLeaveTheNameAlone() {
        start(PathChoice::Save, "media", "old.png");
        m_choice->move(1000);
        QCOMPARE(m_choice->currentRow(), row("c.png"));
        QCOMPARE(m_choice->name(), QStringLiteral("old.png"));
        QCOMPARE(m_choice->summary(), QStringLiteral("~/media/old.png"));
    }

    void nothingIsChosenOnceStopped() {
        start(PathChoice::Save, "media", "new.png");
        m_choice->choose();
        m_choice->stop();
        start(PathChoice::Save, "media", "other.png"); // gives the background its time
        QVERIFY(m_chosen->isEmpty());
        m_choice->choose();
        QTRY_COMPARE(chosen(), paths({"media/other.png"}));
    }

    void theExtensionIsNotSelected() {
        QCOMPARE(PathChoice::stemLength(QStringLiteral("a.b.png")), 3);
        QCOMPARE(PathChoice::stemLength(QStringLiteral(".png")), 4);
        QCOMPARE(PathChoice::stemLength(QStringLiteral("png")), 3);
    }

    void placesAreThoseThatExist() {
        QCOMPARE(PathChoice::places().size(), 1);
        m_home->folder("Downloads");
        const QVariantList places = PathChoice::places();
        QCOMPARE(places.size(), 2);
        QCOMPARE(places[1].toMap()[QStringLiteral("path")].toString(), paths({"Downloads"}).first());
    }

private:
    void start(PathChoice::Kind kind, const char* folder, const char* name = "") {
        m_choice->setKind(kind);
        m_choice->start(m_home->path().child(folder).abbreviated(), QString::fromUtf8(name));
        settle();
    }
    void settle() { QTRY_VERIFY(!m_choice->listing()->reading()); }
    int row(const char* name) {
        const FolderListing* const listing = m_choice->listing();
        for (int at = 0; at < listing->rowCount(); ++at) {
            if (listing->entryAt(at).name == QLatin1String(name))
                return at;
        }
        qFatal("there is no %s", name);
    }
    QStringList chosen() const { return m_chosen->isEmpty() ? QStringList() : m_chosen->last().first().toStringList(); }
    QStringList paths(std::initializer_list<const char*> relative) const {
        QStringList all;
        for (const char* path : relative)
            all.append(m_home->path().child(path).toString());
        return all;
    }

    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<PathChoice> m_choice;
    std::unique_ptr<QSignalSpy> m_chosen;
};

QTEST_GUILESS_MAIN(PathChoiceTest)
#include "tst_pathchoice.moc"

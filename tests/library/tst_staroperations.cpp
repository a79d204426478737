// SPDX-License-Identifier: GPL-3.0-or-later
#include "OpenLibrary.h"

using namespace lumbra;

class StarOperationsTest : public QObject {
    Q_OBJECT

private:
    TestHome m_home;
    std::unique_ptr<OpenLibrary> m_library;

    QString toast() const {
        const auto shown = (*m_library)->toast();
        return shown ? shown->text : QString();
    }

private Q_SLOTS:
    void init() { m_library = std::make_unique<OpenLibrary>(m_home); }
    void cleanup() { m_library.reset(); }

    void aStarShowsAtOnce() {
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/a.png");
        library.open();
        const int revision = library->revision();
        library->toggleStar({file});
        QCOMPARE(library->index().find(file)->starred, Stars::read(file));
        QVERIFY(library->isStarred(file));
        QCOMPARE(library->revision(), revision + 1);
        library->toggleStar({file});
        QVERIFY(!library->index().find(file)->starred);
        QVERIFY(!Stars::read(file));
        QCOMPARE(library->revision(), revision + 2);
    }

    void aMixedSelectionIsStarredAndAStarredOneLosesItsStars() {
        OpenLibrary& library = *m_library;
        const Location first = marked(library.file("one/a.png"));
        const Location second = library.file("one/b.png");
        library.open();
        library->toggleStar({first, second});
        QVERIFY(library->isStarred(first) && library->isStarred(second));
        library->toggleStar({first, second});
        QVERIFY(!library->isStarred(first) && !library->isStarred(second));
        QVERIFY(!Stars::read(first) && !Stars::read(second));
    }

    void theToastCountsWhatIsStarred() {
        OpenLibrary& library = *m_library;
        QList<Location> files;
        for (const char* name : {"one/a.png", "one/b.png", "one/c.png", "one/d.png"})
            files.append(library.file(name));
        library.open();
        library->toggleStar({files.first()});
        QCOMPARE(toast(), QStringLiteral("Added to Starred"));
        QVERIFY(library->toast()->starred);
        QVERIFY(!library->toast()->symbol);
        library->toggleStar(files);
        QCOMPARE(toast(), QStringLiteral("Added 4 items to Starred"));
        library->toggleStar(files);
        QCOMPARE(toast(), QStringLiteral("Removed 4 items from Starred"));
        QVERIFY(!library->toast()->starred);
        library->toggleStar({files.first()});
        library->toggleStar({files.first()});
        QCOMPARE(toast(), QStringLiteral("Removed from Starred"));
    }

    void undoGivesAllTheOppositeAndClearsTheToast() {
        OpenLibrary& library = *m_library;
        const Location first = marked(library.file("one/a.png"));
        const Location second = library.file("one/b.png");
        const QByteArray note = Carried::of(first).note;
        library.open();
        library->toggleStar({first, second});
        library->toast()->undo();
        QVERIFY(!library->isStarred(first) && !library->isStarred(second));
        QVERIFY(!library->toast());
        QCOMPARE(Carried::of(first).note, note);
        library->toggleStar({first});
        library->toggleStar({first});
        library->toast()->undo();
        QVERIFY(library->isStarred(first));
        QCOMPARE(Carried::of(first).note, note);
    }

    void undoOutlivesTheLibrary() {
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/a.png");
        library.open();
        library->toggleStar({file});
        const auto undo = library->toast()->undo;
        library.close();
        undo();
        QVERIFY(Stars::read(file));
    }

    void nothingIsStarredForAnEmptyList() {
        OpenLibrary& library = *m_library;
        library.open();
        const int revision = library->revision();
        library->toggleStar({});
        QVERIFY(!library->toast());
        QCOMPARE(library->revision(), revision);
    }

    void aFileThatIsNotInTheIndexGetsTheAttributeAlone() {
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/notes.unknown");
        const Location outside = library.outside("desk/a.png");
        library.open();
        library->toggleStar({file, outside});
        QVERIFY(Stars::read(file) && Stars::read(outside));
        QVERIFY(library->index().isEmpty());
    }

    void aFileThatCannotBeStarredIsNamedAndTheOthersAreStarred() {
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/a.png");
        library.open();
        library->toggleStar({library.at("one/gone.png"), file});
        QCOMPARE(library.error(), QStringLiteral("Couldn't change the star on gone.png."));
        QVERIFY(library->isStarred(file));
        QCOMPARE(toast(), QStringLiteral("Added 2 items to Starred"));
    }

    void thousandsAreStarredOneToggleAfterTheOther() {
        OpenLibrary& library = *m_library;
        QList<Location> files;
        for (int i = 0; i < 2000; ++i)
            files.append(library.file("one/" + std::to_string(i) + ".png"));
        library.open();
        library->toggleStar(files);
        QVERIFY(!library->toast()); // not before it is done
        library->toggleStar(files); // decided on what the first leaves
        QTRY_COMPARE(toast(), QStringLiteral("Removed 2000 items from Starred"));
        QVERIFY(!Stars::read(files.first()) && !Stars::read(files.last()));
        library->toast()->undo();
        QTRY_VERIFY(!library->toast());
        for (const Location& file : std::as_const(files))
            QVERIFY(Stars::read(file) && library->index().find(file)->isStarred());
    }
};

QTEST_GUILESS_MAIN(StarOperationsTest)
#include "tst_staroperations.moc"

// Files that are dragged over the rows of the sidebar, from other programs or from the page beside it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Dragged.h"
#include "SidebarWindow.h"

#include <QDir>
#include <QRegularExpression>
#include <QSignalSpy>

using namespace lumbra;

class tst_SidebarFiles : public QObject, SidebarWindow {
    Q_OBJECT

private:
    Dragged dragged(const QList<Location>& files) { return {m_window->window(), files}; }
    Dragged dragged(const QString& said) { return {m_window->window(), said}; }
    bool targeted(const char* title) { return cell(title)->property("targeted").toBool(); }
    Location desk(const char* name) { return m_home->file(std::string("desk/") + name); }
    qsizetype files(const char* relative) const {
        return qsizetype(QDir(at(relative).toString()).entryList(QDir::Files).size());
    }

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }
    void init() {
        QTest::failOnWarning(QRegularExpression(QStringLiteral("Browsing/.*\\.qml")));
        make();
    }
    void cleanup() { takeDown(); }

    void aProjectTakesFilesAsACopyAndSaysSo() {
        folder("cats");
        const Location file = desk("new.txt");
        open();
        Dragged drag = dragged({file});
        QVERIFY(drag.move(in("cats")));
        QCOMPARE(drag.offered, Qt::CopyAction);
        QVERIFY(targeted("cats"));
        QCOMPARE(drag.drop(in("cats")), Qt::CopyAction);
        QTRY_VERIFY(at("cats/new.txt").exists());
        QVERIFY(file.exists());
        QVERIFY(!targeted("cats"));
        QVERIFY(m_library->place() == Place::recent());
    }

    void aFileOfTheLibraryIsMoved() {
        const Location file = m_home->file("Library/dogs/a.txt");
        folder("cats");
        open();
        dragged({file}).drop(in("cats"));
        QTRY_VERIFY(at("cats/a.txt").exists() && !file.exists());
    }

    void aFolderTakesFiles() {
        folder("cats/renders");
        const Location file = desk("new.txt");
        open();
        click(in("cats", 20));
        QTRY_VERIFY(row("renders") >= 0);
        dragged({file}).drop(in("renders"));
        QTRY_VERIFY(at("cats/renders/new.txt").exists());
        QVERIFY(!at("cats/new.txt").exists());
    }

    void aPinTakesFiles() {
        folder("cats/renders");
        const Location file = desk("new.txt");
        open();
        m_library->togglePin(at("cats/renders"));
        QTRY_VERIFY(row("renders") >= 0);
        dragged({file}).drop(in("renders"));
        QTRY_VERIFY(at("cats/renders/new.txt").exists());
    }

    void otherRowsTakeNoFiles() {
        folder("cats");
        const Location file = desk("new.txt");
        open();
        m_library->newGroup(text("Pets"), {text("cats")});
        QTRY_VERIFY(row("Pets") >= 0);
        Dragged drag = dragged({file});
        for (const char* title : {"Recent", "Starred", "Tidy", "Projects", "Pets"}) {
            QVERIFY2(!drag.move(in(title)), title);
            QVERIFY2(!targeted(title), title);
            QCOMPARE(drag.drop(in(title)), Qt::IgnoreAction);
        }
        QVERIFY(file.exists());
        QCOMPARE(groups(), text("Pets(cats)"));
        QVERIFY(!m_library->lastError());
    }

    void textOfAnotherProgramIsIgnored() {
        folder("cats");
        folder("dogs");
        open();
        for (const char* said : {"dogs", "file:///etc/passwd", "lumbra-project:", "lumbra-project:unknown"}) {
            QVERIFY2(!dragged(text(said)).move(in("cats")), said);
            QCOMPARE(dragged(text(said)).drop(in("cats")), Qt::IgnoreAction);
        }
        QVERIFY(m_library->state() == LibraryState());
        QVERIFY(!m_library->lastError());
    }

    // As from a second window of ours, which sends it as text.
    void aProjectByItsTextIsAProject() {
        folder("cats-a");
        folder("dogs");
        open();
        QVERIFY(dragged(text("lumbra-project:dogs")).move(in("cats-a")));
        dragged(text("lumbra-project:dogs")).drop(in("cats-a"));
        QCOMPARE(groups(), text("New Group(cats-a dogs)"));
    }

    void whatIsNoFileOfThisMachineIsLeftOut() {
        folder("cats");
        open();
        m_sidebar->dropFiles(row("cats"), {QUrl(text("https://example.com/a.png")), QUrl(text("file://there/a.png"))});
        m_sidebar->dropFiles(99, {QUrl(text("file:///tmp"))});
        QVERIFY(!m_library->lastError());
        QCOMPARE(files("cats"), 0);
        // It is not even greeted.
        Dragged drag(m_window->window(), QList{QUrl(text("https://example.com/a.png"))});
        QVERIFY(!drag.move(in("cats")));
    }

    void filesThatAreGoneAreToldOf() {
        folder("cats");
        const Location gone = desk("gone.txt");
        const Location there = desk("there.txt");
        open();
        Dragged drag = dragged({gone, there});
        QVERIFY(drag.move(in("cats")));
        QVERIFY(QFile::remove(gone.toString()));
        drag.drop(in("cats"));
        QTRY_VERIFY(m_library->lastError());
        QTRY_VERIFY(at("cats/there.txt").exists());
    }

    void tenThousandFilesArrive() {
        folder("cats");
        QList<Location> many;
        for (int n = 0; n < 10'000; ++n)
            many.append(m_home->file("Library/dogs/" + std::to_string(n) + ".txt"));
        open();
        dragged(many).drop(in("cats"));
        QTRY_COMPARE(files("cats"), 10'000);
        QCOMPARE(files("dogs"), 0);
        QVERIFY(!m_library->lastError());
    }

    void filesThatRestNearTheEndScrollToTheRest() {
        for (int number = 0; number < 60; ++number)
            folder("project " + std::to_string(number));
        const Location file = desk("new.txt");
        open(400);
        const auto scrolled = [this] {
            return list()->property("contentY").toReal() - list()->property("originY").toReal();
        };
        QTRY_VERIFY(list()->property("contentHeight").toReal() > 1000);
        Dragged drag = dragged({file});
        const QPointF low = list()->mapToScene(QPointF(120, list()->height() - 6));
        QVERIFY(drag.move(low.toPoint()));
        QTRY_VERIFY(scrolled() > 60);
        drag.leave();
        const qreal stopped = scrolled();
        QSignalSpy frames(m_window->window(), &QQuickWindow::frameSwapped);
        m_window->window()->update();
        QTRY_VERIFY(!frames.isEmpty());
        QCOMPARE(scrolled(), stopped);
    }
};

QTEST_MAIN(tst_SidebarFiles)
#include "tst_sidebarfiles.moc"

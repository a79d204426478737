// What is selected in documents by the pointer and the keys, and what of it lands on the clipboard.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "QuickLookWindow.h"
#include "media/quicklook/QuickLookDocument.h"
#include "support/PdfFiles.h"
#include "support/Strings.h"
#include "support/TestHome.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QFile>
#include <QtTest>

Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)

using namespace lumbra;

// What would open an address in another program.
class LinkOpener : public QObject {
    Q_OBJECT

public:
    Q_INVOKABLE void open(const QUrl& url) { opened.append(url.toString()); }

    QStringList opened;
};

class tst_DocumentSelection : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QGuiApplication::clipboard()->setText(QStringLiteral("before")); }

    void aDragSelectsFromRowToRow() {
        QuickLookWindow window(m_home.file("a.txt", "the first line\nthe second\nthe third line\n"));
        window.drag(window.placeOf(QStringLiteral("first")), window.placeOf(QStringLiteral("line")));
        QCOMPARE(copied(window), QStringLiteral("first "));
        window.drag(window.placeOf(QStringLiteral("second")), window.placeOf(QStringLiteral("third")));
        QCOMPARE(copied(window), QStringLiteral("second\nthe "));
        window.drag(window.placeOf(QStringLiteral("third")), window.placeOf(QStringLiteral("first")));
        QCOMPARE(copied(window), QStringLiteral("first line\nthe second\nthe "));
    }

    void whatIsSelectedShows() {
        QuickLookWindow window(m_home.file("shows.txt", "the first line\n"));
        const QPoint at = window.placeOf(QStringLiteral("first")) + QPoint(4, -7);
        const QColor before = window.at(at.x(), at.y());
        window.drag(window.placeOf(QStringLiteral("the")), window.placeOf(QStringLiteral("line")));
        const QColor marked = window.at(at.x(), at.y());
        QVERIFY2(marked.red() > before.red() + 30, qPrintable(marked.name()));
        QVERIFY(marked.red() > marked.blue() + 20);
    }

    void twoClicksSelectAWordAndThreeTheRow() {
        QuickLookWindow window(m_home.file("clicks.md", "some **bold** words\n\nmore\n"));
        const QPoint at = window.placeOf(QStringLiteral("bold")) + QPoint(6, 0);
        clickAt(window, at);
        clickAt(window, at);
        QCOMPARE(copied(window), QStringLiteral("bold"));
        clickAt(window, at);
        QCOMPARE(copied(window), QStringLiteral("some bold words"));
    }

    void shiftAndAClickSelectUpToThere() {
        QuickLookWindow window(m_home.file("shift.txt", "one two three four\n"));
        window.drag(window.placeOf(QStringLiteral("two")), window.placeOf(QStringLiteral("three")));
        QTest::mouseClick(window.window(), Qt::LeftButton, Qt::ShiftModifier, window.placeOf(QStringLiteral("four")));
        QCOMPARE(copied(window), QStringLiteral("two three "));
    }

    void beyondTheEdgeTheTextScrolls() {
        QuickLookWindow window(m_home.file("long.txt", QByteArray("a line\n").repeated(500)));
        const QPoint from = window.placeOf(QStringLiteral("line"));
        const double start = window.contentY();
        QTest::mousePress(window.window(), Qt::LeftButton, Qt::NoModifier, from);
        QTest::mouseMove(window.window(), from + QPoint(0, 100));
        QTest::mouseMove(window.window(), QPoint(from.x(), 700));
        QTRY_VERIFY(window.contentY() > start + 1000);
        QTest::mouseRelease(window.window(), Qt::LeftButton, Qt::NoModifier, QPoint(from.x(), 700));
        QVERIFY(copied(window).count(u'\n') > 50);
    }

    void allOfItIsSelectedByAKey_data() {
        QTest::addColumn<Location>("file");
        QTest::addColumn<QString>("stage");
        QTest::addColumn<QString>("words");
        QTest::newRow("a text") << m_home.file("all.txt", "one\n\ntwo\n") << "text"
                                << "one\n\ntwo";
        QTest::newRow("a text with tabs") << m_home.file("Makefile.txt", "all:\n\tcc  a.c\tb.c\n") << "text"
                                          << "all:\n\tcc  a.c\tb.c";
        QTest::newRow("Markdown") << m_home.file("all.md",
                                                 "# a\n\n- b *c*\n- d &amp; e\n\n| f | g |\n|---|---|\n| h | i |\n")
                                  << "text"
                                  << "a\n\nb c\nd & e\n\nf\tg\nh\ti";
        QTest::newRow("subtitles") << m_home.file("all.srt",
                                                  "1\n00:00:01,000 --> 00:00:02,000\nHello\nthere\n\n2\n00:00:03,000 "
                                                  "--> 00:00:04,000\nbye\n")
                                   << "text"
                                   << "Hello\nthere\n\nbye";
        QTest::newRow("a table") << m_home.file("all.csv", "name,price\n\"a, b\",3\nc,4\n") << "table"
                                 << "name\tprice\na, b\t3\nc\t4";
        QTest::newRow("pages") << PdfFiles::write(at("all.pdf"), {{"The first page"}, {"The second", "and its end"}})
                               << "pages"
                               << "The first page\nThe second\nand its end";
    }
    void allOfItIsSelectedByAKey() {
        QFETCH(Location, file);
        QFETCH(QString, stage);
        QFETCH(QString, words);
        QuickLookWindow window(file);
        QVERIFY(window.reaches(stage.toLatin1().constData()));
        window.press(Qt::Key_A, Qt::ControlModifier);
        window.press(Qt::Key_C, Qt::ControlModifier);
        QTRY_COMPARE(QGuiApplication::clipboard()->text().trimmed(), words);
    }

    void aMenuCopiesAndSelects_data() {
        QTest::addColumn<Location>("file");
        QTest::addColumn<QString>("stage");
        QTest::addColumn<QString>("words");
        QTest::newRow("a text") << m_home.file("menu.txt", "one\ntwo\n") << "text"
                                << "one\ntwo";
        QTest::newRow("a table") << m_home.file("menu.csv", "a,b\n1,2\n") << "table"
                                 << "a\tb\n1\t2";
        QTest::newRow("pages") << PdfFiles::write(at("menu.pdf"), {{"The only line"}}) << "pages"
                               << "The only line";
    }
    void aMenuCopiesAndSelects() {
        QFETCH(Location, file);
        QFETCH(QString, stage);
        QFETCH(QString, words);
        QuickLookWindow window(file);
        QVERIFY(window.reaches(stage.toLatin1().constData()));
        const auto choose = [&](const char* entry) {
            QTest::mouseClick(window.window(), Qt::RightButton, Qt::NoModifier, QPoint(120, 100));
            QTRY_VERIFY(window.value("documentMenu", "opened").toBool());
            window.click(entry);
            QTRY_VERIFY(!window.root()->findChild<QObject*>(QStringLiteral("documentMenu")));
        };
        QTest::mouseClick(window.window(), Qt::RightButton, Qt::NoModifier, QPoint(120, 100));
        QTRY_VERIFY(window.value("documentMenu", "opened").toBool());
        QVERIFY(!window.value("documentCopy", "enabled").toBool()); // there is nothing yet
        window.press(Qt::Key_Escape);
        QTRY_VERIFY(!window.root()->findChild<QObject*>(QStringLiteral("documentMenu")));
        choose("documentSelectAll");
        choose("documentCopy");
        QTRY_COMPARE(QGuiApplication::clipboard()->text().trimmed(), words);
    }

    void withNothingSelectedTheKeyIsTheRooms() {
        QuickLookWindow window(m_home.file("none.txt", "words\n"));
        const QPoint at = window.placeOf(QStringLiteral("words"));
        window.press(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(heard(window, Qt::Key_C), 1);
        window.drag(at, at + QPoint(30, 0));
        window.press(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(heard(window, Qt::Key_C), 1);
        clickAt(window, at + QPoint(100, 60)); // selects nothing
        window.press(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(heard(window, Qt::Key_C), 2);
    }

    void theKeysOfTheRoomWorkWithASelection() {
        QuickLookWindow window(m_home.file("keys.txt", "words\n"));
        window.placeOf(QStringLiteral("words"));
        window.press(Qt::Key_A, Qt::ControlModifier);
        const QList<int> keys{Qt::Key_Up,    Qt::Key_Down, Qt::Key_Left,  Qt::Key_Right,
                              Qt::Key_Space, Qt::Key_S,    Qt::Key_Escape};
        for (const int key : keys) {
            window.press(key);
            QCOMPARE(heard(window, key), 1);
        }
    }

    void aTextThatIsWrittenOnKeepsItsSelection() {
        const Location file = m_home.file("grows.txt", "one two\nthree\n");
        QuickLookWindow window(file);
        window.drag(window.placeOf(QStringLiteral("two")), window.placeOf(QStringLiteral("three")));
        QFile grown(file.toString());
        QVERIFY(grown.open(QIODevice::Append));
        grown.write("four\n");
        grown.close();
        QVERIFY(window.says(QStringLiteral("four")));
        QCOMPARE(copied(window), QStringLiteral("two\n"));
        m_home.file("grows.txt", "another text\n");
        QVERIFY(window.says(QStringLiteral("another text")));
        QVERIFY(!window.stageItem()->property("hasSelection").toBool());
    }

    void aClickFollowsALinkAndADragDoesNot() {
        LinkOpener opener;
        QDesktopServices::setUrlHandler(QStringLiteral("https"), &opener, "open");
        QDesktopServices::setUrlHandler(QStringLiteral("file"), &opener, "open");
        QuickLookWindow window(
            m_home.file("links.md", "see [there](https://a.example/b) or [here](file:///etc/passwd)\n\n| a |\n|---|\n| "
                                    "[c](https://c.example) |\n"));
        const QPoint there = window.placeOf(QStringLiteral("there")) + QPoint(8, 0);
        window.drag(window.placeOf(QStringLiteral("see")), there);
        QVERIFY(opener.opened.isEmpty());
        clickAt(window, there);
        QCOMPARE(opener.opened, strings({"https://a.example/b"}));
        clickAt(window, window.placeOf(QStringLiteral("here")) + QPoint(8, 0));
        QCOMPARE(opener.opened.size(), 1);
        clickAt(window, window.placeOf(QStringLiteral("c")) + QPoint(3, 0));
        QCOMPARE(opener.opened, strings({"https://a.example/b", "https://c.example"}));
        QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    }

    void cellsAreSelectedAsARectangle() {
        QuickLookWindow window(m_home.file("cells.csv", "a,b,c\n1,2,3\n4,5,6\n7,8,9\n"));
        QVERIFY(window.reaches("table"));
        QVERIFY(window.says(QStringLiteral("9")));
        window.drag(cellOf(window, QStringLiteral("6")), cellOf(window, QStringLiteral("8")));
        QCOMPARE(copied(window), QStringLiteral("5\t6\n8\t9"));
        QTest::mouseDClick(window.window(), Qt::LeftButton, Qt::NoModifier, cellOf(window, QStringLiteral("4")));
        QCOMPARE(copied(window), QStringLiteral("4"));
    }

    void wordsOfPagesAreSelected() {
        QuickLookWindow window(
            PdfFiles::write(at("words.pdf"), {{"The first line of it", "and the second"}, {"Another page"}}));
        QVERIFY(window.reaches("pages"));
        const auto lineAt = [&](int line, double part) { // of a page as wide as it is on the screen
            const QRectF page = window.pageRect();
            const double scale = page.width() / PdfFiles::width;
            return (page.topLeft()
                    + scale * QPointF(PdfFiles::left + part * 200, PdfFiles::firstLine + line * PdfFiles::lineHeight))
                .toPoint();
        };
        QTRY_VERIFY(window.pageRect().width() > 100);
        window.drag(lineAt(0, -0.2), lineAt(0, 2));
        QTRY_COMPARE(copied(window), QStringLiteral("The first line of it"));
        window.drag(lineAt(0, -0.2), lineAt(1, 2));
        QTRY_COMPARE(copied(window), QStringLiteral("The first line of it\nand the second"));
        QTest::mouseDClick(window.window(), Qt::LeftButton, Qt::NoModifier, lineAt(1, 0.02));
        QTRY_COMPARE(copied(window), QStringLiteral("and"));
    }

private:
    Location at(const char* name) const { return m_home.path().child(std::string_view(name)); }

    static void clickAt(QuickLookWindow& window, QPoint point) {
        QTest::mouseClick(window.window(), Qt::LeftButton, Qt::NoModifier, point);
    }

    static QString copied(QuickLookWindow& window) {
        window.press(Qt::Key_C, Qt::ControlModifier);
        return QGuiApplication::clipboard()->text();
    }

    // How often the surroundings got the key.
    static qsizetype heard(QuickLookWindow& window, int key) {
        return window.root()->property("keys").toList().count(key);
    }

    static QPoint cellOf(QuickLookWindow& window, const QString& words) {
        QPoint place;
        window.anyItem(window.window()->contentItem(), [&](QQuickItem* item) {
            if (!item->inherits("QQuickText") || item->property("text").toString() != words)
                return false;
            place = item->mapToScene(item->boundingRect().center()).toPoint();
            return true;
        });
        return place;
    }

    TestHome m_home;
};

QTEST_MAIN(tst_DocumentSelection)
#include "tst_documentselection.moc"

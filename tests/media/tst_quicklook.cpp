// Documents on show: every kind, its scrolling, its keys, and what becomes of it when the file changes.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "QuickLookWindow.h"
#include "media/quicklook/DocumentPage.h"
#include "media/quicklook/DocumentPages.h"
#include "support/PdfFiles.h"
#include "support/TestHome.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QtTest>

Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)

using namespace lumbra;

namespace {

bool isNear(const QColor& a, const QColor& b, int tolerance = 24) {
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance
           && std::abs(a.blue() - b.blue()) <= tolerance;
}

int countPages(QQuickItem* item) {
    int count = qobject_cast<DocumentPage*>(item) ? 1 : 0;
    for (QQuickItem* child : item->childItems())
        count += countPages(child);
    return count;
}

} // namespace

class tst_QuickLook : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void pagesStandOneBelowTheOther() {
        QuickLookWindow window(PdfFiles::make(at("two.pdf"), 2));
        QVERIFY(window.reaches("pages"));
        QTRY_VERIFY(isNear(window.at(350, 60), PdfFiles::colourOf(0))); // the bar of the first page
        QVERIFY(isNear(window.at(40, 480), Qt::white));
        QVERIFY(!isNear(window.at(8, 250), Qt::white)); // beside the page
        window.wheel(-1);
        QTRY_VERIFY(!isNear(window.at(350, 60), PdfFiles::colourOf(1)));
        window.press(Qt::Key_End);
        QTRY_COMPARE(pagesOf(window)->currentPage(), 2);
        QTRY_VERIFY(isNear(window.at(40, 440), Qt::white));
        for (int i = 0; i < 40 && !isNear(window.at(350, 60), PdfFiles::colourOf(1)); ++i) {
            window.wheel(1); // up to its bar
            QTest::qWait(30);
        }
        QTRY_VERIFY(isNear(window.at(350, 60), PdfFiles::colourOf(1)));
    }

    void ofFiveHundredPagesOnlyThoseNearTheViewExist() {
        QElapsedTimer timer;
        const Location file = PdfFiles::make(at("many.pdf"), 500);
        timer.start();
        QuickLookWindow window(file);
        QVERIFY(window.reaches("pages"));
        QTRY_VERIFY(isNear(window.at(350, 60), PdfFiles::colourOf(0)));
        QVERIFY2(timer.elapsed() < 4000, QByteArray::number(timer.elapsed()));
        QVERIFY(countPages(window.root()) < 6);
        for (int i = 0; i < 40 && pagesOf(window)->currentPage() <= 5; ++i) {
            window.wheel(-3);
            QTest::qWait(50); // a hand turns no wheel faster
        }
        QVERIFY(pagesOf(window)->currentPage() > 5);
        QVERIFY(countPages(window.root()) < 8);
        window.press(Qt::Key_End);
        QTRY_COMPARE(pagesOf(window)->currentPage(), 500);
        QVERIFY(window.says(QStringLiteral("500 of 500")));
        QTRY_VERIFY(isNear(window.at(350, 60), Qt::white) && isNear(window.at(40, 440), Qt::white));
        QVERIFY(countPages(window.root()) < 6);
        window.press(Qt::Key_Home);
        QTRY_COMPARE(pagesOf(window)->currentPage(), 1);
        QTRY_VERIFY(isNear(window.at(350, 60), PdfFiles::colourOf(0)));
    }

    void ctrlAndTheWheelEnlargeAtThePointer() {
        QuickLookWindow window(PdfFiles::make(at("zoomed.pdf"), 3));
        QVERIFY(window.reaches("pages"));
        QTRY_VERIFY(window.stageItem()->height() > 0 && pagesOf(window)->pageCount() == 3);
        const QPointF under(350 - 4, 250 - 4);
        const auto spot = [&] {
            const QPointF content(window.stageItem()->property("contentX").toDouble(), window.contentY());
            return pagesOf(window)->spotAt(content + under).value(QStringLiteral("part")).toPointF();
        };
        const QPointF before = spot();
        for (int i = 0; i < 5; ++i)
            window.wheel(1, Qt::ControlModifier);
        QVERIFY(pagesOf(window)->zoom() > 1.9);
        QVERIFY2(QLineF(spot(), before).length() < 0.01, qPrintable(QDebug::toString(spot())));
        QCOMPARE(window.contentY() > 0, true);
        const double left = window.stageItem()->property("contentX").toDouble();
        QVERIFY(left > 0);
        window.wheel(1, Qt::ShiftModifier);
        QCOMPARE(window.stageItem()->property("contentX").toDouble(), left - 120);
        window.press(Qt::Key_0, Qt::ControlModifier);
        QCOMPARE(pagesOf(window)->zoom(), 1.0);
        window.press(Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(pagesOf(window)->zoom(), 1.25);
        window.press(Qt::Key_Minus, Qt::ControlModifier);
        QCOMPARE(pagesOf(window)->zoom(), 1.0);
    }

    void aPageThatIsMuchEnlargedIsSharpWhereItIsSeen() {
        QuickLookWindow window(PdfFiles::make(at("sharp.pdf"), 1));
        QVERIFY(window.reaches("pages"));
        QTRY_VERIFY(isNear(window.at(350, 60), PdfFiles::colourOf(0)));
        for (int i = 0; i < 20; ++i)
            window.wheel(1, Qt::ControlModifier, QPoint(350, 240));
        QCOMPARE(pagesOf(window)->zoom(), PageLayout::mostZoom);
        // The lower edge of the bar is a line of one pixel and no ramp.
        const auto edge = [&] {
            const QImage image = window.window()->grabWindow();
            int between = 0, red = 0;
            for (int y = 10; y < 480; ++y) {
                const QColor colour = image.pixelColor(350, y);
                red += isNear(colour, PdfFiles::colourOf(0)) ? 1 : 0;
                between += isNear(colour, PdfFiles::colourOf(0)) || isNear(colour, Qt::white) ? 0 : 1;
            }
            return red > 10 && between <= 2;
        };
        QTRY_VERIFY(edge());
    }

    void aTextIsShown() {
        QuickLookWindow window(m_home.file("a.txt", "Gr\xc3\xbc\xc3\x9f\nsecond line\n"));
        QVERIFY(window.reaches("text"));
        QVERIFY(window.says(QStringLiteral("Grüß")));
        QVERIFY(window.says(QStringLiteral("second line")));
        QCOMPARE(window.value("documentNotice", "text").toString(), QString());
    }

    void aTextOfTwoHundredMegabytesOpensAtOnceAndSaysSo() {
        const Location file =
            m_home.file("huge.txt", QByteArray("A line of text that is not short\n").repeated(200'000));
        QVERIFY(QFile(file.toString()).resize(200'000'000));
        QElapsedTimer timer;
        timer.start();
        QuickLookWindow window(file);
        QVERIFY(window.reaches("text"));
        QVERIFY(window.says(QStringLiteral("A line of text")));
        QVERIFY2(timer.elapsed() < 2000, QByteArray::number(timer.elapsed()));
        QVERIFY(window.says(QStringLiteral("This is the beginning of a file of 200 MB.")));
        timer.restart();
        window.press(Qt::Key_End);
        QTRY_VERIFY(window.stageItem()->property("atYEnd").toBool());
        QVERIFY2(timer.elapsed() < 2000, QByteArray::number(timer.elapsed()));
    }

    void markdownIsRendered() {
        m_home.file("docs/x");
        QImage red(300, 200, QImage::Format_RGB32);
        red.fill(Qt::red);
        QVERIFY(red.save(at("docs/red.png").toString()));
        QuickLookWindow window(m_home.file("docs/a.md", "# Title\n\n![a red one](red.png)\n\nsome **bold** words\n"));
        QVERIFY(window.reaches("text"));
        QVERIFY(window.says(QStringLiteral("Title")));
        QVERIFY(window.says(QStringLiteral("<b>bold</b>")));
        const auto hasRed = [&] {
            const QImage image = window.window()->grabWindow();
            for (int y = 0; y < image.height(); y += 5)
                for (int x = 0; x < image.width(); x += 5)
                    if (isNear(image.pixelColor(x, y), Qt::red))
                        return true;
            return false;
        };
        QTRY_VERIFY(hasRed());
    }

    void aTableHasItsHeadAndCells() {
        QByteArray rows("name,price\n");
        for (int i = 0; i < 5000; ++i)
            rows += "row " + QByteArray::number(i) + "," + QByteArray::number(i * 3) + "\n";
        QuickLookWindow window(m_home.file("a.csv", rows));
        QVERIFY(window.reaches("table"));
        QVERIFY(window.says(QStringLiteral("price")));
        QVERIFY(window.says(QStringLiteral("row 3")));
        window.press(Qt::Key_End);
        QVERIFY(window.says(QStringLiteral("row 4999")));
        QVERIFY(window.words().contains(QStringLiteral("name"))); // the head stays
    }

    void aWideTableIsScrolledSidewaysWithShift() {
        QByteArray row;
        for (int column = 0; column < 60; ++column)
            row += "column " + QByteArray::number(column) + ',';
        QuickLookWindow window(m_home.file("wide.csv", row + '\n' + row + '\n'));
        QVERIFY(window.reaches("table"));
        auto* const cells = window.find("documentCells");
        QTRY_VERIFY(cells->property("contentWidth").toDouble() > 1000);
        const double left = cells->property("contentX").toDouble();
        window.wheel(-2, Qt::ShiftModifier);
        QCOMPARE(cells->property("contentX").toDouble(), left + 240);
        for (int i = 0; i < 100; ++i)
            window.wheel(-2, Qt::ShiftModifier);
        QVERIFY(window.says(QStringLiteral("column 59")));
    }

    void subtitlesAreShownWithTheirTimes() {
        QuickLookWindow window(m_home.file("a.srt", "1\n00:00:01,000 --> 00:00:02,000\nHello there\n"));
        QVERIFY(window.reaches("text"));
        QVERIFY(window.says(QStringLiteral("Hello there")));
        QVERIFY(window.says(QStringLiteral("00:00:01")));
    }

    void otherDocumentsShowTheirPictureAndFacts() {
        QuickLookWindow window(m_home.file("letter.rtf", "{\\rtf1 {\\b Dear} reader, this is a letter.}"));
        QVERIFY(window.reaches("picture"));
        QVERIFY(window.says(QStringLiteral("letter.rtf")));
        QVERIFY(window.says(QStringLiteral("Rich text document · 43 bytes · saved ")));
        QTRY_VERIFY(isNear(window.at(350, 200), Qt::white)); // its first page
    }

    void withoutAPictureTheSymbolAndTheFactsStand() {
        QuickLookWindow window(m_home.file("parts.zip", "PK\3\4"));
        QVERIFY(window.reaches("picture"));
        QVERIFY(window.says(QStringLiteral("ZIP archive · 4 bytes")));
    }

    void whatCannotBeShownSaysSoCalmly_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("stage");
        QTest::addColumn<QString>("title");
        QTest::newRow("an empty text") << "a.txt" << QByteArray() << "empty"
                                       << "This document is empty";
        QTest::newRow("blank lines") << "b.txt" << QByteArray("\n\n\n") << "empty"
                                     << "This document is empty";
        QTest::newRow("an empty table") << "a.csv" << QByteArray() << "empty"
                                        << "This document is empty";
        QTest::newRow("an empty PDF") << "a.pdf" << QByteArray() << "empty"
                                      << "This document is empty";
        QTest::newRow("a broken PDF") << "b.pdf" << QByteArray("%PDF-1.7\nnonsense") << "broken"
                                      << "This document can't be shown";
        PdfFiles::lock(PdfFiles::make(at("open.pdf"), 1), at("locked.pdf"));
        QTest::newRow("a locked PDF") << "locked.pdf" << QByteArray() << "locked"
                                      << "This document is locked";
        QTest::newRow("a file that is gone") << "gone.txt" << QByteArray() << "broken"
                                             << "This document can't be shown";
    }
    void whatCannotBeShownSaysSoCalmly() {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, stage);
        QFETCH(QString, title);
        const std::string file = name.toStdString();
        if (name != QStringLiteral("locked.pdf") && name != QStringLiteral("gone.txt"))
            m_home.file(file, bytes);
        QuickLookWindow window(at(file.c_str()));
        QVERIFY2(window.reaches(stage.toLatin1().constData()), qPrintable(window.stage()));
        QVERIFY(window.says(title));
    }

    // Whatever is on show, these keys are somebody else's.
    void theRoomsKeysAreLeftAlone_data() {
        QTest::addColumn<Location>("file");
        QTest::addColumn<QString>("stage");
        QTest::newRow("pages") << PdfFiles::make(at("keys.pdf"), 3) << "pages";
        QTest::newRow("text") << m_home.file("keys.txt", QByteArray("line\n").repeated(500)) << "text";
        QTest::newRow("table") << m_home.file("keys.csv", QByteArray("a,b\n").repeated(500)) << "table";
        QTest::newRow("picture") << m_home.file("keys.zip", "PK") << "picture";
        QTest::newRow("empty") << m_home.file("keys-none.txt", "") << "empty";
    }
    void theRoomsKeysAreLeftAlone() {
        QFETCH(Location, file);
        QFETCH(QString, stage);
        QuickLookWindow window(file);
        QVERIFY(window.reaches(stage.toLatin1().constData()));
        QTest::mouseClick(window.window(), Qt::LeftButton, Qt::NoModifier, QPoint(350, 250)); // takes no focus
        const QList<int> keys{Qt::Key_Up,     Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_Space,
                              Qt::Key_Escape, Qt::Key_S,    Qt::Key_I,    Qt::Key_F,     Qt::Key_5};
        for (const int key : keys)
            window.press(key);
        QVariantList heard = window.root()->property("keys").toList();
        QCOMPARE(heard.size(), keys.size());
        for (qsizetype i = 0; i < keys.size(); ++i)
            QCOMPARE(heard[i].toInt(), keys[i]);
    }

    void pageKeysAndTheWheelScroll_data() {
        QTest::addColumn<Location>("file");
        QTest::addColumn<QString>("stage");
        QTest::newRow("pages") << PdfFiles::make(at("scrolled.pdf"), 3) << "pages";
        QTest::newRow("text") << m_home.file("scrolled.txt", QByteArray("line\n").repeated(500)) << "text";
    }
    void pageKeysAndTheWheelScroll() {
        QFETCH(Location, file);
        QFETCH(QString, stage);
        QuickLookWindow window(file);
        QVERIFY(window.reaches(stage.toLatin1().constData()));
        QTRY_VERIFY(window.stageItem()->property("contentHeight").toDouble() > 1000);
        const double start = window.contentY();
        window.press(Qt::Key_PageDown);
        QTRY_VERIFY(window.contentY() > start + 300);
        window.press(Qt::Key_PageUp);
        QTRY_COMPARE(window.contentY(), start);
        window.wheel(-3);
        QTRY_VERIFY(window.contentY() > start + 50);
    }

    void anotherFileShowsNothingOfTheOneBefore() {
        QuickLookWindow window(m_home.file("first.txt", "the first text"));
        QVERIFY(window.says(QStringLiteral("the first text")));
        window.show(PdfFiles::make(at("second.pdf"), 1));
        QCOMPARE(window.stage(), QStringLiteral("nothing"));
        QVERIFY(!window.words().join(u'\n').contains(QStringLiteral("the first text")));
        QVERIFY(window.reaches("pages"));
        window.show(m_home.file("third.txt", "the third text"));
        QVERIFY(window.says(QStringLiteral("the third text")));
    }

    void aTextThatGrowsIsReadAnewWithoutAFlash() {
        const Location file = m_home.file("grows.txt", QByteArray("a line\n").repeated(300));
        QuickLookWindow window(file);
        QVERIFY(window.reaches("text"));
        window.wheel(-10);
        QTRY_VERIFY(window.contentY() > 100);
        QTRY_VERIFY(!window.stageItem()->property("moving").toBool());
        const double there = window.contentY();
        const QVariant stages = window.root()->property("stages");
        QFile grown(file.toString());
        QVERIFY(grown.open(QIODevice::Append));
        grown.write("the end of it\n");
        grown.close();
        QTRY_COMPARE_WITH_TIMEOUT(window.stageItem()->property("count").toInt(), 301, 10'000);
        QCOMPARE(window.contentY(), there);
        for (const QVariant& stage : window.root()->property("stages").toList().mid(stages.toList().size()))
            QCOMPARE(stage.toString(), QStringLiteral("text"));
    }

    void aTextThatIsWrittenAnewIsNotEmptyInBetween() {
        const Location file = m_home.file("anew.txt", "before");
        QuickLookWindow window(file);
        QVERIFY(window.says(QStringLiteral("before")));
        QFile anew(file.toString());
        QVERIFY(anew.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QTest::qWait(300); // as long as a slow program leaves it empty
        anew.write("after");
        anew.close();
        QVERIFY(window.says(QStringLiteral("after")));
        QVERIFY(!window.root()->property("stages").toList().contains(QStringLiteral("empty")));
    }

    void aTextThatStaysEmptySaysSo() {
        const Location file = m_home.file("emptied.txt", "before");
        QuickLookWindow window(file);
        QVERIFY(window.says(QStringLiteral("before")));
        QVERIFY(QFile(file.toString()).resize(0));
        QVERIFY(window.reaches("empty"));
        m_home.file("emptied.txt", "again");
        QVERIFY(window.says(QStringLiteral("again")));
    }

    void pagesThatAreReplacedAreDrawnAnewOverTheOldOnes() {
        const Location file = PdfFiles::make(at("pages.pdf"), 1);
        QuickLookWindow window(file);
        QVERIFY(window.reaches("pages"));
        QTRY_VERIFY(isNear(window.at(350, 60), PdfFiles::colourOf(0)));
        PdfFiles::make(at("newer.pdf"), 3, [](int) { return QPageSize(QSizeF(595, 400), QPageSize::Point); });
        QVERIFY(QFile::remove(file.toString()));
        QVERIFY(QFile::rename(at("newer.pdf").toString(), file.toString()));
        QTRY_COMPARE_WITH_TIMEOUT(pagesOf(window)->pageCount(), 3, 10'000);
        QVERIFY(isNear(window.at(350, 60), PdfFiles::colourOf(0)) || isNear(window.at(350, 60), Qt::white));
        const QStringList stages = window.root()->property("stages").toStringList();
        QCOMPARE(stages.last(), QStringLiteral("pages"));
        QVERIFY(!stages.contains(QStringLiteral("broken")));
        QTRY_VERIFY(isNear(window.at(350, 490), PdfFiles::colourOf(1))); // the second page has come up
    }

    void aDocumentThatVanishesStays_data() {
        QTest::addColumn<Location>("file");
        QTest::addColumn<QString>("stage");
        QTest::newRow("pages") << PdfFiles::make(at("vanishes.pdf"), 1) << "pages";
        QTest::newRow("text") << m_home.file("vanishes.txt", "still here") << "text";
    }
    void aDocumentThatVanishesStays() {
        QFETCH(Location, file);
        QFETCH(QString, stage);
        QuickLookWindow window(file);
        QVERIFY(window.reaches(stage.toLatin1().constData()));
        QTRY_VERIFY(window.value("view", "shown").toBool());
        QVERIFY(QFile::remove(file.toString()));
        const Location marker = m_home.file("marker.txt", "the file after");
        QTest::qWait(600); // one batch of events
        QCOMPARE(window.stage(), stage);
        window.show(marker);
        QVERIFY(window.says(QStringLiteral("the file after")));
    }

    void aHostileNameIsJustAName() {
        QuickLookWindow window(m_home.file("<b>a & \n\"c\".zip", "PK"));
        QVERIFY(window.reaches("picture"));
        QVERIFY(window.says(QStringLiteral("<b>a &")));
    }

private:
    Location at(const char* name) const { return m_home.path().child(std::string_view(name)); }

    static DocumentPages* pagesOf(QuickLookWindow& window) {
        return window.stageItem()->property("pages").value<DocumentPages*>();
    }

    TestHome m_home;
};

QTEST_MAIN(tst_QuickLook)
#include "tst_quicklook.moc"

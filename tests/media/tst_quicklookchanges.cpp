// Documents on show whose files change, are replaced or vanish, and views that turn to another file.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "QuickLookWindow.h"
#include "media/quicklook/DocumentPages.h"
#include "support/PdfFiles.h"
#include "support/TestHome.h"

#include <QFile>
#include <QtTest>

Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)

using namespace lumbra;

namespace {

bool isNear(const QColor& a, const QColor& b, int tolerance = 24) {
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance
           && std::abs(a.blue() - b.blue()) <= tolerance;
}

} // namespace

class tst_QuickLookChanges : public QObject {
    Q_OBJECT

private Q_SLOTS:
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
        QTRY_COMPARE(window.stageItem()->property("count").toInt(), 301);
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
        QTRY_COMPARE(pagesOf(window)->pageCount(), 3);
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

    void aBrokenDocumentThatIsMendedIsShown() {
        const Location file = m_home.file("mended.pdf", "%PDF-1.7 not yet");
        QuickLookWindow window(file);
        QVERIFY(window.reaches("broken"));
        PdfFiles::make(file, 2);
        QVERIFY(window.reaches("pages"));
        QTRY_COMPARE(pagesOf(window)->pageCount(), 2);
    }

    void aDocumentThatComesLaterIsShown() {
        QuickLookWindow window(at("later.txt"));
        QVERIFY(window.reaches("broken"));
        m_home.file("later.txt", "here it is");
        QVERIFY(window.says(QStringLiteral("here it is")));
    }

    void aDocumentThatBreaksStaysAsItWas() {
        const Location file = PdfFiles::make(at("breaks.pdf"), 2);
        QuickLookWindow window(file);
        QVERIFY(window.reaches("pages"));
        QTRY_VERIFY(isNear(window.at(350, 60), PdfFiles::colourOf(0)));
        m_home.file("breaks.pdf", "%PDF-1.7 half of it");
        QTest::qWait(600); // one batch of events
        QCOMPARE(window.stage(), QStringLiteral("pages"));
        QVERIFY(isNear(window.at(350, 60), PdfFiles::colourOf(0)));
    }

    // As fast as somebody holds an arrow key.
    void turningQuicklyThroughFilesEndsAtTheLast() {
        QList<Location> files;
        for (int i = 0; i < 10; ++i) {
            files.append(m_home.file("turned" + std::to_string(i) + ".txt", "text number " + QByteArray::number(i)));
            files.append(PdfFiles::make(at(("turned" + std::to_string(i) + ".pdf").c_str()), 3));
        }
        QuickLookWindow window(files.first());
        for (const Location& file : files) {
            window.show(file);
            QCoreApplication::processEvents();
        }
        window.show(files[6]);
        QVERIFY(window.says(QStringLiteral("text number 3")));
        QCOMPARE(window.stage(), QStringLiteral("text"));
    }

private:
    Location at(const char* name) const { return m_home.path().child(std::string_view(name)); }

    static DocumentPages* pagesOf(QuickLookWindow& window) {
        return window.stageItem()->property("pages").value<DocumentPages*>();
    }

    TestHome m_home;
};

QTEST_MAIN(tst_QuickLookChanges)
#include "tst_quicklookchanges.moc"

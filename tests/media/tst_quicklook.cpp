// Documents on show: every kind, its scrolling and its keys.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "QuickLookWindow.h"
#include "media/quicklook/QuickLookDocument.h"
#include "support/PdfFiles.h"
#include "support/Strings.h"
#include "support/TestHome.h"

#include <QDesktopServices>
#include <QElapsedTimer>
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

// What would open an address in another program.
class UrlOpener : public QObject {
    Q_OBJECT

public:
    Q_INVOKABLE void open(const QUrl& url) { opened.append(url.toString()); }

    QStringList opened;
};

class tst_QuickLook : public QObject {
    Q_OBJECT

private Q_SLOTS:
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
        QVERIFY2(timer.elapsed() < 5000, QByteArray::number(timer.elapsed()));
        QVERIFY(window.says(QStringLiteral("This is the beginning of a file of 200 MB.")));
        timer.restart();
        window.press(Qt::Key_End);
        QTRY_VERIFY(window.stageItem()->property("atYEnd").toBool());
        QVERIFY2(timer.elapsed() < 5000, QByteArray::number(timer.elapsed()));
    }

    void markdownIsRendered() {
        m_home.file("docs/x");
        QImage red(300, 200, QImage::Format_RGB32);
        red.fill(Qt::red);
        QVERIFY(red.save(at("docs/red.png").toString()));
        QuickLookWindow window(m_home.file("docs/a.md", "# Title\n\n![a red one](red.png)\n\nsome **bold** words\n"));
        QVERIFY(window.reaches("text"));
        QVERIFY(window.says(QStringLiteral("Title")));
        QVERIFY(window.says(QStringLiteral("some bold words")));
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

    void aCellThatIsCutOffTellsAllOfIt() {
        const QByteArray cell = QByteArray("a cell of many words ").repeated(6).trimmed();
        QuickLookWindow window(m_home.file("cut.csv", "a,b\n1," + cell + "\n"));
        QVERIFY(window.reaches("table"));
        QVERIFY(window.says(QString::fromLatin1(cell)));
        QTest::mouseMove(window.window(), QPoint(300, 45));
        QTRY_COMPARE(window.words().count(QString::fromLatin1(cell)), 2); // in its place and in the tool tip
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

    void linksOfTheWebAreOpenedInTheBrowserAndNoOthers() {
        UrlOpener opener;
        for (const char* scheme : {"https", "http", "file", "mailto", "javascript"})
            QDesktopServices::setUrlHandler(QString::fromLatin1(scheme), &opener, "open");
        for (const char* link : {"https://a.example/b?c=1", "http://a.example", "file:///etc/passwd",
                                 "mailto:a@b.example", "javascript:alert(1)", "a.md", "", "https://a b"})
            QuickLookDocument::openLink(QString::fromLatin1(link));
        for (const char* scheme : {"https", "http", "file", "mailto", "javascript"})
            QDesktopServices::unsetUrlHandler(QString::fromLatin1(scheme));
        QCOMPARE(opener.opened, strings({"https://a.example/b?c=1", "http://a.example"}));
    }

    void aHostileNameIsJustAName() {
        QuickLookWindow window(m_home.file("<b>a & \n\"c\".zip", "PK"));
        QVERIFY(window.reaches("picture"));
        QVERIFY(window.says(QStringLiteral("<b>a &")));
    }

private:
    Location at(const char* name) const { return m_home.path().child(std::string_view(name)); }

    TestHome m_home;
};

QTEST_MAIN(tst_QuickLook)
#include "tst_quicklook.moc"

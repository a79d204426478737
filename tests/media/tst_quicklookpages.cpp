// The pages of a document on show: how they scroll and are enlarged, and what stands for them until they are drawn.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "QuickLookWindow.h"
#include "media/quicklook/DocumentPage.h"
#include "media/quicklook/DocumentPages.h"
#include "support/PdfFiles.h"
#include "support/TestHome.h"

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

int countPages(QQuickItem* item) {
    int count = qobject_cast<DocumentPage*>(item) ? 1 : 0;
    for (QQuickItem* child : item->childItems())
        count += countPages(child);
    return count;
}

// Counts the frames, and those in which paper is seen that nothing is drawn on yet.
struct BarePages {
    explicit BarePages(QuickLookWindow& window) {
        QObject::connect(
            window.window(), &QQuickWindow::afterRendering, &context,
            [this, &window] {
                ++frames;
                bareFrames += QuickLookWindow::anyItem(window.window()->contentItem(), isBare) ? 1 : 0;
            },
            Qt::DirectConnection);
    }

    static bool isBare(QQuickItem* item) {
        const auto* const page = qobject_cast<DocumentPage*>(item);
        return page && !page->seen().isEmpty() && !page->isDrawn();
    }

    QObject context;
    int frames = 0;
    int bareFrames = 0;
};

} // namespace

class tst_QuickLookPages : public QObject {
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
        QVERIFY2(timer.elapsed() < 8000, QByteArray::number(timer.elapsed()));
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

    void whoComesBackToPagesSeesNoBarePaper() {
        const Location text = m_home.file("between.txt", "words");
        QuickLookWindow window(PdfFiles::make(at("again.pdf"), 3));
        QVERIFY(window.reaches("pages"));
        QTRY_VERIFY(isNear(window.at(350, 60), PdfFiles::colourOf(0)));
        window.show(text);
        QVERIFY(window.reaches("text"));
        const BarePages bare(window);
        window.show(at("again.pdf"));
        QVERIFY(window.reaches("pages"));
        QTRY_VERIFY(isNear(window.at(350, 60), PdfFiles::colourOf(0)));
        QVERIFY(bare.frames > 0);
        QCOMPARE(bare.bareFrames, 0);
    }

    void pagesThatHaveChangedMeanwhileAreNotShownAsTheyWere() {
        const Location text = m_home.file("between.txt", "words");
        QuickLookWindow window(PdfFiles::make(at("changed.pdf"), 1));
        QVERIFY(window.reaches("pages"));
        QTRY_VERIFY(isNear(window.at(350, 60), PdfFiles::colourOf(0)));
        window.show(text);
        QVERIFY(window.reaches("text"));
        QVERIFY(QFile::remove(at("changed.pdf").toString()));
        PdfFiles::make(at("changed.pdf"), 12);
        const BarePages bare(window);
        window.show(at("changed.pdf"));
        QVERIFY(window.reaches("pages"));
        QTRY_COMPARE(pagesOf(window)->pageCount(), 12);
        QTRY_VERIFY(isNear(window.at(350, 60), PdfFiles::colourOf(0)));
        QVERIFY(bare.bareFrames > 0);
    }

    void aSmallPictureStandsForAPageUntilItIsDrawn() {
        constexpr char page[] = R"(
            property var file
            property var poster
            DocumentPage { objectName: "page"; anchors.fill: parent; file: parent.file; page: 0; poster: parent.poster })";
        QImage poster(30, 40, QImage::Format_RGB32);
        poster.fill(Qt::magenta);
        QmlWindow window(page, "import Lumbra.Media\n",
                         {{QStringLiteral("file"), QVariant::fromValue(at("unwritten.pdf"))},
                          {QStringLiteral("poster"), QVariant::fromValue(poster)}});
        QTRY_COMPARE(window->grabWindow().pixelColor(300, 10), QColor(Qt::magenta));
        QVERIFY(!window.value("page", "drawn").toBool());
        window.root()->setProperty("file", QVariant::fromValue(PdfFiles::make(at("written.pdf"), 1)));
        QTRY_COMPARE(window->grabWindow().pixelColor(5, 395), QColor(Qt::white));
        QVERIFY(window.value("page", "drawn").toBool());
    }

private:
    Location at(const char* name) const { return m_home.path().child(std::string_view(name)); }

    static DocumentPages* pagesOf(QuickLookWindow& window) {
        return window.stageItem()->property("pages").value<DocumentPages*>();
    }

    TestHome m_home;
};

QTEST_MAIN(tst_QuickLookPages)
#include "tst_quicklookpages.moc"

// The pages of documents, as the application gets them from a real reader.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Reader.h"
#include "support/PdfFiles.h"
#include "support/TestHome.h"

#include <QElapsedTimer>
#include <QFile>
#include <QtTest>

using namespace lumbra;

namespace {

bool isNear(const QColor& a, const QColor& b, int tolerance = 24) {
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance
           && std::abs(a.blue() - b.blue()) <= tolerance;
}

// Mean difference of the channels of two pictures of one size, 0 to 255.
double difference(const QImage& a, const QImage& b) {
    qint64 sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb one = a.pixel(x, y), other = b.pixel(x, y);
            sum += std::abs(qRed(one) - qRed(other)) + std::abs(qGreen(one) - qGreen(other))
                   + std::abs(qBlue(one) - qBlue(other));
        }
    }
    return double(sum) / (3.0 * a.width() * a.height());
}

} // namespace

class tst_DocumentPages : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyPageTellsItsSize() {
        const Location file = PdfFiles::make(at("sizes.pdf"), 3, [](int page) {
            return page == 1 ? QPageSize(QSizeF(960, 540), QPageSize::Point) : QPageSize(QPageSize::A4);
        });
        const auto pages = pagesOf(file);
        QVERIFY(pages);
        QCOMPARE(pages->sizes.size(), 3);
        QCOMPARE(pages->sizes[0].toSize(), QSize(595, 842));
        QCOMPARE(pages->sizes[1].toSize(), QSize(960, 540));
        QVERIFY(!pages->isLocked);
    }

    void aPageIsDrawnOnWhite() {
        const Location file = PdfFiles::make(at("white.pdf"), 2);
        const QImage second = pageOf(file, 1, {595, 842});
        QCOMPARE(second.size(), QSize(595, 842));
        QCOMPARE(second.format(), QImage::Format_RGB32);
        QVERIFY(isNear(second.pixelColor(300, 100), PdfFiles::colourOf(1)));
        QVERIFY(isNear(second.pixelColor(20, 800), Qt::white));
    }

    void aPartIsThatPartOfTheWhole_data() {
        QTest::addColumn<QRect>("part");
        QTest::newRow("upper left") << QRect(0, 0, 600, 500);
        QTest::newRow("middle") << QRect(300, 800, 700, 600);
        QTest::newRow("lower right") << QRect(790, 1284, 400, 400);
        QTest::newRow("one pixel") << QRect(10, 10, 1, 1);
    }
    void aPartIsThatPartOfTheWhole() {
        QFETCH(QRect, part);
        const Location file = PdfFiles::make(at("parts.pdf"), 1);
        const QSize whole(1190, 1684);
        const QImage drawn = pageOf(file, 0, whole);
        const QImage cut = pageOf(file, 0, whole, part);
        QCOMPARE(cut.size(), part.size());
        const double off = difference(cut, drawn.copy(part));
        QVERIFY2(off < 1, QByteArray::number(off));
    }

    void anEnlargedPartIsSharp() {
        const Location file = PdfFiles::make(at("sharp.pdf"), 1);
        const QImage part = pageOf(file, 0, {59500, 84200}, {0, 20950, 400, 200}); // over the bar's lower edge
        QVERIFY(isNear(part.pixelColor(200, 20), PdfFiles::colourOf(0)));
        QVERIFY(isNear(part.pixelColor(200, 180), Qt::white));
    }

    void aLockedDocumentSaysSo() {
        const auto pages = pagesOf(PdfFiles::lock(PdfFiles::make(at("open.pdf"), 1), at("locked.pdf")));
        QVERIFY(pages);
        QVERIFY(pages->isLocked);
        QVERIFY(pages->sizes.isEmpty());
        QVERIFY(pageOf(at("locked.pdf"), 0, {100, 100}).isNull());
    }

    void whatIsNoDocumentHasNoPages_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("text") << QByteArray("just words");
        QTest::newRow("a header alone") << QByteArray("%PDF-1.7\n");
        QTest::newRow("rubbish behind the header") << "%PDF-1.7\n" + QByteArray(5000, 'x');
        PdfFiles::make(at("whole.pdf"), 1);
        QFile whole(at("whole.pdf").toString());
        QVERIFY(whole.open(QIODevice::ReadOnly));
        QTest::newRow("its first part") << whole.read(600);
    }
    void whatIsNoDocumentHasNoPages() {
        QFETCH(QByteArray, bytes);
        const Location file = m_home.file("broken.pdf", bytes);
        QVERIFY(!pagesOf(file));
        QVERIFY(pageOf(file, 0, {100, 100}).isNull());
    }

    void aPageBeyondTheEndIsNone() {
        const Location file = PdfFiles::make(at("two.pdf"), 2);
        QVERIFY(!pageOf(file, 1, {100, 100}).isNull());
        QVERIFY(pageOf(file, 2, {100, 100}).isNull());
    }

    void aDocumentThatIsReplacedIsOpenedAnew() {
        const Location file = PdfFiles::make(at("replaced.pdf"), 1);
        QCOMPARE(pagesOf(file)->sizes.size(), 1);
        PdfFiles::make(at("next.pdf"), 4);
        QVERIFY(QFile::remove(file.toString()));
        QVERIFY(QFile::rename(at("next.pdf").toString(), file.toString()));
        QCOMPARE(pagesOf(file)->sizes.size(), 4);
        QVERIFY(isNear(pageOf(file, 3, {595, 842}).pixelColor(300, 100), PdfFiles::colourOf(3)));
    }

    void theLastOfFiveHundredPagesIsThereSoon() {
        const Location file = PdfFiles::make(at("many.pdf"), 500);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(pagesOf(file)->sizes.size(), 500);
        QVERIFY(isNear(pageOf(file, 499, {595, 842}).pixelColor(300, 100), PdfFiles::colourOf(499)));
        QVERIFY2(timer.elapsed() < 3000, QByteArray::number(timer.elapsed()));
    }

    void theWordsOfAPageAreToldWithTheirPlaces() {
        const Location file = PdfFiles::write(at("words.pdf"), {{"The first line of it", "and the second"}, {"More"}});
        const Reader::PageText all = textOf(file, {.page = 0, .grain = Reader::PageTextWish::Grain::page});
        QCOMPARE(plain(all), QStringLiteral("The first line of it\nand the second"));
        QCOMPARE(all.places.size(), 2);
        QVERIFY(std::abs(all.places[0].left() - PdfFiles::left) < 4);
        QVERIFY(all.places[0].contains(all.places[0].left() + 20, PdfFiles::firstLine));
        QVERIFY(all.places[1].contains(all.places[1].left() + 20, PdfFiles::firstLine + PdfFiles::lineHeight));
        QCOMPARE(plain(textOf(file, {.page = 1, .grain = Reader::PageTextWish::Grain::page})), QStringLiteral("More"));
    }

    void theWordsBetweenTwoPointsAreTold_data() {
        QTest::addColumn<QPointF>("from");
        QTest::addColumn<QPointF>("to");
        QTest::addColumn<bool>("byWords");
        QTest::addColumn<QString>("words");
        const double one = PdfFiles::firstLine, two = one + PdfFiles::lineHeight, start = PdfFiles::left;
        const auto row = [](const char* name, QPointF from, QPointF to, bool byWords, const char* words) {
            QTest::newRow(name) << from << to << byWords << QString::fromUtf8(words);
        };
        row("a whole line", {0, one}, {590, one}, false, "The first line of it");
        row("both lines", {0, one}, {590, two}, false, "The first line of it\nand the second");
        row("the other way", {590, two}, {0, one}, false, "The first line of it\nand the second");
        row("from above all to below all", {300, -10}, {0, 2000}, false, "The first line of it\nand the second");
        row("nothing", {0, one}, {0, one}, false, "");
        row("a word", {start + 8, one}, {start + 8, one}, true, "The");
        row("a word and all behind it", {start + 8, one}, {590, 2000}, true, "The first line of it\nand the second");
    }
    void theWordsBetweenTwoPointsAreTold() {
        using Grain = Reader::PageTextWish::Grain;
        QFETCH(QPointF, from);
        QFETCH(QPointF, to);
        QFETCH(bool, byWords);
        const Location file = PdfFiles::write(at("between.pdf"), {{"The first line of it", "and the second"}});
        const Reader::PageText text =
            textOf(file, {.page = 0, .from = from, .to = to, .grain = byWords ? Grain::words : Grain::characters});
        QTEST(plain(text), "words");
    }

    void whatHasNoWordsHasNone() {
        const Reader::PageTextWish all{.page = 0, .from = {0, -10}, .to = {0, 2000}};
        QCOMPARE(textOf(PdfFiles::write(at("bare.pdf"), {{}}), all).words, QString());
        QCOMPARE(textOf(PdfFiles::make(at("one.pdf"), 1), {.page = 1}).words, QString());
        QCOMPARE(textOf(m_home.file("no.pdf", "just words"), all).words, QString());
    }

private:
    static QString plain(const Reader::PageText& text) { return QString(text.words).remove(u'\r').trimmed(); }

    Reader::PageText textOf(const Location& file, const Reader::PageTextWish& wish) {
        QFuture<Reader::PageText> text = m_reader.pageText(file, wish);
        text.waitForFinished();
        return text.result();
    }

    Location at(const char* name) const { return m_home.path().child(std::string_view(name)); }

    std::optional<Reader::Pages> pagesOf(const Location& file) {
        QFuture<std::optional<Reader::Pages>> pages = m_reader.pages(file);
        pages.waitForFinished();
        return pages.result();
    }

    QImage pageOf(const Location& file, int page, QSize whole, QRect part = {}) {
        const QRect wanted = part.isNull() ? QRect(QPoint(), whole) : part;
        QFuture<QImage> image = m_reader.page(file, {.page = page, .whole = whole, .part = wanted});
        image.waitForFinished();
        return image.result();
    }

    TestHome m_home;
    Reader m_reader{{.children = 1}};
};

QTEST_MAIN(tst_DocumentPages)
#include "tst_documentpages.moc"

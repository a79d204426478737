// Drawings and pages: what is drawn rather than unpacked.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureFiles.h"

#include <QBuffer>
#include <QPdfWriter>
#include <QtTest>

using namespace lumbra;

class tst_DrawingPictures : public QObject, private PictureFiles {
    Q_OBJECT

private Q_SLOTS:
    void aDrawingFillsItsBox() {
        write("d.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10'>"
                       "<rect width='10' height='10' fill='red'/></svg>");
        const QImage image = thumbnail("d.svg");
        QCOMPARE(image.size(), QSize(240, 120));
        QVERIFY(isNear(at(image, 0.25, 0.5), Qt::red));
        QCOMPARE(at(image, 0.75, 0.5).alpha(), 0);
    }

    void aDrawingTakesNothingFromElsewhere_data() {
        QTest::addColumn<QByteArray>("inside");
        const QByteArray other = path("quarters.png").toUtf8();
        QTest::newRow("a picture by its path") << "<image width='20' height='20' href='" + other + "'/>";
        QTest::newRow("a picture by its address")
            << "<image width='20' height='20' xlink:href='file://" + other + "'/>";
        QTest::newRow("a picture through an entity") << QByteArray("<image width='20' height='20' xlink:href='&o;'/>");
        QTest::newRow("a picture over the network")
            << QByteArray("<image width='20' height='20' xlink:href='http://127.0.0.1/quarters.png'/>");
        QTest::newRow("a drawing inside that takes a picture")
            << "<image width='20' height='20' xlink:href='" + inside(other) + "'/>";
        QTest::newRow("the users of the machine")
            << QByteArray("<use xlink:href='file:///etc/passwd#root'/><image width='20' height='20' "
                          "xlink:href='/etc/passwd'/><text y='10'><tref xlink:href='file:///etc/passwd'/></text>");
        write("style.css", "rect { fill: red }");
        QTest::newRow("a style") << "<style>rect{fill:none} @import url('" + path("style.css").toUtf8()
                                        + "');</style><rect width='20' height='20'/>";
        QTest::newRow("a file as text") << QByteArray("<text y='10' font-size='20'>&secret;</text>");
    }

    void aDrawingTakesNothingFromElsewhere() {
        QFETCH(QByteArray, inside);
        write("secret", "XXXXXXXX");
        write("e.svg", "<!DOCTYPE svg [<!ENTITY o '" + path("quarters.png").toUtf8()
                           + "'><!ENTITY secret SYSTEM 'file://" + path("secret").toUtf8()
                           + "'>]><svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
                             "width='20' height='20'>"
                           + inside + "</svg>");
        QVERIFY(isClear(thumbnail("e.svg")));
    }

    // Letters of other shapes hide what is looked for.
    void aDrawingInOtherLettersTakesNothingFromElsewhere_data() {
        QTest::addColumn<QByteArray>("drawing");
        const QByteArray image = "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
                                 "width='20' height='20'><image width='20' height='20' xlink:href='"
                                 + path("quarters.png").toUtf8() + "'/></svg>";
        QTest::newRow("of seven bits") << "<?xml version='1.0' encoding='UTF-7'?>"
                                              + QByteArray(image).replace("href", "hr+AGU-f");
        const QString wide = QChar(QChar::ByteOrderMark) + QString::fromUtf8(image);
        QTest::newRow("of two bytes") << QByteArray(reinterpret_cast<const char*>(wide.utf16()), wide.size() * 2);
    }

    void aDrawingInOtherLettersTakesNothingFromElsewhere() {
        QFETCH(QByteArray, drawing);
        write("letters.svg", drawing);
        QVERIFY(isClear(thumbnail("letters.svg")));
    }

    void aDrawingShowsThePicturesInsideIt() {
        QByteArray png;
        QBuffer buffer(&png);
        QVERIFY(quarters({20, 20}).save(&buffer, "png"));
        write("i.svg", "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='20' "
                       "height='20'><image width='20' height='20' xlink:href='data:image/png;base64,"
                           + png.toBase64() + "'/></svg>");
        QVERIFY(showsQuarters(thumbnail("i.svg")));
    }

    void aPageIsWhitePaper() {
        QPdfWriter writer(path("p.pdf"));
        writer.setPageSize(QPageSize(QPageSize::A4));
        QPainter painter(&writer);
        painter.fillRect(0, 0, writer.width() / 4, writer.height() / 4, Qt::red);
        writer.newPage();
        painter.fillRect(0, 0, writer.width(), writer.height(), Qt::blue);
        painter.end();
        const QImage image = thumbnail("p.pdf");
        QCOMPARE(image.size(), QSize(170, 240));
        QCOMPARE(image.format(), QImage::Format_RGB32);
        QVERIFY(isNear(at(image, 0.15, 0.15), Qt::red));
        QVERIFY(isNear(at(image, 0.7, 0.7), Qt::white));
    }

private:
    // A drawing of that picture, as a reference holds it.
    static QByteArray inside(const QByteArray& picture) {
        const QByteArray drawing = "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
                                   "width='20' height='20'><image width='20' height='20' xlink:href='"
                                   + picture + "'/></svg>";
        return "data:image/png;base64," + drawing.toBase64();
    }

    static bool isClear(const QImage& image) {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y).alpha() > 0)
                    return false;
            }
        }
        return true;
    }
};

QTEST_MAIN(tst_DrawingPictures)
#include "tst_drawingpictures.moc"

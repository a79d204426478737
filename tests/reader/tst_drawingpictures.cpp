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
        const QImage image = thumbnail("e.svg");
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                QCOMPARE(image.pixelColor(x, y).alpha(), 0);
        }
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
};

QTEST_MAIN(tst_DrawingPictures)
#include "tst_drawingpictures.moc"

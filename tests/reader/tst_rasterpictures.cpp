// Pictures of pixels: upright, in the colours that their files mean, and as transparent.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureFiles.h"

#include <QColorSpace>
#include <QImageReader>
#include <QImageWriter>
#include <QtTest>

using namespace lumbra;

class tst_RasterPictures : public QObject, private PictureFiles {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        QImage clear({400, 200}, QImage::Format_ARGB32);
        clear.fill(Qt::transparent);
        QPainter(&clear).fillRect(0, 0, 200, 200, QColor(255, 0, 0, 128));
        QVERIFY(clear.save(path("clear.png")));
        for (const char* name : {"clear.webp", "clear.avif", "clear.tiff"})
            convertByVips("clear.png", name);
        for (const char* name : {"turned.webp", "turned.tiff"})
            convertByVips("quarters.png", name, 6);
    }

    void turnedPicturesAreUpright_data() {
        QTest::addColumn<int>("turn");
        QTest::newRow("mirrored") << int(QImageIOHandler::TransformationMirror);
        QTest::newRow("upside down") << int(QImageIOHandler::TransformationRotate180);
        QTest::newRow("flipped") << int(QImageIOHandler::TransformationFlip);
        QTest::newRow("flipped and turned") << int(QImageIOHandler::TransformationFlipAndRotate90);
        QTest::newRow("a quarter clockwise") << int(QImageIOHandler::TransformationRotate90);
        QTest::newRow("mirrored and turned") << int(QImageIOHandler::TransformationMirrorAndRotate90);
        QTest::newRow("a quarter anticlockwise") << int(QImageIOHandler::TransformationRotate270);
    }

    void turnedPicturesAreUpright() {
        QFETCH(int, turn);
        const auto transformation = QImageIOHandler::Transformation(turn);
        const bool isTurned = transformation & QImageIOHandler::TransformationRotate90;
        QImageWriter writer(path("turned.jpg"));
        writer.setTransformation(transformation);
        QVERIFY(writer.write(quarters({640, 480})));
        const QImage image = thumbnail("turned.jpg");
        QCOMPARE(image.size(), isTurned ? QSize(180, 240) : QSize(240, 180));
        // What a reader that knows of turning makes of it, at full size.
        QImageReader reference(path("turned.jpg"));
        reference.setAutoTransform(true);
        const QImage upright = reference.read();
        for (const double x : {0.25, 0.75}) {
            for (const double y : {0.25, 0.75})
                QVERIFY(isNear(at(image, x, y), at(upright, x, y)));
        }
        QVERIFY(!showsQuarters(image));
    }

    void theHeaderTellsThePixels() {
        for (const char* const name : {"large.jpg", "large.png", "large.webp", "large.bmp", "large.tiff"}) {
            QVERIFY2(QImage(1200, 700, QImage::Format_RGB32).save(path(name)), name);
            QCOMPARE(pixels(name), QSize(1200, 700));
        }
        QCOMPARE(pixels("turned.tiff"), QSize(480, 640));
        QCOMPARE(pixels("turned.webp"), QSize(480, 640));
        write("words.txt", "words");
        write("broken.png", QByteArray("\x89PNG\r\n\x1a\n") + "and then nothing");
        QCOMPARE(pixels("words.txt"), QSize());
        QCOMPARE(pixels("broken.png"), QSize());
    }

    void otherFormatsAreTurnedToo_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("webp") << QByteArray("turned.webp");
        QTest::newRow("tiff") << QByteArray("turned.tiff");
    }

    void otherFormatsAreTurnedToo() {
        QFETCH(QByteArray, name);
        const QImage image = thumbnail(name); // a quarter clockwise
        QCOMPARE(image.size(), QSize(180, 240));
        QVERIFY(isNear(at(image, 0.25, 0.25), Qt::blue));
        QVERIFY(isNear(at(image, 0.75, 0.25), Qt::red));
    }

    void coloursAreThoseOfTheProfile_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("jpeg") << QByteArray("profile.jpg");
        QTest::newRow("png") << QByteArray("profile.png");
    }

    void coloursAreThoseOfTheProfile() {
        QFETCH(QByteArray, name);
        QImage image({300, 300}, QImage::Format_RGB32);
        image.fill(QColor(200, 100, 50));
        image.setColorSpace(QColorSpace(QColorSpace::ProPhotoRgb));
        QVERIFY(image.save(path(name), nullptr, 100));
        const QColor wanted = image.convertedToColorSpace(QColorSpace(QColorSpace::SRgb)).pixelColor(0, 0);
        QVERIFY(!isNear(wanted, QColor(200, 100, 50)));
        QVERIFY(isNear(thumbnail(name).pixelColor(100, 100), wanted, 4));
    }

    void inksBecomeColours() {
        run("convert", {"quarters.png", "-colorspace", "CMYK", "inks.jpg"});
        const QImage image = thumbnail("inks.jpg");
        QCOMPARE(image.size(), QSize(240, 180));
        QVERIFY(isNear(at(image, 0.75, 0.75), Qt::white));
        QVERIFY(at(image, 0.25, 0.25).red() > 150 && at(image, 0.25, 0.25).blue() < 100);
    }

    void greyPicturesAreGrey() {
        QImage image({500, 500}, QImage::Format_Grayscale8);
        image.fill(QColor(90, 90, 90));
        for (const char* name : {"grey.jpg", "grey.png"}) {
            QVERIFY(image.save(path(name)));
            QVERIFY(isNear(thumbnail(name).pixelColor(100, 100), QColor(90, 90, 90), 3));
        }
    }

    void transparencyIsKept_data() {
        QTest::addColumn<QByteArray>("name");
        for (const char* name : {"clear.png", "clear.webp", "clear.avif", "clear.tiff"})
            QTest::newRow(name) << QByteArray(name);
    }

    void transparencyIsKept() {
        QFETCH(QByteArray, name);
        const QImage made = thumbnail(name);
        QCOMPARE(made.format(), QImage::Format_ARGB32_Premultiplied);
        QVERIFY(isNear(at(made, 0.25, 0.5), QColor(255, 0, 0, 128)));
        QCOMPARE(at(made, 0.75, 0.5).alpha(), 0);
    }

    void anAnimationShowsItsFirstPicture_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("gif") << QByteArray("moving.gif");
        QTest::newRow("webp") << QByteArray("moving.webp");
    }

    void anAnimationShowsItsFirstPicture() {
        QFETCH(QByteArray, name);
        run("convert", {"-size", "300x300", "-delay", "10", "xc:red", "xc:blue", name});
        QVERIFY(isNear(thumbnail(name).pixelColor(50, 50), Qt::red));
    }
};

QTEST_MAIN(tst_RasterPictures)
#include "tst_rasterpictures.moc"

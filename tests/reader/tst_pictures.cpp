// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureFiles.h"

#include <QtTest>

using namespace lumbra;

class tst_Pictures : public QObject, private PictureFiles {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { makeModernFormats(); }

    void everyFormatComesWholeAndInItsColours_data() {
        QTest::addColumn<QByteArray>("name");
        for (const char* name : {"a.png", "a.jpg", "a.bmp", "a.ppm", "a.gif", "a.tiff", "a.webp", "a.heic", "a.avif",
                                 "a.jxl", "a.jp2", "a.mp4", "a.webm", "a.mov", "a.mkv", "a.avi", "a.ts"})
            QTest::newRow(name) << QByteArray(name);
    }

    void everyFormatComesWholeAndInItsColours() {
        QFETCH(QByteArray, name);
        make(name);
        const QImage image = thumbnail(name);
        QCOMPARE(image.size(), QSize(240, 180));
        QVERIFY(showsQuarters(image));
        QVERIFY(image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32_Premultiplied);
    }

    void sizes_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QSize>("expected");
        QTest::newRow("small ones are not enlarged") << QSize(20, 10) << QSize(20, 10);
        QTest::newRow("wide") << QSize(1000, 100) << QSize(240, 24);
        QTest::newRow("tall") << QSize(100, 1000) << QSize(24, 240);
        QTest::newRow("exactly the box") << QSize(240, 240) << QSize(240, 240);
        QTest::newRow("1 by 30000") << QSize(1, 30000) << QSize(1, 240);
        QTest::newRow("30000 by 1") << QSize(30000, 1) << QSize(240, 1);
    }

    void sizes() {
        QFETCH(QSize, size);
        for (const char* format : {"png", "jpg", "webp"}) {
            if (std::max(size.width(), size.height()) > 16383 && qstrcmp(format, "webp") == 0)
                continue; // WebP knows no such size
            QImage image(size, QImage::Format_RGB32);
            image.fill(Qt::red);
            const QByteArray name = QByteArray("size.") + format;
            QVERIFY(image.save(path(name)));
            QTEST(thumbnail(name).size(), "expected");
        }
    }
    void otherKindsAreNothing_data() {
        QTest::addColumn<QByteArray>("name");
        for (const char* name : {"program", "scene.glb", "sound.wav", "archive.zip", "letter.doc"})
            QTest::newRow(name) << QByteArray(name);
    }

    void otherKindsAreNothing() {
        QFETCH(QByteArray, name);
        write(name, "some text, which is no picture");
        QVERIFY(thumbnail(name).isNull());
    }
};

QTEST_MAIN(tst_Pictures)
#include "tst_pictures.moc"

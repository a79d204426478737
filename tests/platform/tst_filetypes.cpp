// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileTypes.h"

#include <QTest>

using namespace lumbra;

class FileTypesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyExtensionHasItsType_data() {
        QTest::addColumn<QByteArray>("extension");
        QTest::addColumn<int>("type");
        const auto rows = [](FileType type, const char* extensions) {
            for (const QByteArray& extension : QByteArray(extensions).split(' '))
                QTest::newRow(extension.constData()) << extension << int(type);
        };
        rows(FileType::image, "png apng jpg jpeg jpe jfif gif webp heic heif heics avif tif tiff bmp dib svg svgz psd "
                              "psb exr hdr tga pbm pgm ppm pnm jp2 j2k jpx jxl dng cr2 cr3 nef arw raf orf rw2 pef srw "
                              "raw qoi xbm xpm pcx eps");
        rows(FileType::movie,
             "mp4 m4v mov qt avi mpg mpeg mpe m1v m2v mts m2ts 3gp 3g2 ogv wmv asf flv f4v vob dv mxf");
        rows(FileType::audio,
             "mp3 m4a m4b aac wav aif aiff aifc caf flac ogg oga opus amr mid midi wma ac3 mka weba au");
    }

    void everyExtensionHasItsType() {
        QFETCH(QByteArray, extension);
        QFETCH(int, type);
        const auto found = fileTypeOf(extension.toStdString());
        QVERIFY(found);
        QCOMPARE(int(*found), type);
    }

    void otherExtensionsHaveNone_data() {
        QTest::addColumn<QByteArray>("extension");
        for (const char* extension : {"", "ts", "p", "pn", "pngx", "PNG", "heicsx", "json", "webm", "mkv", "pdf",
                                      "\0png", "\xff\xff\xff\xff", "averyverylongextension"})
            QTest::newRow(extension) << QByteArray(extension);
    }

    void otherExtensionsHaveNone() {
        QFETCH(QByteArray, extension);
        QVERIFY(!fileTypeOf(extension.toStdString()));
    }

    void aZeroByteIsNotPassedOver() { QVERIFY(!fileTypeOf(std::string_view("\0png", 4))); }

    void anExtensionIsWhatFollowsTheLastDot_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("extension");
        QTest::addColumn<QByteArray>("small");
        const auto row = [](const char* name, const char* extension, const char* small) {
            QTest::newRow(name) << QByteArray(name) << QByteArray(extension) << QByteArray(small);
        };
        row("", "", "");
        row("plain", "", "");
        row("a.PNG", "PNG", "png");
        row("a.tar.Gz", "Gz", "gz");
        row(".hidden", "", "");
        row(".hidden.png", "png", "png");
        row("dot.", "", "");
        row("a.\xc3\x84", "\xc3\x84", "\xc3\x84");
        row("a.sixteen-letters-", "sixteen-letters-", "sixteen-letters-");
        row("a.seventeen-letters", "seventeen-letters", "");
    }

    void anExtensionIsWhatFollowsTheLastDot() {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, extension);
        QFETCH(QByteArray, small);
        const std::string text = name.toStdString();
        QCOMPARE(extensionOf(text), std::string_view(extension.toStdString()));
        QCOMPARE(SmallExtension(text).view(), std::string_view(small.toStdString()));
    }

    void packagesAreToldByTheirName_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("package");
        for (const QByteArray& extension :
             QByteArray(
                 "app bundle framework plugin kext xpc appex prefpane rtfd photoslibrary fcpbundle imovielibrary "
                 "tvlibrary musiclibrary logicx band xcodeproj xcworkspace playground pages numbers key sketch")
                 .split(' '))
            QTest::newRow(extension.constData()) << "Name." + extension << true;
        for (const char* name : {"Photos.PhotosLibrary", "a.b.app"})
            QTest::newRow(name) << QByteArray(name) << true;
        for (const char* name :
             {"", "app", ".app", "app.", "apps.d", "my.application", "photoslibrary", "x.photoslibraryphotoslibrary"})
            QTest::newRow(qPrintable(QStringLiteral("\"%1\" is none").arg(QLatin1String(name))))
                << QByteArray(name) << false;
    }

    void packagesAreToldByTheirName() {
        QFETCH(QByteArray, name);
        QTEST(isPackage(name.toStdString()), "package");
    }
};

QTEST_GUILESS_MAIN(FileTypesTest)
#include "tst_filetypes.moc"

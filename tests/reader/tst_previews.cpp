// Pictures that lie in other files: the right one, the right way up, clear where it is clear.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "MadeFiles.h"
#include "PictureFiles.h"

#include <QtTest>

using namespace lumbra;

class tst_Previews : public QObject, private PictureFiles {
    Q_OBJECT

private Q_SLOTS:
    void aRawPhotographIsTurnedAsItSays_data() {
        QTest::addColumn<int>("orientation");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QColor>("upperLeft");
        QTest::newRow("upright") << 1 << QSize(240, 180) << QColor(Qt::red);
        QTest::newRow("held to the left") << 8 << QSize(180, 240) << QColor(Qt::green);
        QTest::newRow("held to the right") << 6 << QSize(180, 240) << QColor(Qt::blue);
    }

    void aRawPhotographIsTurnedAsItSays() {
        QFETCH(int, orientation);
        write("turned.dng", made::rawPhotograph(quarters({320, 240}), quint16(orientation)));
        const QImage image = thumbnail("turned.dng");
        QTEST(image.size(), "size");
        QFETCH(QColor, upperLeft);
        QVERIFY(isNear(at(image, 0.25, 0.25), upperLeft));
    }

    void aSceneOfEveryLayoutIsRead_data() {
        QTest::addColumn<int>("layout");
        QTest::newRow("pointers of eight bytes") << int(made::Blender::pointersOf8);
        QTest::newRow("pointers of four bytes") << int(made::Blender::pointersOf4);
        QTest::newRow("the other order of bytes") << int(made::Blender::bigEndian);
        QTest::newRow("the fifth version") << int(made::Blender::fifth);
    }

    void aSceneOfEveryLayoutIsRead() {
        QFETCH(int, layout);
        write("scene.blend", made::blend(quarters({128, 96}), made::Blender(layout)));
        QCOMPARE(thumbnail("scene.blend").size(), QSize(128, 96));
        QVERIFY(showsQuarters(thumbnail("scene.blend")));
    }

    void aPackedSceneIsRead_data() {
        QTest::addColumn<QByteArray>("program");
        QTest::newRow("gzip") << QByteArray("gzip");
        QTest::newRow("zstd") << QByteArray("zstd");
    }

    void aPackedSceneIsRead() {
        QFETCH(QByteArray, program);
        write("scene", made::blend(quarters({128, 96})));
        if (program == "gzip") {
            run("gzip", {"-f", "scene"});
            QFile::rename(path("scene.gz"), path("packed.blend"));
        } else {
            QFile::remove(path("packed.blend"));
            write("packed.blend", zstd(read("scene")));
        }
        QVERIFY(showsQuarters(thumbnail("packed.blend")));
    }

    void aSceneWithoutAPictureIsNothing() {
        write("bare.blend", "BLENDER-v306" + QByteArray(1000, '\0'));
        QVERIFY(thumbnail("bare.blend").isNull());
    }

    void aDocumentIsClearWhereItsPreviewIs() {
        QImage clear(200, 100, QImage::Format_ARGB32);
        clear.fill(Qt::transparent);
        QPainter(&clear).fillRect(0, 0, 100, 100, Qt::red);
        made::zip(path("clear.sketch"), "previews/preview.png", made::encoded(clear, "png"));
        const QImage image = thumbnail("clear.sketch");
        QVERIFY(isNear(at(image, 0.25, 0.5), Qt::red));
        QCOMPARE(at(image, 0.75, 0.5).alpha(), 0);
    }

    void theLargestPreviewOfADocumentIsTaken() {
        const auto jpeg = [](QSize size) { return made::encoded(quarters(size), "jpg"); };
        made::zip(path("both.pages"), {{"preview-micro.jpg", jpeg({40, 30})}, {"preview.jpg", jpeg({640, 480})}});
        QCOMPARE(thumbnail("both.pages").size(), QSize(240, 180));
    }

    void aDocumentWithoutAPreviewIsAPageOfItsWords_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("part");
        QTest::addColumn<QByteArray>("content");
        const QByteArray word = "<w:document xmlns:w='w'><w:body><w:p><w:pPr><w:pStyle w:val='Title'/></w:pPr><w:r>"
                                "<w:t>Annual report</w:t></w:r></w:p><w:p><w:r><w:t>It went well.</w:t></w:r></w:p>"
                                "</w:body></w:document>";
        QTest::newRow("a text") << QByteArray("words.docx") << QByteArray("word/document.xml") << word;
        QTest::newRow("an open text") << QByteArray("words.odt") << QByteArray("content.xml")
                                      << QByteArray("<o xmlns:text='t'><text:h>Annual report</text:h><text:p>It went "
                                                    "<text:span>well</text:span>.</text:p></o>");
        QTest::newRow("slides") << QByteArray("words.pptx") << QByteArray("ppt/slides/slide1.xml")
                                << QByteArray("<p:sld xmlns:p='p' xmlns:a='a'><a:p><a:r><a:t>Annual report</a:t></a:r>"
                                              "</a:p><a:p><a:r><a:t>It went well.</a:t></a:r></a:p></p:sld>");
        QTest::newRow("a sheet") << QByteArray("words.xlsx") << QByteArray("xl/worksheets/sheet1.xml")
                                 << QByteArray("<worksheet><sheetData><row><c r='A1' t='inlineStr'><is><t>Year</t></is>"
                                               "</c><c r='C1'><v>2020</v></c></row><row><c r='A2' t='s'><v>0</v></c>"
                                               "</row></sheetData></worksheet>");
        QTest::newRow("one that breaks off")
            << QByteArray("cut.docx") << QByteArray("word/document.xml") << word.left(word.size() - 30);
    }

    void aDocumentWithoutAPreviewIsAPageOfItsWords() {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, part);
        QFETCH(QByteArray, content);
        made::zip(path(name), {{part, content}, {"xl/sharedStrings.xml", "<sst><si><t>shared</t></si></sst>"}});
        const QImage image = thumbnail(name);
        QCOMPARE(image.size(), QSize(180, 240));
        int dark = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                dark += qGray(image.pixel(x, y)) < 160;
        }
        QVERIFY(dark > 40);
        QCOMPARE(at(image, 0.5, 0.9), QColor(Qt::white));
    }

    void theBlankPreviewOfATemplateIsPassedOver() {
        QImage blank(200, 280, QImage::Format_RGB32);
        blank.fill(Qt::white);
        const QByteArray words = "<x><p><t>Annual report</t></p></x>";
        made::zip(path("words.docx"), "word/document.xml", words);
        made::zip(path("blank.docx"),
                  {{"docProps/thumbnail.jpeg", made::encoded(blank, "jpg")}, {"word/document.xml", words}});
        QVERIFY(!thumbnail("blank.docx").isNull());
        QVERIFY(thumbnail("blank.docx") == thumbnail("words.docx"));
    }

    void aDocumentThatDeclaresTypesOrNothingIsNothing() {
        made::zip(path("types.docx"), "word/document.xml",
                  "<!DOCTYPE x [<!ENTITY a 'aaaaaaaaaa'>]><x><p><t>&a;</t></p></x>");
        QVERIFY(thumbnail("types.docx").isNull());
        made::zip(path("blank.docx"), "word/document.xml", "<x><p/></x>");
        QVERIFY(thumbnail("blank.docx").isNull());
        made::zip(path("bomb.docx"), "word/document.xml", "<x><p><t>" + QByteArray(32 << 20, 'a') + "</t></p></x>");
        QVERIFY(thumbnail("bomb.docx").isNull());
    }

    void anAnimationThatBeginsWithNothingIsShownWhereItIsNot() {
        QByteArray late = made::solidLayer("#ff0000", {0, 0, 40, 30});
        made::animation(path("late.lottie"), {late.replace("\"ip\":0", "\"ip\":10")});
        QVERIFY(isNear(at(thumbnail("late.lottie"), 0.5, 0.5), Qt::red));
    }

    void anAnimationTakesNoPicturesFromElsewhere() {
        const QByteArray picture = made::layer("\"ty\":2,\"refId\":\"p\"", {0, 0});
        const QByteArray folder = path("").toUtf8();
        for (const QByteArray& asset : {"\"u\":\"" + folder + "\",\"p\":\"quarters.png\",\"e\":0",
                                        "\"u\":\"\",\"p\":\"" + folder + "quarters.png\""}) {
            made::animation(path("outside.lottie"), {picture}, "{\"id\":\"p\",\"w\":40,\"h\":30," + asset + "}");
            QVERIFY(thumbnail("outside.lottie").isNull());
        }
    }

    void aPreviewOfNoUseIsPassedOver() {
        made::zip(path("metafile.docx"), "docProps/thumbnail.emf", "a metafile");
        QVERIFY(thumbnail("metafile.docx").isNull());
        made::zip(path("broken.docx"), "docProps/thumbnail.jpeg", "no picture");
        QVERIFY(thumbnail("broken.docx").isNull());
    }

    void photoshopsPicturesOfAllColoursAreRead_data() {
        QTest::addColumn<QByteArrayList>("options");
        QTest::newRow("as it is") << QByteArrayList{};
        QTest::newRow("unpacked") << QByteArrayList{"-compress", "None"};
        QTest::newRow("runs") << QByteArrayList{"-compress", "RLE"};
        QTest::newRow("16 bits") << QByteArrayList{"-depth", "16"};
        QTest::newRow("inks") << QByteArrayList{"-colorspace", "CMYK"};
    }

    void photoshopsPicturesOfAllColoursAreRead() {
        QFETCH(QByteArrayList, options);
        for (const char* name : {"colours.psd", "colours.psb"}) {
            run("convert", QByteArrayList{"quarters.png", "-type", "TrueColor"} + options + QByteArrayList{name});
            const QImage image = thumbnail(name);
            QCOMPARE(image.size(), QSize(240, 180));
            QVERIFY(showsQuarters(image));
        }
    }

    void aGreyPictureOfPhotoshopIsGrey() {
        run("convert", {"-size", "100x100", "xc:gray(50%)", "-colorspace", "Gray", "grey.psd"});
        QVERIFY(isNear(at(thumbnail("grey.psd"), 0.5, 0.5), QColor(128, 128, 128)));
    }

    void thePreviewOfDigitsIsRead() {
        QImage halves(64, 32, QImage::Format_RGB32);
        halves.fill(Qt::white);
        QPainter(&halves).fillRect(0, 0, 32, 16, Qt::black);
        write("digits.eps", made::postscriptOfDigits(halves));
        const QImage image = thumbnail("digits.eps");
        QCOMPARE(image.size(), QSize(64, 32));
        QCOMPARE(at(image, 0.25, 0.25), QColor(Qt::black));
        QCOMPARE(at(image, 0.75, 0.25), QColor(Qt::white));
        QCOMPARE(at(image, 0.25, 0.75), QColor(Qt::white));
    }

    void aProgramWithoutAPreviewIsNeverRun() {
        write("program.eps", "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 100 100\n0 0 100 100 rectfill showpage\n");
        QVERIFY(thumbnail("program.eps").isNull());
    }

    void lightIsReducedAsLight() {
        // Rows of black and white: half the light, which the screen shows as 188 and not as 128.
        run("convert", {"-size", "2x2", "xc:white", "-fill", "black", "-draw", "rectangle 0,0 1,0", "-write",
                        "mpr:tile", "+delete", "-size", "960x960", "tile:mpr:tile", "stripes.png"});
        run("ffmpeg", {"-i", "stripes.png", "stripes.exr"});
        QVERIFY(isNear(at(thumbnail("stripes.exr"), 0.5, 0.5), QColor(188, 188, 188), 6));
    }

    void theFirstFrameOfAnAnimationIsShown() {
        run("convert", {"-delay", "10", "-size", "40x40", "xc:red", "xc:blue", "moving.gif"});
        run("ffmpeg", {"-i", "moving.gif", "-c:v", "libwebp_anim", "-loop", "0", "moving.webp"});
        run("ffmpeg", {"-i", "moving.gif", "-f", "apng", "moving.apng"});
        for (const char* name : {"moving.gif", "moving.webp", "moving.apng"})
            QVERIFY2(isNear(at(thumbnail(name), 0.5, 0.5), Qt::red, 40), name);
    }

private:
    static QByteArray zstd(const QByteArray& bytes) {
        // One frame of raw blocks of at most 128 KiB, which any reader unpacks.
        constexpr qsizetype block = 100'000;
        QByteArray made("\x28\xb5\x2f\xfd\x80\x00", 6);
        made[4] = char(0x80); // the content's size in four bytes, with a window
        made[5] = char(0x50);
        made += made::little(quint32(bytes.size()));
        for (qsizetype from = 0; from < bytes.size(); from += block) {
            const QByteArray part = bytes.mid(from, block);
            const quint32 isLast = from + block >= bytes.size() ? 1 : 0;
            made += made::little(quint32(part.size()) << 3 | isLast).left(3) + part;
        }
        return made;
    }
};

QTEST_MAIN(tst_Previews)
#include "tst_previews.moc"

// Documents, music, scenes and texts that are broken, enormous or malicious: nothing or a picture, in bounded time.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "MadeFiles.h"
#include "PictureFiles.h"

#include <QElapsedTimer>
#include <QPdfWriter>
#include <QtTest>

using namespace lumbra;

namespace {

QByteArray gifOfFrames(int count) {
    const QByteArray palette("\xff\0\0\0\xff\0", 6);
    const QByteArray frame("\x21\xf9\4\0\1\0\0\0\x2c\0\0\0\0\2\0\2\0\0\2\2\x44\x52\0", 23);
    return QByteArray("GIF89a\2\0\2\0\x80\0\0", 13) + palette + frame.repeated(count) + ';';
}

QByteArray drawing(const QByteArray& inside) {
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='20' height='20'>"
           + inside + "</svg>";
}

QByteArray pdf(const QByteArray& objects, const QByteArray& trailer) {
    return "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj\n"
           "3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 200 100]>>endobj\n"
           + objects + "trailer<</Root 1 0 R" + trailer + ">>\n%%EOF\n";
}

} // namespace

class tst_BadPreviews : public QObject, private PictureFiles {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        const QImage picture = quarters({320, 240});
        const QByteArray jpeg = made::encoded(picture, "jpg");
        made::zip(path("a.docx"), "docProps/thumbnail.jpeg", jpeg);
        write("a.blend", made::blend(picture));
        write("a.dng", made::rawPhotograph(picture));
        write("a.eps", made::postscript(made::encoded(picture, "tiff")));
        write("digits.eps", made::postscriptOfDigits(picture));
        run("convert", {"quarters.png", "a.psd"});
        run("convert", {"quarters.png", "a.psb"});
        run("convert", {"quarters.png", "a.pcx"});
        run("ffmpeg", {"-i", "quarters.png", "a.exr"});
        run("ffmpeg", {"-i", "quarters.png", "a.qoi"});
        run("ffmpeg", {"-i", "quarters.png", "a.tga"});
        run("ffmpeg", {"-f", "lavfi", "-i", "sine=d=1", "plain.mp3"});
        run("convert", {"quarters.png", "a.hdr"});
        write("a.mp3", made::id3(jpeg, "image/jpeg") + read("plain.mp3"));
        write("a.rtf", "{\\rtf1 {\\b Dear} reader,\\par" + QByteArray(" this is a letter.\\par").repeated(30) + "}");
        write("a.md", QByteArray("# Title\n\nA paragraph.\n\n- item\n").repeated(40));
        write("a.csv", QByteArray("one,two,three\n").repeated(40));
        write("a.html", "<h1>Title</h1>" + QByteArray("<p>A paragraph</p>").repeated(40));
        write("a.srt", QByteArray("1\n00:00:01,000 --> 00:00:02,000\nText\n\n").repeated(40));
    }

    void cutFilesDoNoHarm_data() { rows(); }

    void cutFilesDoNoHarm() {
        QFETCH(QByteArray, name);
        QVERIFY(!thumbnail(name).isNull());
        const QByteArray whole = read(name);
        for (const double share : {0.01, 0.1, 0.5, 0.95}) {
            write("cut-" + name, whole.left(qsizetype(double(whole.size()) * share)));
            QVERIFY(fits(thumbnail("cut-" + name)));
        }
    }

    void scribbledFilesDoNoHarm_data() { rows(); }

    void scribbledFilesDoNoHarm() {
        QFETCH(QByteArray, name);
        const QByteArray whole = read(name);
        quint32 random = 1;
        for (int round = 0; round < 40; ++round) {
            QByteArray bytes = whole;
            for (int scribble = 0; scribble < 12; ++scribble) {
                random = random * 1664525 + 1013904223;
                // The headers are where lengths and counts are.
                const quint32 among = quint32(scribble % 2 ? std::min<qsizetype>(bytes.size(), 512) : bytes.size());
                bytes[qsizetype((random >> 8) % among)] = char(random >> 24);
            }
            write("bad-" + name, bytes);
            QVERIFY(fits(thumbnail("bad-" + name)));
        }
    }

    void theContentDecidesWhateverTheName_data() {
        QTest::addColumn<QByteArray>("made");
        QTest::addColumn<QByteArray>("called");
        const auto row = [](const char* made, const char* called) {
            QTest::addRow("%s called %s", made, called) << QByteArray(made) << QByteArray(called);
        };
        row("a.docx", "docx.pdf");
        row("a.blend", "blend.png");
        row("a.psd", "psd.jpg");
        row("a.eps", "eps.ai");
        row("a.mp3", "mp3.txt");
        row("quarters.png", "png.docx");
        row("quarters.png", "png.md");
        row("quarters.png", "png.mp3");
        row("quarters.png", "png.cr2");
    }

    void theContentDecidesWhateverTheName() {
        QFETCH(QByteArray, made);
        QFETCH(QByteArray, called);
        write(called, read(made));
        QVERIFY(showsQuarters(thumbnail(called)));
    }

    void aPreviewThatUnpacksToMoreThanItsBoundIsNothing() {
        made::zip(path("bomb.docx"), "docProps/thumbnail.jpeg", QByteArray(qsizetype(150) << 20, '\0'));
        QVERIFY(QFileInfo(path("bomb.docx")).size() < 1 << 20);
        QVERIFY(isQuick("bomb.docx"));
        QVERIFY(thumbnail("bomb.docx").isNull());
    }

    void aPreviewOfThousandsOfMillionsOfPixelsIsShrunkRowByRow() {
        const QByteArray bomb = made::blackPng({30000, 30000}, {30000, 30000});
        made::zip(path("large.odt"), "Thumbnails/thumbnail.png", bomb);
        write("large.mp3", made::id3(bomb) + read("plain.mp3"));
        QVERIFY(fits(thumbnail("large.odt")));
        QVERIFY(fits(thumbnail("large.mp3")));
    }

    void aCoverThatIsNoPictureIsNothing() {
        write("text.mp3", made::id3("this is no picture") + read("plain.mp3"));
        QVERIFY(thumbnail("text.mp3").isNull());
    }

    void aPackedDrawingThatUnpacksToAnythingIsNothing() {
        write("bomb.svg", drawing("<!--" + QByteArray(qsizetype(100) << 20, ' ') + "-->"));
        run("gzip", {"-f", "bomb.svg"});
        QFile::rename(path("bomb.svg.gz"), path("bomb.svgz"));
        QVERIFY(isQuick("bomb.svgz"));
        QVERIFY(thumbnail("bomb.svgz").isNull());
    }

    void entitiesOfEntitiesAreNothing() {
        QByteArray entities = "<!DOCTYPE svg [<!ENTITY a0 'xxxxxxxxxx'>";
        for (int i = 1; i < 12; ++i)
            entities += "<!ENTITY a" + QByteArray::number(i) + " '"
                        + ("&a" + QByteArray::number(i - 1) + ";").repeated(10) + "'>";
        write("laughs.svg", entities + "]>" + drawing("<text>&a11;</text>"));
        QVERIFY(isQuick("laughs.svg"));
        QVERIFY(thumbnail("laughs.svg").isNull());
    }

    void aDrawingThatHoldsItselfDoesNoHarm_data() {
        QTest::addColumn<QByteArray>("inside");
        QTest::newRow("a group uses itself") << QByteArray("<g id='a'><use xlink:href='#a'/></g>");
        QTest::newRow("two use each other")
            << QByteArray("<g id='a'><use xlink:href='#b'/></g><g id='b'><use xlink:href='#a'/></g>");
        QTest::newRow("in definitions") << QByteArray(
            "<defs><g id='a'><use xlink:href='#a'/></g></defs><use xlink:href='#a'/>");
        QTest::newRow("two in definitions")
            << QByteArray("<defs><g id='a'><use xlink:href='#b'/></g><g id='b'><use xlink:href='#a'/></g></defs><use "
                          "xlink:href='#a'/>");
        QTest::newRow("a use uses itself") << QByteArray("<use id='a' xlink:href='#a'/>");
        QTest::newRow("a gradient refers to itself")
            << QByteArray("<linearGradient id='a' xlink:href='#a'/><rect width='9' height='9' fill='url(#a)'/>");
        QByteArray nested = "<rect id='r0' width='1' height='1'/>";
        for (int i = 1; i < 12; ++i)
            nested += "<g id='r" + QByteArray::number(i) + "'>"
                      + ("<use xlink:href='#r" + QByteArray::number(i - 1) + "'/>").repeated(10) + "</g>";
        QTest::newRow("thousands of millions of uses") << nested;
    }

    void aDrawingThatHoldsItselfDoesNoHarm() {
        QFETCH(QByteArray, inside);
        write("self.svg", drawing(inside));
        QVERIFY(isQuick("self.svg"));
    }

    void aHundredThousandFramesAreOnePicture() {
        write("frames.gif", gifOfFrames(100'000));
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(thumbnail("frames.gif").size(), QSize(2, 2));
        QVERIFY(timer.elapsed() < 1000);
    }

    void aPdfWithAPasswordIsNothing() {
        write("secret.pdf", pdf("4 0 obj<</Filter/Standard/V 1/R 2/P -4/O<" + QByteArray("41").repeated(32) + ">/U<"
                                    + QByteArray("42").repeated(32) + ">>>endobj\n",
                                "/Encrypt 4 0 R/ID[<00><00>]"));
        QVERIFY(thumbnail("secret.pdf").isNull());
    }

    void aPdfOfAMillionObjectsTakesBoundedTime() {
        QByteArray objects;
        for (int i = 4; i < 1'000'000; ++i)
            objects += QByteArray::number(i) + " 0 obj null endobj\n";
        write("objects.pdf", pdf(objects, {}));
        QVERIFY(isQuick("objects.pdf"));
    }

    void textsWithoutAnEndAreDrawnQuickly_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("text");
        const QByteArray megabytes(16 << 20, 'x');
        QTest::newRow("one line") << QByteArray("line.txt") << megabytes;
        QTest::newRow("one word of markdown") << QByteArray("word.md") << megabytes;
        QTest::newRow("one field") << QByteArray("field.csv") << megabytes;
        QTest::newRow("an open quote") << QByteArray("quote.csv") << "\"" + megabytes;
        QTest::newRow("a million fields") << QByteArray("fields.csv") << QByteArray("a,").repeated(1'000'000);
        QTest::newRow("marks of markdown") << QByteArray("marks.md") << QByteArray("*_[`").repeated(1'000'000);
        QTest::newRow("links of markdown") << QByteArray("links.md") << QByteArray("[").repeated(1'000'000);
        QTest::newRow("tags") << QByteArray("tags.html") << QByteArray("<div>").repeated(1'000'000);
        QTest::newRow("open tags") << QByteArray("open.html") << QByteArray("<").repeated(1'000'000);
        QTest::newRow("open scripts") << QByteArray("scripts.html") << QByteArray("<script>").repeated(1'000'000);
        QTest::newRow("entities") << QByteArray("entities.html") << QByteArray("&amp;").repeated(1'000'000);
        QTest::newRow("groups") << QByteArray("groups.rtf") << "{\\rtf1" + QByteArray("{").repeated(1'000'000);
        QTest::newRow("tags of subtitles")
            << QByteArray("tags.srt") << "1\n00:01 --> 00:02\n" + QByteArray("<").repeated(1'000'000);
    }

    void textsWithoutAnEndAreDrawnQuickly() {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, text);
        write(name, text);
        QVERIFY(isQuick(name));
    }

    void whatIsNoTextIsNotDrawnAsOne() {
        for (const char* name : {"bytes.txt", "bytes.md", "bytes.csv", "bytes.html"}) {
            write(name, QByteArray("MZ\0\0\1\2", 6).repeated(100));
            QVERIFY(thumbnail(name).isNull());
        }
    }

    void aTextOfNothingButSpaceIsNothing() {
        write("space.txt", " \n\t\n  \n");
        QVERIFY(thumbnail("space.txt").isNull());
    }

private:
    static void rows() {
        QTest::addColumn<QByteArray>("name");
        for (const char* name :
             {"a.docx", "a.blend", "a.dng", "a.eps", "digits.eps", "a.psd", "a.psb", "a.pcx", "a.exr", "a.qoi", "a.tga",
              "a.hdr", "a.mp3", "a.rtf", "a.md", "a.csv", "a.html", "a.srt"})
            QTest::newRow(name) << QByteArray(name);
    }

    static bool fits(const QImage& image) { return image.width() <= box.width() && image.height() <= box.height(); }

    // Far below what a reader is given for one file, on a machine that does other things too.
    bool isQuick(const QByteArray& name) const {
        QElapsedTimer timer;
        timer.start();
        const QImage image = thumbnail(name);
        return fits(image) && timer.elapsed() < 6000;
    }
};

QTEST_MAIN(tst_BadPreviews)
#include "tst_badpreviews.moc"

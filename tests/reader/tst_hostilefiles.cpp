// Files that are made to exhaust whoever reads them, sent to a real reader behind its bars: each costs its own answer
// and no more time than it is given, and the process neither keeps what it took for them nor grows with the answers.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "MadeFiles.h"
#include "PictureFiles.h"
#include "platform/Reader.h"
#include "reader/Sandbox.h"
#include "support/ReaderProcesses.h"

#include <QElapsedTimer>
#include <QtTest>

using namespace lumbra;

namespace {

constexpr qint64 mebibyte = 1024 * 1024;

// Seconds that a reader is given for a file: less than people wait, so that the files that take all of it cost the test
// less.
constexpr double timeGiven = 4;

QImage resultOf(QFuture<QImage> future) {
    future.waitForFinished();
    return future.result();
}

QByteArray drawing(const QByteArray& inside) {
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='20' height='20'>"
           + inside + "</svg>";
}

QByteArray pictureIn(const QByteArray& type, const QByteArray& bytes) {
    return drawing("<image width='20' height='20' xlink:href='data:image/" + type + ";base64," + bytes.toBase64()
                   + "'/>");
}

// Each uses the one before ten times.
QByteArray usesOfUses() {
    QByteArray nested = "<defs><rect id='r0' width='1' height='1'/>";
    for (int i = 1; i < 12; ++i)
        nested += "<g id='r" + QByteArray::number(i) + "'>"
                  + ("<use xlink:href='#r" + QByteArray::number(i - 1) + "'/>").repeated(10) + "</g>";
    return drawing(nested + "</defs><use xlink:href='#r11'/>");
}

QByteArray entitiesOfEntities() {
    QByteArray entities = "<!DOCTYPE svg [<!ENTITY a0 'xxxxxxxxxx'>";
    for (int i = 1; i < 12; ++i)
        entities +=
            "<!ENTITY a" + QByteArray::number(i) + " '" + ("&a" + QByteArray::number(i - 1) + ";").repeated(10) + "'>";
    return entities + "]>" + drawing("<text>&a11;</text>");
}

QByteArray gif(int frames, quint16 width, quint16 height) {
    const QByteArray palette("\xff\0\0\0\xff\0", 6);
    const QByteArray frame("\x21\xf9\4\0\1\0\0\0\x2c\0\0\0\0\2\0\2\0\0\2\2\x44\x52\0", 23);
    return "GIF89a" + made::little(width) + made::little(height) + QByteArray("\x80\0\0", 3) + palette
           + frame.repeated(frames) + ';';
}

QByteArray pdf(const QByteArray& box, const QByteArray& objects) {
    return "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj\n"
           "3 0 obj<</Type/Page/Parent 2 0 R/MediaBox["
           + box + "]/Contents 4 0 R/Resources<</XObject<</P 5 0 R>>>>>>endobj\n" + objects
           + "trailer<</Root 1 0 R>>\n%%EOF\n";
}

QByteArray stream(int number, const QByteArray& facts, const QByteArray& bytes) {
    return QByteArray::number(number) + " 0 obj<<" + facts + "/Length " + QByteArray::number(bytes.size())
           + ">>stream\n" + bytes + "\nendstream endobj\n";
}

QByteArray pdfOfOnePicture(int side) {
    const QByteArray packed = qCompress(QByteArray(qsizetype(side / 8) * side, '\0')).mid(4);
    const QByteArray size = QByteArray::number(side);
    return pdf("0 0 200 200", stream(4, {}, "200 0 0 200 0 0 cm /P Do")
                                  + stream(5,
                                           "/Type/XObject/Subtype/Image/Width " + size + "/Height " + size
                                               + "/ColorSpace/DeviceGray/BitsPerComponent 1/Filter/FlateDecode",
                                           packed));
}

} // namespace

class tst_HostileFiles : public QObject, private PictureFiles {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (!reader::Sandbox::boundsMemory)
            QSKIP("sanitizers leave memory unbounded");
        run("ffmpeg", {"-f", "lavfi", "-i", "sine=d=1", "plain.mp3"});
        film("plain.mp4", "testsrc2=s=320x180:d=2:r=10");
    }

    void whatIsMadeToExhaustReadersCostsOneAnswer_data() {
        QTest::addColumn<QByteArray>("name");
        const auto row = [this](const char* label, const QByteArray& name, const QByteArray& bytes) {
            write(name, bytes);
            QTest::newRow(label) << name;
        };
        const QByteArray large = made::blackPng({30000, 30000}, {30000, 30000});
        row("a picture of 40,000 by 40,000", "huge.png", made::blackPng({40000, 40000}, {40000, 40000}));
        row("a picture that claims as much", "claims.png", made::blackPng({64, 64}, {40000, 40000}));
        row("a hundred thousand frames", "frames.gif", gif(100'000, 2, 2));
        row("frames on the largest canvas", "canvas.gif", gif(10, 65535, 65535));
        row("a drawing with a large picture in it", "picture.svg", pictureIn("png", large));
        row("a drawing in a drawing in a drawing", "drawings.svg",
            pictureIn("svg+xml", pictureIn("svg+xml", usesOfUses())));
        row("thousands of millions of uses", "uses.svg", usesOfUses());
        row("entities of entities", "entities.svg", entitiesOfEntities());
        row("a drawing of 2,000 million pixels a side", "size.svg",
            "<svg xmlns='http://www.w3.org/2000/svg' width='2000000000' height='2000000000'>"
            "<rect width='2000000000' height='2000000000'/></svg>");
        row("a page with a large picture", "picture.pdf", pdfOfOnePicture(30000));
        row("a page as large as a country", "page.pdf",
            pdf("0 0 2000000000 2000000000", stream(4, {}, "0 0 1 1 re f")));
        row("a page of a million strokes", "strokes.pdf",
            pdf("0 0 200 100", stream(4, {}, QByteArray("0 0 m 200 100 l S\n").repeated(1'000'000))));
        row("music with a large cover", "cover.mp3", made::id3(large) + read("plain.mp3"));
        row("a film that claims 60,000 by 60,000", "claims.mp4", filmClaiming(60000, 60000));
        made::zip(path("preview.odt"), "Thumbnails/thumbnail.png", large);
        QTest::newRow("a document with a large preview") << QByteArray("preview.odt");
        made::zip(path("packed.docx"), "docProps/thumbnail.jpeg", QByteArray(qsizetype(200) << 20, '\0'));
        QTest::newRow("a preview that unpacks to much") << QByteArray("packed.docx");
        made::zip(path("words.docx"), "word/document.xml", "<x>" + QByteArray("<p><t>a</t></p>").repeated(15'000'000));
        QTest::newRow("a text that unpacks to much") << QByteArray("words.docx");
        made::zip(path("deep.docx"), "word/document.xml", QByteArray("<p>").repeated(4'000'000));
        QTest::newRow("a text that is nested deeply") << QByteArray("deep.docx");
        made::animation(path("self.lottie"), {made::layer("\"ty\":0,\"refId\":\"a\",\"w\":40,\"h\":30", {0, 0})},
                        "{\"id\":\"a\",\"layers\":[" + made::layer("\"ty\":0,\"refId\":\"a\",\"w\":40,\"h\":30", {0, 0})
                            + "]}");
        QTest::newRow("an animation that holds itself") << QByteArray("self.lottie");
        made::Entries entries;
        for (int i = 0; i < 60'000; ++i)
            entries.emplace_back("entry" + QByteArray::number(i), QByteArray());
        made::zip(path("entries.docx"), entries);
        QTest::newRow("an archive of many entries") << QByteArray("entries.docx");
    }

    void whatIsMadeToExhaustReadersCostsOneAnswer() {
        QFETCH(QByteArray, name);
        const auto before = childProcesses();
        Reader reader({.children = 1, .limit = timeGiven});
        const Location harmless(path("quarters.png"));
        QCOMPARE(resultOf(reader.thumbnail(harmless, box)).size(), QSize(240, 180)); // its start is not counted
        QElapsedTimer timer;
        timer.start();
        const QImage image = resultOf(reader.thumbnail(Location(path(name)), box));
        QVERIFY2(timer.elapsed() < qint64(1000 * timeGiven) + 2000, qPrintable(QString::number(timer.elapsed())));
        QVERIFY(image.width() <= box.width() && image.height() <= box.height());
        QCOMPARE(resultOf(reader.thumbnail(harmless, box)).size(), QSize(240, 180));
        QVERIFY(reader.startedCount() <= 2);
        for (const pid_t process : childProcesses())
            if (!before.contains(process))
                QVERIFY2(ownMemory(process) < 200 * mebibyte, qPrintable(QString::number(ownMemory(process))));
    }

    void aReaderDoesNotGrowWithItsAnswers() {
        make("a.jpg");
        make("a.webp");
        write("a.svg", drawing("<rect width='9' height='9'/>"));
        write("a.md", "# Title\n\nWords\n");
        write("a.pdf", pdfOfOnePicture(64));
        write("bad.png", read("quarters.png").left(300));
        const auto before = childProcesses();
        Reader reader({.children = 1});
        const auto round = [&] {
            for (const char* name :
                 {"quarters.png", "a.jpg", "a.webp", "a.svg", "a.md", "a.pdf", "plain.mp4", "bad.png"})
                resultOf(reader.thumbnail(Location(path(name)), box));
        };
        const auto memory = [&before] {
            qint64 sum = 0;
            for (const pid_t process : childProcesses())
                sum += before.contains(process) ? 0 : ownMemory(process);
            return sum;
        };
        for (int i = 0; i < 10; ++i)
            round();
        const qint64 settled = memory();
        QVERIFY(settled > 0);
        for (int i = 0; i < 60; ++i)
            round();
        QCOMPARE(reader.startedCount(), size_t(1));
        QVERIFY2(memory() - settled < 8 * mebibyte,
                 qPrintable(QStringLiteral("%1, then %2").arg(settled).arg(memory())));
    }

private:
    // In the container; the stream itself tells the truth.
    QByteArray filmClaiming(quint16 width, quint16 height) const {
        QByteArray film = read("plain.mp4");
        const qsizetype entry = film.lastIndexOf("avc1"); // the first one is among the brands
        if (entry < 0)
            qFatal("there is no picture's entry");
        constexpr qsizetype sizeAt = 28; // behind the entry's name
        film.replace(entry + sizeAt, 4, made::big(width) + made::big(height));
        return film;
    }
};

QTEST_MAIN(tst_HostileFiles)
#include "tst_hostilefiles.moc"

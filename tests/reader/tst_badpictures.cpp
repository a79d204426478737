// Pictures that are broken, enormous, or not what they say: they read as nothing or as what is there, in bounded time.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "MadeFiles.h"
#include "PictureFiles.h"

#include <QPdfWriter>
#include <QtEndian>
#include <QtTest>

#include <thread>

using namespace lumbra;

class tst_BadPictures : public QObject, private PictureFiles {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        makeModernFormats();
        QPdfWriter page(path("a.pdf"));
        QPainter(&page).drawText(500, 500, QStringLiteral("Paper"));
        write("a.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='15'>"
                       "<rect width='10' height='10' fill='red'/></svg>");
    }

    void truncatedFilesDoNoHarm_data() { formatRows(); }

    void truncatedFilesDoNoHarm() {
        QFETCH(QByteArray, name);
        make(name);
        const QSize size = thumbnail(name).size();
        QVERIFY(!size.isEmpty());
        const QByteArray whole = read(name);
        const QByteArray cut = "cut-" + name;
        for (const double share : {0.02, 0.3, 0.9}) {
            write(cut, whole.left(qsizetype(double(whole.size()) * share)));
            const QImage image = thumbnail(cut);
            QVERIFY(image.isNull() || image.size() == size);
        }
    }

    void scribbledFilesDoNoHarm_data() { formatRows(); }

    void scribbledFilesDoNoHarm() {
        QFETCH(QByteArray, name);
        make(name);
        QByteArray bytes = read(name);
        quint32 seed = 1;
        for (qsizetype i = 40; i < bytes.size(); i += 37) {
            seed = seed * 1664525 + 1013904223;
            bytes[i] = char(seed >> 24);
        }
        write("bad-" + name, bytes);
        const QImage image = thumbnail("bad-" + name);
        QVERIFY(image.width() <= box.width() && image.height() <= box.height());
    }

    void theContentDecidesWhateverTheName_data() {
        QTest::addColumn<QByteArray>("made");
        QTest::addColumn<QByteArray>("called");
        const auto row = [](const char* made, const char* called) {
            QTest::addRow("%s called %s", made, called) << QByteArray(made) << QByteArray(called);
        };
        row("a.jpg", "jpeg.png");
        row("a.png", "png.jpg");
        row("a.webp", "webp.gif");
        row("a.heic", "heic.jpg");
        row("a.gif", "gif.mp4");
        row("a.mp4", "film.png");
        row("a.webm", "film.mp4");
        row("a.png", "png.pdf");
        row("a.png", "png.svg");
    }

    void theContentDecidesWhateverTheName() {
        QFETCH(QByteArray, made);
        QFETCH(QByteArray, called);
        make(made);
        write(called, read(made));
        QVERIFY(showsQuarters(thumbnail(called)));
    }

    void textUnderThePicturesNamesIsNothing_data() { formatRows(); }

    void textUnderThePicturesNamesIsNothing() {
        QFETCH(QByteArray, name);
        write("text-" + name, QByteArray("Dear reader, this is no picture.\n").repeated(200));
        QVERIFY(thumbnail("text-" + name).isNull());
    }

    void whatWasCompletedSinceItWasOpenedIsWhole() {
        make("a.jpg");
        const QByteArray whole = read("a.jpg");
        write("completed.jpg", whole.left(whole.size() / 2));
        const auto file = reader::OpenedFile::open(path("completed.jpg").toUtf8());
        QVERIFY(file);
        append("completed.jpg", whole.mid(whole.size() / 2));
        QCOMPARE(reader::Pictures::thumbnail(*file, box, limit).size(), QSize(240, 180));
    }

    void aFileThatGrowsWhileItIsReadDoesNoHarm_data() { formatRows(); }

    void aFileThatGrowsWhileItIsReadDoesNoHarm() {
        QFETCH(QByteArray, name);
        make(name);
        const QSize size = thumbnail(name).size();
        const QByteArray whole = read(name), growing = "growing-" + name;
        write(growing, whole.left(1));
        std::jthread writer([&] {
            const qsizetype step = whole.size() / 50 + 1;
            for (qsizetype from = 1; from < whole.size(); from += step) {
                append(growing, whole.mid(from, step));
                std::this_thread::yield();
            }
        });
        for (int reading = 0; reading < 20; ++reading) {
            const QImage image = thumbnail(growing);
            QVERIFY(image.isNull() || image.size() == size);
        }
        writer.join();
        QCOMPARE(thumbnail(growing).size(), size);
    }

    void aFileThatShrinksWhileItIsReadDoesNoHarm() {
        make("a.jpg");
        const QByteArray whole = read("a.jpg");
        write("shrinking.jpg", whole);
        const auto file = reader::OpenedFile::open(path("shrinking.jpg").toUtf8());
        QVERIFY(file);
        QVERIFY(QFile::resize(path("shrinking.jpg"), whole.size() / 2));
        const QImage image = reader::Pictures::thumbnail(*file, box, limit);
        QVERIFY(image.isNull() || image.size() == QSize(240, 180));
    }

    void anEnormousPictureIsShrunkRowByRow() {
        write("wide.png", made::blackPng({30000, 10000}, {30000, 10000}));
        QCOMPARE(thumbnail("wide.png").size(), QSize(240, 80));
    }

    // 1.6 thousand million pixels, which are shrunk row by row and never unpacked as a whole.
    void fortyThousandByFortyThousandIsRead() {
        write("huge.png", made::blackPng({40000, 40000}, {40000, 40000}));
        QCOMPARE(thumbnail("huge.png").size(), box);
    }

    void whatOnlyClaimsFortyThousandByFortyThousandIsNothingOrFits_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("bytes");
        make("a.jpg");
        QTest::newRow("png") << QByteArray("claims.png") << made::blackPng({64, 64}, {40000, 40000});
        QTest::newRow("jpeg") << QByteArray("claims.jpg") << jpegClaiming(40000, 40000);
        QTest::newRow("bmp") << QByteArray("claims.bmp") << bmpClaiming(40000, 40000);
        QTest::newRow("gif") << QByteArray("claims.gif") << gifClaiming(40000, 40000);
    }

    void whatOnlyClaimsFortyThousandByFortyThousandIsNothingOrFits() {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, bytes);
        write(name, bytes);
        const QImage image = thumbnail(name); // of a GIF, what its frames really are
        QVERIFY(image.width() <= box.width() && image.height() <= box.height());
    }

    void whatClaimsToBeLargerThanThatIsNothing_data() {
        QTest::addColumn<QSize>("size");
        QTest::newRow("wide") << QSize(40001, 1);
        QTest::newRow("tall") << QSize(1, 40001);
        QTest::newRow("as large as a header can say") << QSize(0x7fffffff, 0x7fffffff);
    }

    void whatClaimsToBeLargerThanThatIsNothing() {
        QFETCH(QSize, size);
        write("claims.png", made::blackPng({64, 64}, size));
        QVERIFY(thumbnail("claims.png").isNull());
    }

private:
    // A whole file of each.
    static void formatRows() {
        QTest::addColumn<QByteArray>("name");
        for (const char* name : {"a.png", "a.jpg", "a.gif", "a.bmp", "a.tiff", "a.webp", "a.heic", "a.avif", "a.jxl",
                                 "a.jp2", "a.svg", "a.pdf", "a.mp4", "a.webm"})
            QTest::newRow(name) << QByteArray(name);
    }

    void append(const QByteArray& name, const QByteArray& bytes) const {
        QFile file(path(name));
        if (!file.open(QIODevice::Append) || file.write(bytes) != bytes.size())
            qFatal("cannot write to %s", name.constData());
    }

    // The header of a whole picture with another size in it.
    QByteArray jpegClaiming(quint16 width, quint16 height) const {
        QByteArray bytes = read("a.jpg");
        const qsizetype frame = bytes.indexOf(QByteArray("\xff\xc0", 2)); // of a baseline picture
        if (frame < 0)
            qFatal("there is no frame");
        qToBigEndian(height, bytes.data() + frame + 5);
        qToBigEndian(width, bytes.data() + frame + 7);
        return bytes;
    }

    QByteArray bmpClaiming(qint32 width, qint32 height) const {
        make("a.bmp");
        QByteArray bytes = read("a.bmp");
        qToLittleEndian(width, bytes.data() + 18);
        qToLittleEndian(height, bytes.data() + 22);
        return bytes;
    }

    QByteArray gifClaiming(quint16 width, quint16 height) const {
        make("a.gif");
        QByteArray bytes = read("a.gif");
        qToLittleEndian(width, bytes.data() + 6);
        qToLittleEndian(height, bytes.data() + 8);
        return bytes;
    }
};

QTEST_MAIN(tst_BadPictures)
#include "tst_badpictures.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "reader/OpenedFile.h"
#include "reader/Pictures.h"
#include "support/TestHome.h"

#include <QColorSpace>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>
#include <QtEndian>
#include <QtTest>

#include <vips/vips.h>

using namespace lumbra;

namespace {

constexpr QSize box(240, 240);
constexpr std::chrono::seconds limit(8);

bool isNear(const QColor& a, const QColor& b, int tolerance = 24) {
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance
           && std::abs(a.blue() - b.blue()) <= tolerance && std::abs(a.alpha() - b.alpha()) <= tolerance;
}

// Red, green, blue and white quarters, from the upper left in reading order.
QImage quarters(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    const int w = size.width() / 2, h = size.height() / 2;
    painter.fillRect(0, 0, w, h, Qt::red);
    painter.fillRect(w, 0, size.width() - w, h, Qt::green);
    painter.fillRect(0, h, w, size.height() - h, Qt::blue);
    painter.fillRect(w, h, size.width() - w, size.height() - h, Qt::white);
    return image;
}

QColor at(const QImage& image, double x, double y) {
    return image.pixelColor(int(image.width() * x), int(image.height() * y));
}

bool showsQuarters(const QImage& image) {
    return isNear(at(image, 0.25, 0.25), Qt::red) && isNear(at(image, 0.75, 0.25), Qt::green)
           && isNear(at(image, 0.25, 0.75), Qt::blue) && isNear(at(image, 0.75, 0.75), Qt::white);
}

quint32 checksum(const QByteArray& bytes) {
    quint32 sum = 0xffffffff;
    for (const char byte : bytes) {
        sum ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ (sum & 1 ? 0xedb88320 : 0);
    }
    return ~sum;
}

QByteArray bigEndian(quint32 number) {
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

QByteArray chunk(const QByteArray& type, const QByteArray& data) {
    return bigEndian(quint32(data.size())) + type + data + bigEndian(checksum(type + data));
}

// A black picture of one bit a pixel, small on disk however large it is; its header may claim another size.
QByteArray blackPng(QSize size, QSize claimed) {
    const QByteArray rows(((size.width() + 7) / 8 + 1) * qsizetype(size.height()), '\0');
    const QByteArray packed = qCompress(rows).mid(4); // without the length, which is Qt's own
    const QByteArray depthAndColour("\1\0\0\0\0", 5);
    return "\x89PNG\r\n\x1a\n"
           + chunk("IHDR", bigEndian(quint32(claimed.width())) + bigEndian(quint32(claimed.height())) + depthAndColour)
           + chunk("IDAT", packed) + chunk("IEND", {});
}

} // namespace

class tst_Pictures : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        reader::Pictures::warmUp();
        QVERIFY(quarters({640, 480}).save(path("quarters.png")));
        QImage clear({400, 200}, QImage::Format_ARGB32);
        clear.fill(Qt::transparent);
        QPainter(&clear).fillRect(0, 0, 200, 200, QColor(255, 0, 0, 128));
        QVERIFY(clear.save(path("clear.png")));
        // Made now: once it reads, the reader forbids libvips some of this.
        for (const char* name : {"a.heic", "a.avif", "a.jxl", "a.jp2"})
            convertByVips("quarters.png", name);
        for (const char* name : {"clear.webp", "clear.avif", "clear.tiff"})
            convertByVips("clear.png", name);
        for (const char* name : {"turned.webp", "turned.tiff"})
            convertByVips("quarters.png", name, 6);
    }

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

    void aFilmIsShownAfterATenth() {
        film("tenth.mp4", "color=red:s=640x360:d=0.5:r=20[a];color=blue:s=640x360:d=9.5:r=20[b];[a][b]concat");
        QVERIFY(isNear(thumbnail("tenth.mp4").pixelColor(100, 60), Qt::blue, 40));
    }

    void aFilmThatBeginsBlackIsShownWhereItIsNot() {
        film("fade.mp4", "color=black:s=640x360:d=3:r=20[a];color=red:s=640x360:d=7:r=20[b];[a][b]concat");
        QVERIFY(isNear(thumbnail("fade.mp4").pixelColor(100, 60), Qt::red, 40));
    }

    void aFilmOfNothingButBlackIsBlack() {
        film("night.mp4", "color=black:s=640x360:d=2:r=20");
        const QImage image = thumbnail("night.mp4");
        QCOMPARE(image.size(), QSize(240, 135));
        QVERIFY(isNear(image.pixelColor(100, 60), Qt::black));
    }

    void aFilmOfOnePictureIsThatPicture() {
        film("still.mp4", "color=red:s=640x360:d=0.05:r=20");
        QVERIFY(isNear(thumbnail("still.mp4").pixelColor(100, 60), Qt::red, 40));
    }

    void aTurnedFilmIsUpright() {
        make("a.mp4");
        run("ffmpeg", {"-i", "a.mp4", "-c", "copy", "-metadata:s:v", "rotate=90", "turned.mp4"});
        const QImage image = thumbnail("turned.mp4");
        QCOMPARE(image.size(), QSize(180, 240));
        // As players show it: the upper right quarter has come to the upper left.
        QVERIFY(isNear(at(image, 0.25, 0.25), Qt::green, 40));
        QVERIFY(isNear(at(image, 0.75, 0.25), Qt::white, 40));
    }

    void aStretchedFilmHasItsShownProportions() {
        film("stretched.mp4", "color=red:s=320x360:d=1:r=20,setsar=2");
        QCOMPARE(thumbnail("stretched.mp4").size(), QSize(240, 135));
    }

    void soundAloneIsNothing() {
        run("ffmpeg", {"-f", "lavfi", "-i", "sine=d=1", "sound.m4a"});
        QVERIFY(thumbnail("sound.m4a").isNull());
    }

    // A list of files is no container: it would make the reader open what it names.
    void aListOfFilesIsNothing() {
        make("a.mp4");
        write("list.mp4", "#EXTM3U\n#EXTINF:1,\n" + path("a.mp4").toUtf8() + '\n');
        QVERIFY(thumbnail("list.mp4").isNull());
        write("list.mpg", "ffconcat version 1.0\nfile '" + path("a.mp4").toUtf8() + "'\n");
        QVERIFY(thumbnail("list.mpg").isNull());
    }

    void truncatedFilesDoNoHarm_data() {
        QTest::addColumn<QByteArray>("name");
        for (const char* name : {"a.png", "a.jpg", "a.gif", "a.tiff", "a.webp", "a.heic", "a.jxl", "a.mp4", "a.webm"})
            QTest::newRow(name) << QByteArray(name);
    }

    void truncatedFilesDoNoHarm() {
        QFETCH(QByteArray, name);
        make(name);
        const QByteArray whole = read(name);
        const QByteArray cut = "cut-" + name;
        for (const double share : {0.02, 0.3, 0.9}) {
            write(cut, whole.left(qsizetype(double(whole.size()) * share)));
            const QImage image = thumbnail(cut);
            QVERIFY(image.isNull() || image.size() == QSize(240, 180));
        }
    }

    void scribbledFilesDoNoHarm_data() { truncatedFilesDoNoHarm_data(); }

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

    void theContentDecidesWhateverTheName() {
        make("a.jpg");
        write("really-a-jpeg.png", read("a.jpg"));
        QVERIFY(showsQuarters(thumbnail("really-a-jpeg.png")));
        write("really-a-text.png", "hello");
        QVERIFY(thumbnail("really-a-text.png").isNull());
    }

    void whatGrowsIsReadAsFarAsItIs() {
        make("a.jpg");
        const QByteArray whole = read("a.jpg");
        write("growing.jpg", whole.left(whole.size() / 2));
        const auto file = reader::OpenedFile::open(path("growing.jpg").toUtf8());
        QVERIFY(file);
        QFile more(path("growing.jpg"));
        QVERIFY(more.open(QIODevice::Append));
        more.write(whole.mid(whole.size() / 2));
        more.close();
        QCOMPARE(reader::Pictures::thumbnail(*file, box, limit).size(), QSize(240, 180));
    }

    void anEnormousPictureIsShrunkRowByRow() {
        write("wide.png", blackPng({30000, 10000}, {30000, 10000}));
        QCOMPARE(thumbnail("wide.png").size(), QSize(240, 80));
    }

    void whatClaimsToBeLargerThanThatIsNothing_data() {
        QTest::addColumn<QSize>("size");
        QTest::newRow("wide") << QSize(40001, 1);
        QTest::newRow("tall") << QSize(1, 40001);
        QTest::newRow("as large as a header can say") << QSize(0x7fffffff, 0x7fffffff);
    }

    void whatClaimsToBeLargerThanThatIsNothing() {
        QFETCH(QSize, size);
        write("claims.png", blackPng({64, 64}, size));
        QVERIFY(thumbnail("claims.png").isNull());
    }

    void otherKindsAreNothing_data() {
        QTest::addColumn<QByteArray>("name");
        for (const char* name : {"notes.md", "table.csv", "page.html", "sound.wav", "archive.zip"})
            QTest::newRow(name) << QByteArray(name);
    }

    void otherKindsAreNothing() {
        QFETCH(QByteArray, name);
        write(name, "some text, which is no picture");
        QVERIFY(thumbnail(name).isNull());
    }

private:
    QString path(const QByteArray& name) const { return m_home.path().child(name.toStdString()).toString(); }

    QByteArray read(const QByteArray& name) const {
        QFile file(path(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("cannot read %s", name.constData());
        return file.readAll();
    }

    void write(const QByteArray& name, const QByteArray& bytes) const { m_home.file(name.toStdString(), bytes); }

    // A picture, or a film of two seconds, of the four quarters.
    void make(const QByteArray& name) const {
        static const QByteArrayList films{"mp4", "webm", "mov", "mkv", "avi", "ts"};
        if (QFile::exists(path(name)))
            return;
        if (films.contains(name.split('.').last()))
            run("ffmpeg", {"-loop", "1", "-t", "2", "-r", "10", "-i", "quarters.png", "-pix_fmt", "yuv420p", name});
        else
            run("convert", {"quarters.png", "-quality", "95", name});
    }

    void convertByVips(const QByteArray& from, const QByteArray& to, int orientation = 1) const {
        vips_init("tst_pictures");
        VipsImage* const image =
            vips_image_new_from_file(path(from).toUtf8().constData(), "access", VIPS_ACCESS_SEQUENTIAL, nullptr);
        if (image)
            vips_image_set_int(image, VIPS_META_ORIENTATION, orientation);
        if (!image || vips_image_write_to_file(image, path(to + "[Q=90]").toUtf8().constData(), nullptr) != 0)
            qFatal("%s: %s", to.constData(), vips_error_buffer());
        g_object_unref(image);
    }

    void film(const QByteArray& name, const QByteArray& graph) const {
        run("ffmpeg", {"-filter_complex", graph, "-pix_fmt", "yuv420p", name});
    }

    // In the home, where the names are.
    void run(const QByteArray& program, QByteArrayList arguments) const {
        if (program == "ffmpeg")
            arguments = QByteArrayList{"-v", "error", "-y"} + arguments;
        QStringList texts;
        for (const QByteArray& argument : arguments)
            texts.append(QString::fromUtf8(argument));
        QProcess process;
        process.setWorkingDirectory(m_home.path().toString());
        process.start(QString::fromUtf8(program), texts);
        if (!process.waitForFinished(60'000) || process.exitCode() != 0)
            qFatal("%s: %s", program.constData(), process.readAllStandardError().constData());
    }

    QImage thumbnail(const QByteArray& name) const {
        const auto file = reader::OpenedFile::open(path(name).toUtf8());
        return file ? reader::Pictures::thumbnail(*file, box, limit) : QImage();
    }

    TestHome m_home;
};

QTEST_MAIN(tst_Pictures)
#include "tst_pictures.moc"

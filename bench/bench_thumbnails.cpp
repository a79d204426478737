// Thumbnails a second at 240 pixels through the reader processes, beside Qt's scaled reader and libvips called directly
// with as many threads, one line for each format; how like a full Lanczos reduction ours are; what the readers'
// protocol costs; and how long a screen full of all of them takes.
//
// bench_thumbnails FOLDER [NAME]: makes its pictures there once; measures all, or the one picture, "protocol" or
// "screen".
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Measure.h"
#include "platform/Reader.h"
#include "reader/OpenedFile.h"
#include "reader/Pictures.h"

#include <QColorSpace>
#include <QFile>
#include <QGuiApplication>
#include <QImageReader>
#include <QPainter>
#include <QPdfDocument>
#include <QPdfWriter>
#include <QProcess>
#include <QStandardPaths>

#include <vips/vips.h>

#include <array>
#include <atomic>
#include <filesystem>
#include <thread>

using namespace lumbra;

namespace {

constexpr int side = 240;
constexpr int threads = 2;
constexpr int rounds = 5;

struct Sample {
    const char* name;
    int pictures; // a round, so that a round is a second or so
};

constexpr Sample samples[] = {
    {"photo48.jpg", 12},  {"photo12.jpg", 40}, {"photo2.jpg", 100},   {"photo2.png", 24},
    {"screen.png", 60},   {"photo2.webp", 30}, {"photo2.heic", 12},   {"photo2.avif", 12},
    {"drawing.svg", 100}, {"page.pdf", 60},    {"film1080p.mp4", 16},
};

void command(const QString& program, const QStringList& arguments, const QString& folder) {
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    if (!process.waitForFinished(120'000) || process.exitCode() != 0)
        qFatal("%s: %s", qPrintable(program), process.readAllStandardError().constData());
}

QStringList words(const char* text) {
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

void makePage(const QString& file) {
    QPdfWriter writer(file);
    QPainter painter(&writer);
    painter.setFont(QFont(QStringLiteral("Inter"), 11));
    for (int line = 0; line < 50; ++line)
        painter.drawText(QPointF(200, 300 + line * 250), QStringLiteral("Line %1 of a page full of words").arg(line));
}

// A diagram: frames, lines and words, as programs draw them.
void makeDrawing(const QString& path) {
    QByteArray text = "<svg xmlns='http://www.w3.org/2000/svg' width='800' height='600'><rect width='800' height='600' "
                      "fill='#fff'/>";
    for (int i = 0; i < 60; ++i) {
        const QByteArray x = QByteArray::number(i % 10 * 78 + 12), y = QByteArray::number(i / 10 * 95 + 20);
        text += "<g transform='translate(" + x + ' ' + y
                + ")'><rect width='60' height='40' rx='6' fill='#cde' stroke='#456'/><path d='M30 40 C 40 60 70 60 78 "
                  "20' fill='none' stroke='#456'/><text x='8' y='24' font-size='11'>Step "
                + QByteArray::number(i) + "</text></g>";
    }
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(text + "</svg>");
}

// By libvips, which alone writes these here.
void convert(const QString& from, const QString& to) {
    VipsImage* const image = vips_image_new_from_file(from.toUtf8().constData(), nullptr);
    if (!image || vips_image_write_to_file(image, (to + QStringLiteral("[Q=60]")).toUtf8().constData(), nullptr) != 0)
        qFatal("%s: %s", qPrintable(to), vips_error_buffer());
    g_object_unref(image);
}

void make(const QString& folder) {
    std::filesystem::create_directories(folder.toStdString());
    if (QFile::exists(folder + QStringLiteral("/made-2")))
        return;
    const QString magick = QStringLiteral("convert"), ffmpeg = QStringLiteral("ffmpeg");
    command(magick,
            words("-seed 7 -size 4000x3000 plasma:fractal -attenuate 0.4 +noise Gaussian -quality 88 photo12.jpg"),
            folder);
    for (const char* small : {"photo2.jpg", "photo2.png", "photo2.webp"})
        command(magick, words("photo12.jpg -resize 1600x1200 -quality 85") + QStringList{QString::fromUtf8(small)},
                folder);
    command(magick, words("photo12.jpg -resize 8000x6000 -quality 88 photo48.jpg"), folder);
    for (const char* modern : {"/photo2.heic", "/photo2.avif"})
        convert(folder + QStringLiteral("/photo2.jpg"), folder + QString::fromUtf8(modern));
    makeDrawing(folder + QStringLiteral("/drawing.svg"));
    makePage(folder + QStringLiteral("/page.pdf"));
    QPdfDocument page;
    page.load(folder + QStringLiteral("/page.pdf"));
    page.render(0, QSize(1240, 1754))
        .convertToFormat(QImage::Format_RGB32)
        .save(folder + QStringLiteral("/screen.png"));
    command(
        ffmpeg,
        words(
            "-v error -y -f lavfi -i testsrc2=s=1920x1080:d=20:r=30 -vf noise=alls=12 -pix_fmt yuv420p film1080p.mp4"),
        folder);
    QFile(folder + QStringLiteral("/made-2")).open(QIODevice::WriteOnly);
}

QImage byQt(const QString& file) {
    if (file.endsWith(QLatin1String(".pdf"))) {
        QPdfDocument document;
        document.load(file);
        return document.render(0, document.pagePointSize(0).scaled(side, side, Qt::KeepAspectRatio).toSize());
    }
    QImageReader reader(file);
    reader.setScaledSize(reader.size().scaled(side, side, Qt::KeepAspectRatio));
    return reader.read();
}

bool byVips(const QString& file) {
    VipsImage* made = nullptr;
    if (vips_thumbnail(file.toUtf8().constData(), &made, side, "height", side, nullptr) != 0)
        return false;
    size_t size = 0;
    g_free(vips_image_write_to_memory(made, &size));
    g_object_unref(made);
    return true;
}

// A peer for films: one process a picture, as it is used.
void byThumbnailer(const QString& file, const QString& folder) {
    QProcess process;
    process.start(QStringLiteral("ffmpegthumbnailer"),
                  {QStringLiteral("-i"), file, QStringLiteral("-s240"), QStringLiteral("-o"),
                   folder + QStringLiteral("/peer-%1.png").arg(quintptr(QThread::currentThreadId()))});
    process.waitForFinished();
}

void onThreads(int pictures, const std::function<void()>& one) {
    std::atomic<int> left = pictures;
    std::vector<std::thread> workers;
    for (int i = 0; i < threads; ++i)
        workers.emplace_back([&] {
            while (left-- > 0)
                one();
        });
    for (std::thread& worker : workers)
        worker.join();
}

void byReader(Reader& reader, int pictures, const Location& file) {
    QList<QFuture<QImage>> futures;
    for (int i = 0; i < pictures; ++i)
        futures.append(reader.thumbnail(file, QSize(side, side)));
    for (QFuture<QImage>& future : futures) {
        future.waitForFinished();
        if (future.result().isNull())
            qFatal("no picture of %s", file.path().constData());
    }
}

// By one road for all formats, whatever they say of their colours.
QImage grey(const QImage& image) {
    QImage plain = image.convertToFormat(QImage::Format_RGB32);
    plain.setColorSpace({});
    return plain.convertToFormat(QImage::Format_Grayscale8);
}

// Structural similarity of two pictures in grey: the mean over windows of 8 by 8.
double similarity(const QImage& a, const QImage& b) {
    constexpr int window = 8;
    constexpr double c1 = 6.5025, c2 = 58.5225;
    const QImage x = grey(a), y = grey(b);
    double sum = 0;
    int count = 0;
    for (int top = 0; top + window <= x.height(); top += 4)
        for (int left = 0; left + window <= x.width(); left += 4, ++count) {
            double mx = 0, my = 0, xx = 0, yy = 0, xy = 0;
            for (int row = top; row < top + window; ++row)
                for (int column = left; column < left + window; ++column) {
                    const double p = x.constScanLine(row)[column], q = y.constScanLine(row)[column];
                    mx += p, my += q, xx += p * p, yy += q * q, xy += p * q;
                }
            constexpr double n = window * window;
            mx /= n, my /= n;
            const double vx = xx / n - mx * mx, vy = yy / n - my * my, vxy = xy / n - mx * my;
            sum += (2 * mx * my + c1) * (2 * vxy + c2) / ((mx * mx + my * my + c1) * (vx + vy + c2));
        }
    return count ? sum / count : 0;
}

QImage fullReduction(const QString& file, QSize size) {
    VipsImage* whole = vips_image_new_from_file(file.toUtf8().constData(), nullptr);
    VipsImage* made = nullptr;
    if (!whole
        || vips_resize(whole, &made, double(size.width()) / whole->Xsize, "vscale",
                       double(size.height()) / whole->Ysize, "kernel", VIPS_KERNEL_LANCZOS3, nullptr)
               != 0)
        return {};
    size_t bytes = 0;
    void* const pixels = vips_image_write_to_memory(made, &bytes);
    const QImage image = QImage(static_cast<const uchar*>(pixels), made->Xsize, made->Ysize, made->Xsize * made->Bands,
                                made->Bands == 4 ? QImage::Format_RGBA8888 : QImage::Format_RGB888)
                             .copy();
    g_free(pixels);
    g_object_unref(made);
    g_object_unref(whole);
    return image;
}

bool endsWith(const QString& file, std::initializer_list<const char*> endings) {
    return std::any_of(endings.begin(), endings.end(),
                       [&file](const char* ending) { return file.endsWith(QLatin1String(ending)); });
}

void measure(Reader& reader, const Sample& sample, const QString& folder) {
    const QString file = folder + QLatin1Char('/') + QString::fromUtf8(sample.name);
    const bool isFilm = endsWith(file, {".mp4"});
    std::vector<bench::Run> runs{{"reader", [&] { byReader(reader, sample.pictures, Location(file)); }}};
    if (!isFilm) {
        if (!endsWith(file, {".heic", ".avif"}))
            runs.push_back({"qt", [&] { onThreads(sample.pictures, [&] { byQt(file); }); }});
        runs.push_back({"vips", [&] { onThreads(sample.pictures, [&] { byVips(file); }); }});
    } else if (!QStandardPaths::findExecutable(QStringLiteral("ffmpegthumbnailer")).isEmpty()) {
        runs.push_back(
            {"ffmpegthumbnailer", [&] { onThreads(sample.pictures, [&] { byThumbnailer(file, folder); }); }});
    }
    bench::interleave(runs, rounds);
    for (const bench::Run& run : runs)
        bench::report((std::string(sample.name) + '_' + run.name).c_str(),
                      sample.pictures * 1000 / bench::median(run.milliseconds));
    if (!endsWith(file, {".jpg", ".png", ".webp"}))
        return;
    QFuture<QImage> ours = reader.thumbnail(Location(file), QSize(side, side));
    ours.waitForFinished();
    const QImage reference = fullReduction(file, ours.result().size());
    bench::report((std::string(sample.name) + "_similarity").c_str(), similarity(ours.result(), reference));
    bench::report((std::string(sample.name) + "_qt_similarity").c_str(), similarity(byQt(file), reference));
}

// The same makers in this process and behind the protocol, one at a time, so that nothing else differs.
void measureProtocol(const QString& folder) {
    constexpr int pictures = 60;
    const Location file(folder + QStringLiteral("/photo2.jpg"));
    Reader one({.children = 1});
    std::vector<bench::Run> runs{{"protocol", [&] { byReader(one, pictures, file); }},
                                 {"direct", [&] {
                                      for (int i = 0; i < pictures; ++i)
                                          reader::Pictures::thumbnail(*reader::OpenedFile::open(file.path()),
                                                                      QSize(side, side), std::chrono::seconds(8));
                                  }}};
    bench::interleave(runs, rounds * 2);
    for (const bench::Run& run : runs)
        bench::report(run.name, bench::median(run.milliseconds) / pictures);
}

// Sixty tiles from nothing, the readers' start included, beside the library that is the quickest for each kind.
void measureScreen(const QString& folder) {
    constexpr std::array<const char*, 10> tiles{"photo12.jpg", "photo2.jpg",   "photo2.png",  "screen.png",
                                                "photo2.webp", "photo2.heic",  "photo2.avif", "drawing.svg",
                                                "page.pdf",    "film1080p.mp4"};
    constexpr int count = 60;
    const auto file = [&folder, &tiles](int tile) {
        return folder + QLatin1Char('/') + QString::fromUtf8(tiles[size_t(tile) % tiles.size()]);
    };
    const auto ours = [&] {
        Reader reader({.children = threads});
        QList<QFuture<QImage>> futures;
        for (int tile = 0; tile < count; ++tile)
            futures.append(reader.thumbnail(Location(file(tile)), QSize(side, side)));
        for (QFuture<QImage>& future : futures)
            future.waitForFinished();
    };
    const auto theirs = [&] {
        std::atomic<int> next = 0;
        onThreads(count, [&] {
            const QString path = file(next++);
            if (endsWith(path, {".mp4"}))
                byThumbnailer(path, folder);
            else if (endsWith(path, {".webp", ".heic", ".avif"}))
                byVips(path);
            else
                byQt(path);
        });
    };
    std::vector<bench::Run> runs{{"screen", ours}, {"screen_libraries", theirs}};
    bench::interleave(runs, rounds);
    for (const bench::Run& run : runs)
        bench::report(run.name, bench::median(run.milliseconds));
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("VIPS_CONCURRENCY", "1");
    const QGuiApplication application(argc, argv);
    if (argc < 2 || vips_init("bench") != 0)
        return 2;
    vips_cache_set_max(0);
    const QString folder = QString::fromUtf8(argv[1]);
    make(folder);
    const auto isWanted = [argc, argv](const char* name) { return argc < 3 || qstrcmp(argv[2], name) == 0; };
    Reader reader({.children = threads});
    for (const Sample& sample : samples)
        if (isWanted(sample.name))
            measure(reader, sample, folder);
    if (isWanted("protocol"))
        measureProtocol(folder);
    if (isWanted("screen"))
        measureScreen(folder);
}

// Thumbnails a second at 240 pixels through the reader processes, beside Qt's scaled reader and libvips called directly
// with as many threads, one line for each format; and how like a full Lanczos reduction ours are.
//
// bench_thumbnails FOLDER: makes its pictures there once.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Measure.h"
#include "platform/Reader.h"

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
    {"photo12.jpg", 40}, {"photo2.jpg", 100}, {"photo2.png", 24},    {"screen.png", 60},
    {"photo2.webp", 30}, {"page.pdf", 60},    {"film1080p.mp4", 16},
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

void make(const QString& folder) {
    std::filesystem::create_directories(folder.toStdString());
    if (QFile::exists(folder + QStringLiteral("/made")))
        return;
    const QString convert = QStringLiteral("convert"), ffmpeg = QStringLiteral("ffmpeg");
    command(convert,
            words("-seed 7 -size 4000x3000 plasma:fractal -attenuate 0.4 +noise Gaussian -quality 88 photo12.jpg"),
            folder);
    for (const char* small : {"photo2.jpg", "photo2.png", "photo2.webp"})
        command(convert, words("photo12.jpg -resize 1600x1200 -quality 85") + QStringList{QString::fromUtf8(small)},
                folder);
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
    QFile(folder + QStringLiteral("/made")).open(QIODevice::WriteOnly);
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

void measure(Reader& reader, const Sample& sample, const QString& folder) {
    const QString file = folder + QLatin1Char('/') + QString::fromUtf8(sample.name);
    const bool isFilm = file.endsWith(QLatin1String(".mp4"));
    std::vector<bench::Run> runs{{"reader", [&] { byReader(reader, sample.pictures, Location(file)); }}};
    if (!isFilm) {
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
    if (isFilm || file.endsWith(QLatin1String(".pdf")))
        return;
    QFuture<QImage> ours = reader.thumbnail(Location(file), QSize(side, side));
    ours.waitForFinished();
    const QImage reference = fullReduction(file, ours.result().size());
    bench::report((std::string(sample.name) + "_similarity").c_str(), similarity(ours.result(), reference));
    bench::report((std::string(sample.name) + "_qt_similarity").c_str(), similarity(byQt(file), reference));
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
    Reader reader({.children = threads});
    for (const Sample& sample : samples)
        if (argc < 3 || qstrcmp(argv[2], sample.name) == 0)
            measure(reader, sample, folder);
}

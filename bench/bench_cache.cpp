// The memory that the cache of small pictures has when a long scroll has filled it beyond its bound, in MiB.
//
// bench_cache PICTURE: a picture of the proportions of a photograph.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Measure.h"
#include "media/Thumbnails.h"

#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>

#include <unistd.h>

using namespace lumbra;

namespace {

constexpr int side = 240;
constexpr int pictures = 1400; // of which 1,165 fit
constexpr int atOnce = 40;

// Of this process.
double mebibytes() {
    QFile facts(QStringLiteral("/proc/self/statm"));
    if (!facts.open(QIODevice::ReadOnly))
        qFatal("there are no facts");
    return facts.readAll().split(' ').value(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / (1024 * 1024);
}

// As if it were so many files, by their dates.
void fill(Thumbnails& thumbnails, const Location& file, int from) {
    std::vector<Thumbnails::Request> requests;
    int left = atOnce;
    QEventLoop loop;
    for (int i = from; i < from + atOnce; ++i) {
        const Asset asset{.url = file, .modified = {double(i)}, .starred = {}};
        requests.push_back(thumbnails.imageFor(asset, side, Reader::Urgency::visible, &loop, [&](const QImage& image) {
            if (image.isNull())
                qFatal("no picture of %s", file.path().constData());
            if (--left == 0)
                loop.quit();
        }));
    }
    loop.exec();
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (argc < 2)
        return 2;
    Reader reader;
    Thumbnails thumbnails(reader);
    const Location file{QByteArray(argv[1])};
    fill(thumbnails, file, 0);
    const double before = mebibytes();
    for (int from = atOnce; from < pictures; from += atOnce)
        fill(thumbnails, file, from);
    bench::report("cache_memory", mebibytes() - before);
}

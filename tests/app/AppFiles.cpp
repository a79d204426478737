// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFiles.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>

#include <cmath>
#include <cstdlib>

namespace lumbra::AppFiles {

namespace {

// Under a hidden name first: the application watches, and must never see half a file in these tests.
Location hiddenFor(const Location& location) {
    QDir().mkpath(location.parent().toString());
    return location.parent().child(QString(QStringLiteral(".making-") + location.name()));
}

void reveal(const Location& hidden, const Location& location) {
    if (std::rename(hidden.path().constData(), location.path().constData()) != 0)
        qFatal("cannot make %s", location.path().constData());
}

void ffmpeg(QStringList arguments, const Location& location) {
    const Location hidden = hiddenFor(location);
    arguments.prepend(QStringLiteral("-nostdin"));
    arguments << QStringLiteral("-y") << hidden.toString();
    QProcess process;
    process.start(QStringLiteral("ffmpeg"), arguments);
    if (!process.waitForFinished(60'000) || process.exitCode() != 0)
        qFatal("ffmpeg: %s", process.readAllStandardError().constData());
    reveal(hidden, location);
}

QStringList tone(int seconds) {
    return {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
            QStringLiteral("sine=frequency=330:duration=%1").arg(seconds)};
}

} // namespace

void picture(const Location& location, QColor colour, QSize size) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    const Location hidden = hiddenFor(location);
    if (!image.save(hidden.toString()))
        qFatal("cannot write %s", hidden.path().constData());
    reveal(hidden, location);
}

void clip(const Location& location, QColor colour, int seconds) {
    ffmpeg(QStringList{QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                       QStringLiteral("color=c=0x%1:s=640x360:r=25:d=%2").arg(colour.name().sliced(1)).arg(seconds)}
               << tone(seconds) << QStringLiteral("-pix_fmt") << QStringLiteral("yuv420p")
               << QStringLiteral("-shortest"),
           location);
}

void sound(const Location& location, int seconds) {
    ffmpeg(tone(seconds), location);
}

void text(const Location& location, const QByteArray& words) {
    const Location hidden = hiddenFor(location);
    QFile file(hidden.toString());
    if (!file.open(QIODevice::WriteOnly) || file.write(words) != words.size())
        qFatal("cannot write %s", hidden.path().constData());
    file.close();
    reveal(hidden, location);
}

void insight(const Location& library, std::initializer_list<const char*> files, const char* words) {
    QProcess sqlite;
    sqlite.start(QStringLiteral("sqlite3"), {QStringLiteral("-batch"), QStringLiteral("-bail"),
                                             library.child(".lumbra/insights.sqlite").toString()});
    for (const char* const file : files)
        sqlite.write("INSERT INTO insights_fts(path, text) VALUES('" + library.child(file).path() + "', '" + words
                     + "');\n");
    sqlite.closeWriteChannel();
    if (!sqlite.waitForFinished() || sqlite.exitCode() != 0)
        qFatal("sqlite3 can't write: %s", sqlite.readAllStandardError().constData());
}

QColor colour(int number) {
    // Steps of the golden angle keep neighbours apart; two lightnesses tell the next round from the last.
    const int hue = int(std::fmod(number * 137.508, 360));
    return QColor::fromHsl(hue, 230, number % 2 ? 150 : 110);
}

bool alike(QColor a, QColor b) {
    constexpr int tolerance = 24;
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance
           && std::abs(a.blue() - b.blue()) <= tolerance;
}

} // namespace lumbra::AppFiles

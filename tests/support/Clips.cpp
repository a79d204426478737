// SPDX-License-Identifier: GPL-3.0-or-later
#include "Clips.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStringList>

#include <unistd.h>

#include <array>
#include <cstdio>
#include <utility>

namespace lumbra::Clips {

namespace {

#define MOVING "-f lavfi -i testsrc2=s=160x90:r=25:d=2"
#define TONE " -f lavfi -i sine=d=2"
#define H264 " -c:v libx264 -preset ultrafast -pix_fmt yuv420p"

struct Recipe {
    const char* name;
    const char* arguments; // parted by blanks; @ stands before another clip
};

constexpr std::array recipes{
    Recipe{"h264.mp4", MOVING TONE H264 " -g 12 -c:a aac -movflags +faststart"},
    Recipe{"hevc.mp4", MOVING TONE " -c:v libx265 -preset ultrafast -x265-params log-level=none -tag:v hvc1 -c:a aac"},
    Recipe{"prores.mov", MOVING TONE " -c:v prores_ks -profile:v 0 -c:a pcm_s16le"},
    Recipe{"vp8.webm", MOVING TONE " -c:v libvpx -deadline realtime -cpu-used 8 -c:a libopus"},
    Recipe{"long.webm", "-f lavfi -i testsrc2=s=160x90:r=25:d=30 -c:v libvpx -deadline realtime -cpu-used 8"},
    Recipe{"vp9.webm", MOVING TONE " -c:v libvpx-vp9 -deadline realtime -cpu-used 8 -c:a libopus"},
    Recipe{"av1.mp4", MOVING TONE " -c:v libaom-av1 -usage realtime -cpu-used 8 -c:a aac"},
    Recipe{"theora.ogv", MOVING TONE " -c:v libtheora -c:a libvorbis"},
    Recipe{"mpeg4.avi", MOVING TONE " -c:v mpeg4 -c:a libmp3lame"},
    Recipe{"turned.mp4", "-i @h264.mp4 -c copy -metadata:s:v rotate=90"},
    Recipe{"stretched.mp4", MOVING TONE H264 " -vf setsar=2 -c:a aac"},
    Recipe{"silent.mp4", MOVING H264 " -g 12"},
    Recipe{"halves.mp4", "-f lavfi -i color=red:s=160x90:r=25:d=2,drawbox=y=45:h=45:color=blue:t=fill" H264},
    Recipe{"uneven.mp4", MOVING H264 " -vf select=not(mod(n\\,3))+not(mod(n\\,7)) -vsync vfr"},
    Recipe{"rare.mp4", "-f lavfi -i testsrc2=s=160x90:r=25:d=4" H264 " -g 1000"},
    Recipe{"slow.mp4", "-f lavfi -i testsrc2=s=160x90:r=5:d=2" H264},
    Recipe{"blink.mp4", "-f lavfi -i testsrc2=s=160x90:r=30:d=0.3" H264},
    Recipe{"hours.mp4", "-f lavfi -i color=green:s=160x90:r=1:d=10800" H264 " -g 60"},
    Recipe{"long.mp4", "-f lavfi -i testsrc2=s=160x90:r=25:d=10" H264 " -g 25 -movflags +faststart"},
    Recipe{"tone.mp3", "-f lavfi -i sine=d=2"},
    Recipe{"tone.m4a", "-f lavfi -i sine=d=2 -c:a aac"},
    Recipe{"tone.flac", "-f lavfi -i sine=d=2"},
    Recipe{"tone.ogg", "-f lavfi -i sine=d=2 -c:a libvorbis"},
    Recipe{"tone.opus", "-f lavfi -i sine=d=2 -c:a libopus"},
    Recipe{"tone.wav", "-f lavfi -i sine=d=2"},
    Recipe{"covered.mp3", "-f lavfi -i sine=d=2 -f lavfi -i color=red:s=64x64:r=1:d=1 -map 0 -map 1 -frames:v 1 -c:v "
                          "mjpeg -disposition:v attached_pic -id3v2_version 3"},
};

const Recipe& recipeOf(const char* name) {
    for (const Recipe& recipe : recipes)
        if (qstrcmp(recipe.name, name) == 0)
            return recipe;
    qFatal("there is no clip %s", name);
}

QByteArray bytesOf(const Location& location) {
    QFile file(location.toString());
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", location.path().constData());
    return file.readAll();
}

void write(const Location& location, const QByteArray& bytes) {
    QFile file(location.toString());
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", location.path().constData());
}

} // namespace

QByteArray ffmpeg(const QStringList& arguments, const Location& folder) {
    QProcess process;
    process.setWorkingDirectory(folder.toString());
    process.start(QStringLiteral("ffmpeg"), arguments);
    if (!process.waitForFinished(100'000) || process.exitCode() != 0)
        qFatal("ffmpeg %s: %s", qUtf8Printable(arguments.join(u' ')), process.readAllStandardError().constData());
    return process.readAllStandardOutput();
}

Location clip(const char* name) {
    return made(name, QLatin1String(recipeOf(name).arguments));
}

Location made(const char* name, const QString& words) {
    // Its own folder, named after how it is made, so that the name is the clip's and a changed recipe is followed.
    const QByteArray key = QCryptographicHash::hash(words.toUtf8(), QCryptographicHash::Md5).toHex();
    const QString folder = QStringLiteral(LUMBRA_CLIPS "/") + QString::fromLatin1(key);
    const Location file{QStringView(folder + QLatin1Char('/') + QString::fromLatin1(name))};
    if (file.exists())
        return file;
    // Others may be making it as well: whoever is last wins, and nobody sees a part of it.
    QDir().mkpath(folder);
    const QString part = folder + QStringLiteral("/%1-%2").arg(::getpid()).arg(QLatin1String(name));
    QStringList arguments = QStringLiteral("-v error -y -nostdin %1").arg(words).split(QLatin1Char(' '));
    for (QString& argument : arguments)
        if (argument.startsWith(u'@'))
            argument = clip(argument.sliced(1).toLatin1().constData()).toString();
    ffmpeg(arguments << part);
    if (std::rename(part.toUtf8().constData(), file.path().constData()) != 0)
        qFatal("cannot rename %s", qUtf8Printable(part));
    return file;
}

bool canMake(const char* name) {
    const QString arguments = QLatin1String(recipeOf(name).arguments);
    const qsizetype at = arguments.indexOf(u"-c:v ");
    if (at < 0)
        return true;
    static const QByteArray encoders = ffmpeg({QStringLiteral("-hide_banner"), QStringLiteral("-encoders")});
    return encoders.contains(' ' + arguments.mid(at + 5).section(QLatin1Char(' '), 0, 0).toUtf8() + ' ');
}

void copyDamaged(const Location& clip, const Location& to) {
    QByteArray bytes = bytesOf(clip);
    for (qsizetype place = bytes.size() / 5; place < bytes.size(); place += bytes.size() / 7)
        for (qsizetype i = place; i < qMin(place + 300, bytes.size()); ++i)
            bytes[i] = char(i * 73);
    write(to, bytes);
}

void copyTruncated(const Location& clip, const Location& to, double part) {
    const QByteArray bytes = bytesOf(clip);
    write(to, bytes.first(qsizetype(double(bytes.size()) * part)));
}

} // namespace lumbra::Clips

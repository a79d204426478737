// Films and sounds in a home of their own, for tests that change them or make one of another.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Clips.h"
#include "TestHome.h"

#include <QFile>
#include <QImage>

namespace lumbra {

class FilmClips {
public:
    // `arguments` stand before the name of the file that FFmpeg makes, parted by blanks. What takes nothing from the
    // home is made once for all tests.
    Location make(const char* name, const QString& arguments) const {
        const Location file = m_home.path().child(std::string_view(name));
        QFile::remove(file.toString());
        const bool takesFromHome =
            arguments.count(QLatin1String("-i ")) > arguments.count(QLatin1String("-f lavfi -i "));
        if (takesFromHome)
            Clips::ffmpeg(QStringLiteral("-v error -y -nostdin %1").arg(arguments).split(QLatin1Char(' '))
                              << file.toString(),
                          m_home.path());
        else if (!QFile::copy(Clips::made(name, arguments).toString(), file.toString()))
            qFatal("cannot copy %s", name);
        return file;
    }

    // The source of a film whose every picture tells its number, as `numberIn` reads it.
    static QString counting(double seconds, int rate, const char* size = "320:180") {
        return QStringLiteral(
                   "-f lavfi -i nullsrc=s=16x9:r=%1:d=%2,geq=lum='if(mod(floor(N/pow(2\\,X))\\,2)\\,235\\,16)'"
                   ":cb=128:cr=128,scale=%3:flags=neighbor,setsar=1,format=yuv420p")
            .arg(rate)
            .arg(seconds)
            .arg(QLatin1String(size));
    }

    // A film of 10 pictures a second that tell their numbers.
    Location counted(const char* name, double seconds, const char* encoding) const {
        return make(name, counting(seconds, 10) + QLatin1Char(' ') + QLatin1String(encoding));
    }

    // The number that a picture tells; it is made of 16 stripes, white ones for the digits 1, the least first.
    static int numberIn(const QImage& image) {
        int number = 0;
        for (int digit = 0; digit < 16; ++digit) {
            const QRgb pixel = image.pixel(int((digit + 0.5) / 16 * image.width()), image.height() / 2);
            number |= int(qGray(pixel) > 127) << digit;
        }
        return number;
    }

    static QList<int> numbersIn(const QList<QImage>& images) {
        QList<int> numbers;
        for (const QImage& image : images)
            numbers.append(numberIn(image));
        return numbers;
    }

    QByteArray bytes(const Location& file) const {
        QFile opened(file.toString());
        if (!opened.open(QIODevice::ReadOnly))
            qFatal("cannot read %s", file.path().constData());
        return opened.readAll();
    }

    const TestHome& home() const { return m_home; }

private:
    TestHome m_home;
};

} // namespace lumbra

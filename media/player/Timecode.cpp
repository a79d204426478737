// SPDX-License-Identifier: GPL-3.0-or-later
#include "Timecode.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace lumbra {

namespace {

constexpr quint32 code(const char (&text)[5]) {
    quint32 made = 0;
    for (int i = 0; i < 4; ++i)
        made = made << 8 | quint8(text[i]);
    return made;
}

struct Named {
    quint32 code;
    const char* name;
};

constexpr std::array names{
    Named{code("avc1"), "H.264"},  Named{code("avc3"), "H.264"},  Named{code("hvc1"), "HEVC"},
    Named{code("hev1"), "HEVC"},   Named{code("ap4h"), "ProRes"}, Named{code("ap4x"), "ProRes"},
    Named{code("apcn"), "ProRes"}, Named{code("apch"), "ProRes"}, Named{code("apcs"), "ProRes"},
    Named{code("apco"), "ProRes"}, Named{code("vp09"), "VP9"},    Named{code("av01"), "AV1"},
};

// What FFmpeg calls a codec, where that is not how its code begins.
constexpr std::array codes{
    Named{code("avc1"), "h264"},       Named{code("hvc1"), "hevc"},    Named{code("apcn"), "prores"},
    Named{code("vp08"), "vp8"},        Named{code("vp09"), "vp9"},     Named{code("av01"), "av1"},
    Named{code("mp4v"), "mpeg4"},      Named{code("jpeg"), "mjpeg"},   Named{code("mp2v"), "mpeg2video"},
    Named{code("mp1v"), "mpeg1video"}, Named{code("dvc "), "dvvideo"}, Named{code("h263"), "h263"},
    Named{code("wmv1"), "wmv1"},       Named{code("wmv2"), "wmv2"},    Named{code("wmv3"), "wmv3"},
    Named{code("wvc1"), "vc1"},        Named{code("flv1"), "flv1"},    Named{code("avdn"), "dnxhd"},
};

// Longer than any film, and far from where a double has no hundredths left.
constexpr double longest = 1e9;

} // namespace

QString timecode(double seconds, bool fraction) {
    if (!std::isfinite(seconds))
        return QStringLiteral("0:00");
    const double time = std::clamp(seconds, 0.0, longest);
    const auto whole = qint64(time);
    const auto twoDigits = [](qint64 number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); };
    QString text = QString::number(whole < 3600 ? whole / 60 : whole / 3600);
    if (whole >= 3600)
        text += u':' + twoDigits(whole / 60 % 60);
    text += u':' + twoDigits(whole % 60);
    if (fraction)
        text += u'.' + twoDigits(qint64((time - double(whole)) * 100));
    return text;
}

QString codecName(quint32 code) {
    for (const Named& known : names)
        if (known.code == code)
            return QString::fromLatin1(known.name);
    QString text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const quint32 byte = code >> shift & 0xff;
        if (byte > 0x7f)
            return QStringLiteral("?");
        text += QChar(char16_t(byte));
    }
    return text.trimmed().toUpper();
}

quint32 codecCode(QByteArrayView name) {
    for (const Named& known : codes)
        if (name == known.name)
            return known.code;
    quint32 made = 0;
    for (qsizetype i = 0; i < 4; ++i)
        made = made << 8 | quint8(i < name.size() ? name[i] : ' ');
    return made;
}

} // namespace lumbra

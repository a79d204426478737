// SPDX-License-Identifier: GPL-3.0-or-later
#include "JpegHeader.h"

#include <QtEndian>

namespace lumbra::reader {

namespace {

// Segments before the picture; more are not looked at.
constexpr int segmentLimit = 512;

bool startsFrame(uchar marker) {
    // 0xc4, 0xc8 and 0xcc are tables.
    return marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
}

} // namespace

JpegHeader JpegHeader::read(QIODevice& device) {
    JpegHeader header;
    device.skip(2); // the start of the image
    for (int i = 0; i < segmentLimit; ++i) {
        const QByteArray start = device.read(4);
        if (start.size() < 4 || uchar(start[0]) != 0xff)
            return {};
        const uchar marker = uchar(start[1]);
        if (marker == 0xff) { // filling: the marker begins one byte later
            device.seek(device.pos() - 3);
            continue;
        }
        const int length = qFromBigEndian<quint16>(start.constData() + 2) - 2;
        if (length < 0)
            return {};
        if (startsFrame(marker)) {
            const QByteArray frame = device.read(6); // precision, height, width, components
            header.components = frame.size() == 6 ? uchar(frame[5]) : 0;
            return header;
        }
        const qint64 next = device.pos() + length;
        if (marker == 0xe2 && device.read(11) == "ICC_PROFILE")
            header.hasProfile = true;
        if (!device.seek(next))
            return {};
    }
    return {};
}

} // namespace lumbra::reader

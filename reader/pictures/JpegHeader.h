// What a JPEG file says of its colours before the picture begins; Qt's reader keeps it to itself.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIODevice>

namespace lumbra::reader {

struct JpegHeader {
    int components = 0; // 1 grey, 3 colour, 4 inks; 0 if there is no picture
    bool hasProfile = false;

    // Reads on from the device's position, which is the file's start.
    static JpegHeader read(QIODevice& device);
};

} // namespace lumbra::reader

// What the plugin of libvips has for the reader: it shrinks very large pictures row by row without holding them.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "reader/Plugins.h"

namespace lumbra::reader {

class VipsPicture : public VipsDecoder {
public:
    QImage picture(OpenedFile& file, QSize box) override;
    QImage picture(const QByteArray& bytes, QSize box) override;
    QSize pixels(OpenedFile& file) override;
};

} // namespace lumbra::reader

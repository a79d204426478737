// SPDX-License-Identifier: GPL-3.0-or-later
#include "VipsPicture.h"

Q_DECL_EXPORT lumbra::reader::VipsDecoder* lumbra::reader::lumbraVipsDecoder(IsInterrupted) {
    static VipsPicture decoder;
    return &decoder;
}

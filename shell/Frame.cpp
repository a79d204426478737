// SPDX-License-Identifier: GPL-3.0-or-later
#include "Frame.h"

namespace lumbra {

Frame::Frame(Library* library, QObject* parent) : QObject(parent), m_library(library), m_toasts(library) {
    connect(library, &Library::lastErrorChanged, this, &Frame::errorChanged);
}

} // namespace lumbra

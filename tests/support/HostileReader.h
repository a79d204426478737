// The reader that misbehaves as the requested file tells it, as the tests of those who ask readers use it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Reader.h"

#include <QCoreApplication>
#include <QImage>

namespace lumbra {

inline QByteArray hostileProgram() {
    return QCoreApplication::applicationDirPath().toUtf8() + "/lumbra-reader-hostile";
}

// One process, so that the same one that came to grief, or its successor, must serve the next request.
inline Reader::Options hostile(double limit = 8) {
    return {.children = 1, .limit = limit, .program = hostileProgram()};
}

// What the future yields, waited for without a loop of its own.
inline QImage resultOf(QFuture<QImage> future) {
    future.waitForFinished();
    return future.isResultReadyAt(0) ? future.result() : QImage();
}

} // namespace lumbra

// Copies a file or folder as tests want it: at one go, or with something happening at every step.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Files.h"
#include "support/TestHome.h"

#include <QThread>

namespace lumbra {

inline QList<Files::Arrival> copy(const TestHome& home, const Location& source, const Location& target,
                                  const std::function<void(const Files::Progress&)>& report = {}) {
    return Files::carryOut({{source, target, Files::Transfer::Kind::copy}}, home.path().child("journal"), {}, report);
}

// A report that takes so long that the next one is due at every step.
inline std::function<void(const Files::Progress&)> atEveryStep(const std::function<void(const Files::Progress&)>& act) {
    return [act](const Files::Progress& progress) {
        act(progress);
        QThread::msleep(51);
    };
}

} // namespace lumbra

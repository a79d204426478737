// A question before something that can't be taken back: what a menu hands to the window, which shows one alert for all.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

namespace lumbra {

struct Confirmation {
    using Ask = std::function<void(const Confirmation&)>;

    QString title = {};
    QString text = {};
    QString confirm = {};              // the label of the button that agrees
    std::function<void()> action = {}; // what is done once the user has agreed
};

} // namespace lumbra

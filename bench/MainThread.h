// What measures the work of the main thread share: the longest time that one event keeps it, and a wait in its loop.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Measure.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <cstdlib>

namespace lumbra::bench {

// Notes the longest time that one event keeps the main thread.
class Application : public QCoreApplication {
public:
    using QCoreApplication::QCoreApplication;
    double longest = 0; // ms

    bool notify(QObject* receiver, QEvent* event) override {
        const auto start = Clock::now();
        const bool handled = QCoreApplication::notify(receiver, event);
        longest = std::max(longest, millisecondsSince(start));
        return handled;
    }
};

// Runs the event loop until the condition holds; ends the program with the message if it does not within two minutes.
inline void wait(const std::function<bool()>& condition, const char* message) {
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (condition())
            loop.quit();
    });
    poll.start(1);
    QTimer::singleShot(120'000, &loop, [message] {
        std::fprintf(stderr, "%s\n", message);
        std::exit(1);
    });
    loop.exec();
}

} // namespace lumbra::bench

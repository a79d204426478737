// The last resort for files that the readers make nothing of: the programs that other applications have registered with
// the desktop, two at a time, what was asked for last first. What they draw is decoded by the readers.
//
// Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"
#include "platform/Reader.h"

#include <QImage>
#include <QObject>

#include <functional>
#include <stop_token>
#include <vector>

namespace lumbra {

class RegisteredThumbnails : public QObject {
    Q_OBJECT

public:
    explicit RegisteredThumbnails(Reader& reader, QObject* parent = nullptr) : QObject(parent), m_reader(reader) {}

    // Hands the picture to `ready`, a null one if there is none. Not called once `stop` is requested, as long as the
    // program was not started.
    void ask(const Location& file, int side, std::stop_token stop, std::function<void(const QImage&)> ready);

private:
    struct Wish {
        Location file;
        int side;
        std::stop_token stop;
        std::function<void(const QImage&)> ready;
    };

    void startNext();

    Reader& m_reader;
    std::vector<Wish> m_wishes;
    int m_running = 0;
};

} // namespace lumbra

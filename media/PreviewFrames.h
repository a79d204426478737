// The frame under the pointer as it moves along a film: only the latest request counts.
//
// It has a reader process of its own, which keeps the film open and waits behind no thumbnail. One for each scrubber,
// on the main thread, no longer than the scrubber lives.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MediaRequest.h"
#include "platform/Reader.h"

#include <QImage>
#include <QObject>

#include <functional>

namespace lumbra {

class PreviewFrames : public QObject {
    Q_OBJECT

public:
    using Ready = std::function<void(const QImage&)>;

    // The longest side of a frame, in pixels.
    static constexpr int maxSide = 400;

    // Starts the process, so that the first frame need not wait for it. `program` is for tests.
    explicit PreviewFrames(QObject* parent = nullptr, const QByteArray& program = {});

    // Hands a frame that is seen near that time of the file to `ready`, null if there is none, unless the context has
    // gone by then. Takes the request before it back, whose `ready` is called no more.
    void imageFor(const Location& path, double seconds, QObject* context, Ready ready);

private:
    Reader m_reader;
    MediaRequest m_request;
};

} // namespace lumbra

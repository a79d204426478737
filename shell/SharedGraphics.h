// The graphics context that all others of the process share with, which the web engine needs should a view ever load
// it.
//
// The application object would make one too, if it were asked; but the driver takes as long to load as all else that
// comes before the window, and is better loaded when another thread has something to do meanwhile.
//
// Main thread. To be made before the first window, and to outlive the last.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QOpenGLContext>

namespace lumbra {

class SharedGraphics {
public:
    SharedGraphics();
    ~SharedGraphics();

    SharedGraphics(const SharedGraphics&) = delete;
    SharedGraphics& operator=(const SharedGraphics&) = delete;

private:
    QOpenGLContext m_context;
};

} // namespace lumbra

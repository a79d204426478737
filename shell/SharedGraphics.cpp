// SPDX-License-Identifier: GPL-3.0-or-later
#include "SharedGraphics.h"

// What the application object and the web engine call for the same purpose; Qt exports it without declaring it.
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* context);

namespace lumbra {

// Without a context there are no graphics at all, and the window says so itself.
SharedGraphics::SharedGraphics() {
    if (m_context.create())
        qt_gl_set_global_share_context(&m_context);
}

SharedGraphics::~SharedGraphics() {
    qt_gl_set_global_share_context(nullptr);
}

} // namespace lumbra

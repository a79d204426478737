// SPDX-License-Identifier: GPL-3.0-or-later
#include "VideoRenderer.h"

#include "MpvLibrary.h"
#include "SurfaceSwitch.h"
#include "platform/Tasks.h"

#include <QGuiApplication>
#include <QImage>
#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QOpenGLFramebufferObject>
#include <QQuickOpenGLUtils>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace lumbra {

namespace {

// The glow: as many pixels as its blur leaves anything of, as often as the eye follows it.
constexpr QSize glowSize(96, 54);
constexpr int glowInterval = 250; // ms

// So much later a film that has no new picture counts as standing.
constexpr int glowPatience = 150; // ms

void* addressOf(void*, const char* name) {
    QOpenGLContext* const context = QOpenGLContext::currentContext();
    return context ? reinterpret_cast<void*>(context->getProcAddress(name)) : nullptr;
}

} // namespace

// What mpv rings, from any of its threads, when there is something to draw.
struct VideoRenderer::Bell {
    QPointer<VideoSurface> surface;
    std::atomic<bool> isNew = false; // not drawn yet
    std::shared_ptr<std::atomic<bool>> isPosted = std::make_shared<std::atomic<bool>>(false);

    static void ring(void* given) {
        auto* const bell = static_cast<Bell*>(given);
        bell->isNew = true;
        if (bell->isPosted->exchange(true))
            return;
        Tasks::postToMain([surface = bell->surface, isPosted = bell->isPosted] {
            *isPosted = false;
            if (surface)
                surface->update();
        });
    }
};

VideoRenderer::VideoRenderer() = default;

VideoRenderer::~VideoRenderer() {
    freeContext();
}

QOpenGLFramebufferObject* VideoRenderer::createFramebufferObject(const QSize& size) {
    m_isStale = true;
    m_isBlank = true;
    return new QOpenGLFramebufferObject(size); // neither depth nor samples
}

void VideoRenderer::synchronize(QQuickFramebufferObject* item) {
    auto* const surface = static_cast<VideoSurface*>(item);
    const PlayerEngine* const player = surface->player();
    m_surface = surface;
    m_address = surface;
    m_window = surface->window();
    m_counts = surface->counts();
    m_draws = player && surface->draws();
    m_hasPicture = player && player->hasPicture();
    m_isFirst = player && player->isFirst();
    m_file = player ? player->pictureOf() : 0;
    m_holds = surface->holds();
    m_videoSize = player ? player->videoSize() : QSizeF();
    if (!player || m_context)
        return;
    m_switch = &player->surfaces();
    m_mpv = player->mpv();
    // As early as can be: the film is opened when this is done.
    if (m_draws) {
        makeContext();
        QQuickOpenGLUtils::resetOpenGLState();
    }
}

void VideoRenderer::render() {
    if (!m_draws)
        freeContext();
    else if (!m_context)
        makeContext();
    m_window->beginExternalCommands();
    if (isShown())
        draw();
    else if (!m_holds || m_isBlank)
        clear();
    m_isBlank = false;
    QQuickOpenGLUtils::resetOpenGLState();
    m_window->endExternalCommands();
}

// The first film's picture is drawn before the player has said whose it is, as soon as there is one.
bool VideoRenderer::isShown() {
    if (!m_context || m_hasPicture || !m_isFirst)
        return m_context && m_hasPicture;
    m_isThere = m_isThere || (m_library->render_context_update(m_context) & MPV_RENDER_UPDATE_FRAME) != 0;
    return m_isThere;
}

void VideoRenderer::makeContext() {
    mpv_handle* const mpv = m_mpv->raw();
    if (!mpv)
        return; // not yet
    m_library = MpvLibrary::shared();
    mpv_opengl_init_params functions{addressOf, nullptr};
    mpv_render_param display{MPV_RENDER_PARAM_INVALID, nullptr};
#if QT_CONFIG(xcb)
    // Lets decoders of the graphics processor hand their pictures over in place.
    if (const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        display = {MPV_RENDER_PARAM_X11_DISPLAY, x11->display()};
#endif
    mpv_render_param parameters[] = {
        {MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_OPENGL)},
        {MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &functions},
        display,
        {MPV_RENDER_PARAM_INVALID, nullptr},
    };
    if (m_library->render_context_create(&m_context, mpv, parameters) < 0) {
        m_context = nullptr;
        return;
    }
    m_bell = std::make_unique<Bell>();
    m_bell->surface = m_surface;
    m_library->render_context_set_update_callback(m_context, &Bell::ring, m_bell.get());
    const auto* const name =
        reinterpret_cast<const char*>(QOpenGLContext::currentContext()->functions()->glGetString(GL_RENDERER));
    const QByteArray renderer = QByteArray(name).toLower();
    const bool isSoftware = renderer.contains("llvmpipe") || renderer.contains("softpipe");
    Tasks::postToMain([to = m_switch, surface = m_address, isSoftware] {
        if (to)
            to->contextMade(surface, isSoftware);
    });
}

void VideoRenderer::freeContext() {
    if (!m_context)
        return;
    m_library->render_context_set_update_callback(m_context, nullptr, nullptr);
    m_library->render_context_free(std::exchange(m_context, nullptr));
    m_bell.reset();
    m_isThere = false;
    Tasks::postToMain([to = m_switch, surface = m_address] {
        if (to)
            to->contextFreed(surface);
    });
}

void VideoRenderer::draw() {
    // Not what mpv answers here: it has no new picture any more when nobody came for one in time.
    const bool isNew = m_bell->isNew.exchange(false);
    m_library->render_context_update(m_context);
    if (isNew || m_isStale)
        drawPicture();
    m_isGlowOld = m_isGlowOld || isNew;
    m_isStale = false;
    glow();
}

void VideoRenderer::drawPicture() {
    const QOpenGLFramebufferObject* const target = framebufferObject();
    mpv_opengl_fbo fbo{int(target->handle()), target->width(), target->height(), 0};
    int upright = 0;
    int waits = 0; // the scene's own frames come first
    mpv_render_param parameters[] = {
        {MPV_RENDER_PARAM_OPENGL_FBO, &fbo},
        {MPV_RENDER_PARAM_FLIP_Y, &upright},
        {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &waits},
        {MPV_RENDER_PARAM_INVALID, nullptr},
    };
    m_library->render_context_render(m_context, parameters);
    ++m_counts->frames;
}

// A frame buffer keeps the last picture of a film that has gone.
void VideoRenderer::clear() {
    if (m_context)
        skip();
    m_isStale = true;
    QOpenGLFunctions* const gl = QOpenGLContext::currentContext()->functions();
    framebufferObject()->bind();
    gl->glDisable(GL_SCISSOR_TEST);
    gl->glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    gl->glClearColor(0, 0, 0, 0);
    gl->glClear(GL_COLOR_BUFFER_BIT);
}

// Takes the picture of a film that is being opened. mpv waits a fifth of a second for each that nobody takes, and gives
// out several before it says that the film stands.
void VideoRenderer::skip() {
    m_library->render_context_update(m_context);
    int skips = 1;
    int waits = 0;
    mpv_render_param parameters[] = {
        {MPV_RENDER_PARAM_SKIP_RENDERING, &skips},
        {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &waits},
        {MPV_RENDER_PARAM_INVALID, nullptr},
    };
    m_library->render_context_render(m_context, parameters);
}

// Where the picture lies in the frame buffer, as mpv places it.
QRect VideoRenderer::pictureRect() const {
    const QSize whole = framebufferObject()->size();
    if (m_videoSize.isEmpty())
        return {QPoint(), whole};
    const QSize size = m_videoSize.scaled(whole, Qt::KeepAspectRatio).toSize();
    QRect rect(QPoint((whole.width() - size.width()) / 2, (whole.height() - size.height()) / 2), size);
    // Rounding may leave an edge of nothing.
    return rect.width() > 4 && rect.height() > 4 ? rect.adjusted(1, 1, -1, -1) : rect;
}

// Taken of a new picture when the last one is old enough. Only where no picture follows, so that the one that then
// stands would be missed, is the scene drawn once more for it.
void VideoRenderer::glow() {
    if (m_glowFile != m_file) {
        m_glowFile = m_file;
        m_isGlowOld = true;
    }
    // Before its shape is known nobody can tell the film from the bars beside it.
    if (!m_file || !m_isGlowOld || m_videoSize.isEmpty())
        return;
    if (m_sinceGlow.isValid() && m_sinceGlow.elapsed() < glowInterval) {
        if (!std::exchange(m_isGlowAwaited, true))
            Tasks::postToMain([surface = m_surface, left = int(glowInterval - m_sinceGlow.elapsed())] {
                if (surface)
                    surface->lookAgain(std::max(left, 0) + glowPatience);
            });
        return;
    }
    m_sinceGlow.start();
    m_isGlowOld = false;
    m_isGlowAwaited = false;

    QOpenGLExtraFunctions* const gl = QOpenGLContext::currentContext()->extraFunctions();
    if (!m_small)
        m_small = std::make_unique<QOpenGLFramebufferObject>(glowSize);
    const QRect from = pictureRect();
    gl->glDisable(GL_SCISSOR_TEST);
    gl->glBindFramebuffer(GL_READ_FRAMEBUFFER, framebufferObject()->handle());
    gl->glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_small->handle());
    gl->glBlitFramebuffer(from.left(), from.top(), from.left() + from.width(), from.top() + from.height(), 0, 0,
                          glowSize.width(), glowSize.height(), GL_COLOR_BUFFER_BIT, GL_LINEAR);
    gl->glBindFramebuffer(GL_READ_FRAMEBUFFER, m_small->handle());
    gl->glPixelStorei(GL_PACK_ALIGNMENT, 4);
    QImage image(glowSize, QImage::Format_RGBX8888);
    gl->glReadPixels(0, 0, glowSize.width(), glowSize.height(), GL_RGBA, GL_UNSIGNED_BYTE, image.bits());
    ++m_counts->glows;
    Tasks::postToMain([surface = m_surface, image, file = m_file] {
        if (surface)
            surface->takeGlow(image, file);
    });
}

} // namespace lumbra

// The side of a video surface that lives on the thread that draws: owns mpv's drawing context, and takes the small
// pictures of the film for the glow.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "VideoSurface.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QQuickFramebufferObject>

class QOpenGLFramebufferObject;
class QQuickWindow;
struct mpv_render_context;

namespace lumbra {

class SurfaceSwitch;
struct MpvLibrary;

class VideoRenderer : public QQuickFramebufferObject::Renderer {
public:
    VideoRenderer();
    ~VideoRenderer() override;

    QOpenGLFramebufferObject* createFramebufferObject(const QSize& size) override;
    void synchronize(QQuickFramebufferObject* item) override;
    void render() override;

private:
    struct Bell;

    bool isShown();
    void makeContext();
    void freeContext();
    void draw();
    void drawPicture();
    void skip();
    void clear();
    void glow();
    QRect pictureRect() const;

    // What the main thread knew when the frame began. It may have done away with the surface since, so that nothing
    // follows its pointer here.
    QPointer<VideoSurface> m_surface;
    QPointer<SurfaceSwitch> m_switch;
    const VideoSurface* m_address = nullptr;
    QQuickWindow* m_window = nullptr;
    std::shared_ptr<VideoSurface::Counts> m_counts;
    bool m_draws = false;
    bool m_hasPicture = false;
    bool m_isFirst = false; // whatever picture comes is to be shown
    bool m_isThere = false; // that has come
    bool m_holds = false;
    bool m_isBlank = true; // what the frame buffer holds is nobody's
    quint64 m_file = 0;    // whose picture it is; 0 while that is not certain
    QSizeF m_videoSize;

    std::shared_ptr<MpvHandle> m_mpv;
    const MpvLibrary* m_library = nullptr; // as long as there is a context
    mpv_render_context* m_context = nullptr;
    std::unique_ptr<Bell> m_bell;
    bool m_isStale = true; // the frame buffer does not hold the picture

    std::unique_ptr<QOpenGLFramebufferObject> m_small;
    QElapsedTimer m_sinceGlow;
    bool m_isGlowOld = false;
    bool m_isGlowAwaited = false;
    quint64 m_glowFile = 0;
};

} // namespace lumbra

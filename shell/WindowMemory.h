// Where the window stands, how large it is, and how wide its sidebar: kept over a restart, and brought back to what the
// screens of the moment have room for. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Preferences.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QTimer>
#include <QWindow>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace lumbra {

class WindowMemory : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes its one.")

    Q_PROPERTY(int sidebarWidth READ sidebarWidth WRITE setSidebarWidth NOTIFY sidebarWidthChanged)
    Q_PROPERTY(int leastSidebarWidth READ leastSidebarWidth CONSTANT)
    Q_PROPERTY(int mostSidebarWidth READ mostSidebarWidth CONSTANT)

public:
    static constexpr QSize usualSize{1440, 900};
    static constexpr QSize leastSize{900, 540};

    // The preferences must outlive it.
    explicit WindowMemory(Preferences& preferences = Preferences::shared(), QObject* parent = nullptr);

    // The place of a window that stood at `kept`, when there are these screens, of each what panels leave free: within
    // the one that it is on for the larger part, or in the middle of the first. Never smaller than the least size.
    static QRect fitting(const QRect& kept, const QList<QRect>& screens);

    // Puts the window, which is not shown yet, where the last one stood, and remembers from then on what becomes of it.
    // Whoever shows it must not reset its state, as QWindow::show does. A first window that would be no smaller than
    // the screen fills it; any other gives way to its frame, which is known once it shows.
    void attach(QWindow& window);

    bool eventFilter(QObject* watched, QEvent* event) override;

    int sidebarWidth() const;
    void setSidebarWidth(int width);
    static int leastSidebarWidth() { return 220; }
    static int mostSidebarWidth() { return 380; }

Q_SIGNALS:
    void sidebarWidthChanged();

private:
    void restore(QWindow& window) const;
    void makeRoomForFrame();
    void remember();
    std::optional<QRect> kept() const;

    Preferences& m_preferences;
    QPointer<QWindow> m_window;
    bool m_isFrameKnown = false;
    // A window that is made as large as the screen gets its new size before it is told why: what it is by the time that
    // all has settled counts.
    QTimer m_settling;
};

} // namespace lumbra

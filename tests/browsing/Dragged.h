// A drag of files or text over a window, for tests of what takes it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QCoreApplication>
#include <QDragMoveEvent>
#include <QMimeData>
#include <QUrl>
#include <QWindow>

namespace lumbra {

// A drag from another program, as the window system tells of it.
class Dragged {
public:
    Dragged(QWindow* window, const QList<Location>& files) : m_window(window) {
        QList<QUrl> urls;
        for (const Location& file : files)
            urls.append(file.toUrl());
        m_data.setUrls(urls);
    }
    Dragged(QWindow* window, const QList<QUrl>& urls) : m_window(window) { m_data.setUrls(urls); }
    Dragged(QWindow* window, const QString& text) : m_window(window) { m_data.setText(text); }

    Qt::DropAction offered = Qt::IgnoreAction; // what would be done where it was moved last

    // True if what lies there takes it.
    bool move(QPoint to) {
        if (!m_isInside) {
            m_isInside = true;
            QDragEnterEvent enter(to, actions, &m_data, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(m_window, &enter);
        }
        QDragMoveEvent move(to, actions, &m_data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_window, &move);
        offered = move.dropAction();
        return move.isAccepted();
    }

    // The action that the other program is told of; ignored if nothing takes it.
    Qt::DropAction drop(QPoint at) {
        move(at);
        QDropEvent drop(at, actions, &m_data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_window, &drop);
        m_isInside = false;
        return drop.isAccepted() ? drop.dropAction() : Qt::IgnoreAction;
    }

    void leave() {
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(m_window, &leave);
        m_isInside = false;
    }

private:
    static constexpr Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;

    QWindow* m_window;
    QMimeData m_data;
    bool m_isInside = false;
};

} // namespace lumbra

// A piece of the screening room in a window of its own, to be used as a person does: by the pointer, by the keys, by
// assistive technology.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "OpenRoom.h"
#include "support/QmlWindow.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QTest>

#include <clocale>

Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)

namespace lumbra {

class RoomPiece {
public:
    RoomPiece(OpenRoom& in, const char* body, const QSize& size = QSize(1200, 600))
        : m_window((QByteArray("property var room\n") + body).constData(), "import Lumbra.Media\n",
                   {{QStringLiteral("room"), QVariant::fromValue<QObject*>(&in.room())}}, size) {
        QTest::mouseMove(m_window.window(), QPoint(1, 1));
    }

    QmlWindow* operator->() { return &m_window; }
    QmlWindow& operator*() { return m_window; }

    QQuickItem* item(const char* name) { return m_window.find<QQuickItem>(name); }
    bool sees(const char* name) { return item(name)->isVisible(); }

    QAccessibleInterface* accessible(const char* name) {
        return QAccessible::queryAccessibleInterface(m_window.find(name));
    }

private:
    QmlWindow m_window;
};

// A film of ten seconds that stands at its beginning, and a view of it.
inline RoomPiece film(OpenRoom& in, const char* body) {
    in.open(in.clip("long.mp4"));
    in.settle();
    return RoomPiece(in, body);
}

// The main of a test in which films may be drawn, where there is a display.
template <typename Test>
int runWithPlayer(int argc, char** argv) {
    if (qEnvironmentVariable("QT_QPA_PLATFORM") != u"offscreen")
        QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QGuiApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    Test test;
    return QTest::qExec(&test, argc, argv);
}

inline constexpr char wholeRoom[] = "ScreeningRoomView { anchors.fill: parent; room: parent ? parent.room : null }";

} // namespace lumbra

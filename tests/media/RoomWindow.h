// The screening room as it is seen: its view in a window of its own, under an item that hears the keys that mean
// nothing in it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "RoomFixture.h"
#include "support/QmlWindow.h"

Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)

namespace lumbra {

struct RoomWindow {
    static constexpr char view[] = R"(
        required property ScreeningRoom room
        property var passed: []
        property int fades: 0
        Keys.onPressed: event => { passed = [...passed, event.key]; event.accepted = true }
        ScreeningRoomView {
            objectName: "room"
            anchors.fill: parent
            room: parent.room
            onFaded: ++parent.fades
        })";

    // The room must be open.
    explicit RoomWindow(Room& shown, const QSize& size = QSize(900, 540))
        : room(*shown.room),
          window(view, "import Lumbra.Media\n", {{QStringLiteral("room"), QVariant::fromValue(shown.room.get())}},
                 size) {
        if (!QTest::qWaitFor([this] { return room.focused() && window.value("room", "opacity").toDouble() == 1; },
                             patience))
            qFatal("the room does not open");
    }

    void type(const QString& text, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        for (const QChar character : text)
            QTest::keyClick(window.window(), character.toLatin1(), modifiers);
    }

    // The keys that meant nothing so far.
    QVariantList passed() { return window.root()->property("passed").toList(); }

    QColor at(double x, double y) {
        const QImage image = window->grabWindow();
        return image.pixelColor(int(x * image.width()), int(y * image.height()));
    }

    ScreeningRoom& room;
    QmlWindow window;
};

} // namespace lumbra

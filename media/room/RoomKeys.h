// What each key means in the screening room, as a table. Pure; safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <Qt>

#include <optional>

namespace lumbra {

enum class RoomAction : quint8 {
    ignored,
    close,
    previous,
    next,
    seek, // `value`: seconds, backward if negative
    playOrPause,
    copy,
    star,
    info,
    fullScreen,
    shuttle, // `value`: the direction; 0 stands
    step,    // `value`: pictures
    mute,
    jump, // `value`: the part of the duration, 0 to 1
};

struct RoomCommand {
    RoomAction action = RoomAction::ignored;
    double value = 0;

    friend bool operator==(const RoomCommand&, const RoomCommand&) = default;
};

// `text` is what the press types. `usesEngine`: the player plays what is on show.
RoomCommand commandFor(int key, Qt::KeyboardModifiers modifiers, const QString& text, bool usesEngine);

// A key that is held down does this again and again; anything else once.
bool repeats(RoomAction action);

} // namespace lumbra

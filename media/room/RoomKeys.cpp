// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomKeys.h"

#include <array>

namespace lumbra {

namespace {

using enum RoomAction;

constexpr double farSeek = 5; // seconds
constexpr double nearSeek = 1;

// Known by the key itself, whatever is held down with it.
struct KeyRow {
    Qt::Key key;
    RoomCommand withEngine;
    RoomCommand without;
    RoomCommand withEngineAndShift;
};

constexpr std::array keyRows{
    KeyRow{Qt::Key_Escape, {close}, {close}, {close}},
    KeyRow{Qt::Key_Up, {previous}, {previous}, {previous}},
    KeyRow{Qt::Key_Down, {next}, {next}, {next}},
    KeyRow{Qt::Key_Left, {seek, -farSeek}, {previous}, {seek, -nearSeek}},
    KeyRow{Qt::Key_Right, {seek, farSeek}, {next}, {seek, nearSeek}},
    KeyRow{Qt::Key_Space, {playOrPause}, {close}, {playOrPause}},
};

// Known by what they type, so that they lie where the user's layout has them.
struct LetterRow {
    char16_t letter;
    RoomCommand withEngine;
    RoomCommand without;
};

constexpr std::array letterRows{
    LetterRow{u's', {star}, {star}},    LetterRow{u'i', {info}, {info}},   LetterRow{u'f', {fullScreen}, {fullScreen}},
    LetterRow{u'j', {shuttle, -1}, {}}, LetterRow{u'k', {shuttle, 0}, {}}, LetterRow{u'l', {shuttle, 1}, {}},
    LetterRow{u',', {step, -1}, {}},    LetterRow{u'.', {step, 1}, {}},    LetterRow{u'm', {mute}, {}},
};

} // namespace

RoomCommand commandFor(int key, Qt::KeyboardModifiers modifiers, const QString& text, bool usesEngine) {
    for (const KeyRow& row : keyRows) {
        if (row.key != key)
            continue;
        if (!usesEngine)
            return row.without;
        return modifiers.testFlag(Qt::ShiftModifier) ? row.withEngineAndShift : row.withEngine;
    }
    if (key == Qt::Key_C && (modifiers & ~Qt::KeypadModifier) == Qt::ControlModifier)
        return {copy};
    if (modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return {};
    const QString typed = text.toLower();
    if (typed.size() != 1)
        return {};
    for (const LetterRow& row : letterRows)
        if (row.letter == typed.front())
            return usesEngine ? row.withEngine : row.without;
    bool isInteger = false;
    const int digit = typed.toInt(&isInteger);
    if (usesEngine && isInteger)
        return {jump, digit / 10.0};
    return {};
}

bool repeats(RoomAction action) {
    return action == previous || action == next || action == seek || action == step;
}

} // namespace lumbra

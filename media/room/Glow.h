// The light that a picture throws on the room: the picture on a tiny canvas, blurred and more colourful, to be scaled
// up behind it. Pure functions; safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QImage>
#include <QSize>

namespace lumbra::Glow {

// The whole work is done at this size, whatever the room's.
inline constexpr QSize canvas{160, 100};

// The picture stretched over the canvas; null for a null picture.
QImage ofPicture(const QImage& picture);

// Of a sound: light in this colour, in the middle or at another part of the width.
QImage ofSound(const QColor& accent, double centre = 0.5);

// How much of a glow is let through to the room, 0 to 1: a bright picture throws less of its light, so that the
// room stays dark and what is written in it can be read.
double strengthOf(const QImage& glow);

// What lies between two canvases, at a part from 0 to 1 of the way; a null one counts as clear.
QImage between(const QImage& from, const QImage& to, double part);

} // namespace lumbra::Glow

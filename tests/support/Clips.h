// Real films and sounds, made by FFmpeg when first asked for and kept in the build folder for all tests and later runs.
// Small ones: 160 by 90, a few seconds. Tests only read them; what is to be changed is copied first.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QByteArray>
#include <QStringList>

namespace lumbra::Clips {

// One of the names below; fatal if there is no such clip or it can't be made.
//
// Films of 2 seconds with a tone: h264.mp4, hevc.mp4, prores.mov, vp8.webm, vp9.webm, av1.mp4, theora.ogv, mpeg4.avi,
// turned.mp4 (a quarter), stretched.mp4 (pixels twice as wide as high). Without sound: silent.mp4, halves.mp4 (red
// above, blue below, standing), uneven.mp4 (pictures at uneven times), rare.mp4 (4 seconds, one key picture), slow.mp4
// (5 pictures a second), blink.mp4 (0.3 seconds), hours.mp4 (three hours, a picture a second), long.mp4 (10 seconds).
//
// Sounds of 2 seconds: tone.mp3, tone.m4a, tone.flac, tone.ogg, tone.opus, tone.wav, and covered.mp3 with a cover.
Location clip(const char* name);

// A file of that name that FFmpeg makes by other arguments, parted by blanks and without the name. They may take from
// nothing but FFmpeg's own sources and other clips, which @ stands before.
Location made(const char* name, const QString& arguments);

// Runs FFmpeg in a folder, fatal if it fails; returns what it prints.
QByteArray ffmpeg(const QStringList& arguments, const Location& folder = {});

// False where FFmpeg here lacks the encoder.
bool canMake(const char* name);

// A copy at `to` with bytes overwritten at several places behind its header.
void copyDamaged(const Location& clip, const Location& to);

// A copy at `to` of the first part of it alone.
void copyTruncated(const Location& clip, const Location& to, double part);

} // namespace lumbra::Clips

// How loud a sound is along its length, as bars for the scrubber's track.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Reader.h"

#include <QList>

#include <stop_token>

namespace lumbra::Waveform {

// So many bars between `floor` and 1, the loudest 1; none for a file without sound. May take many seconds for a sound
// of hours. Any thread; the task's end reaches the main thread by its `then`.
Tasks::Task<QList<float>> bars(const Location& file, int count, std::stop_token stop = {});

// The same through another reader than Reader::lasting().
Tasks::Task<QList<float>> bars(Reader& reader, const Location& file, int count, std::stop_token stop = {});

// What silence still draws.
inline constexpr float floor = 0.06F;

// The bars of what was measured, in parts of the loudest.
QList<float> barsOf(QList<float> loudness);

} // namespace lumbra::Waveform

// SPDX-License-Identifier: GPL-3.0-or-later
#include "Waveform.h"

#include <algorithm>

namespace lumbra::Waveform {

Tasks::Task<QList<float>> bars(const Location& file, int count, std::stop_token stop) {
    return bars(Reader::lasting(), file, count, std::move(stop));
}

Tasks::Task<QList<float>> bars(Reader& reader, const Location& file, int count, std::stop_token stop) {
    return reader.loudness(file, count, Reader::Urgency::soon, std::move(stop)).map(barsOf);
}

QList<float> barsOf(QList<float> loudness) {
    const float peak = loudness.isEmpty() ? 1 : *std::max_element(loudness.cbegin(), loudness.cend());
    for (float& bar : loudness)
        bar = peak > 0 ? std::max(floor, bar / peak) : floor;
    return loudness;
}

} // namespace lumbra::Waveform

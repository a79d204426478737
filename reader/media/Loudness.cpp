// SPDX-License-Identifier: GPL-3.0-or-later
#include "Loudness.h"

#include "SoundDecoder.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace lumbra::reader {

namespace {

constexpr int samplesASecond = 8000;

// The slices depend on the sound's length, which only its end tells. Up to some two hours, the samples are kept
// meanwhile: 128 MB. A longer sound is decoded once more.
constexpr qint64 mostKept = qint64(1) << 26;

using Samples = std::span<const qint16>;

// Hands on all samples of the file; false if it could not be heard to its end.
bool hear(const OpenedFile& file, std::chrono::milliseconds limit, const std::function<void(Samples)>& take) {
    const std::unique_ptr<MediaFile> media = MediaFile::open(file, limit);
    const std::unique_ptr<SoundDecoder> decoder = media ? SoundDecoder::open(*media, samplesASecond) : nullptr;
    if (!decoder)
        return false;
    for (Samples samples = decoder->next(); !samples.empty(); samples = decoder->next())
        take(samples);
    return !media->isOver();
}

} // namespace

SliceSums::SliceSums(int slices, qint64 samples)
    : m_step(std::max<qint64>(1, samples / slices)), m_sums(size_t(slices)) {}

void SliceSums::add(Samples samples) {
    if (samples.empty())
        return;
    m_last = samples.back();
    while (!samples.empty()) {
        const auto slice = size_t(m_added / m_step);
        if (slice >= m_sums.size())
            return;
        const auto count = std::min(samples.size(), size_t(m_step - m_added % m_step));
        quint64 sum = 0;
        for (const int sample : samples.first(count))
            sum += quint64(sample * sample);
        m_sums[slice] += sum;
        m_added += qint64(count);
        samples = samples.subspan(count);
    }
}

QList<float> SliceSums::rootMeanSquares() const {
    QList<float> values;
    for (size_t slice = 0; slice < m_sums.size(); ++slice) {
        const qint64 begin = qint64(slice) * m_step;
        const qint64 length = std::min(m_step, m_added - begin);
        values.append(length > 0 ? std::sqrt(float(m_sums[slice]) / float(length)) : std::abs(float(m_last)));
    }
    return values;
}

QList<float> loudness(const OpenedFile& file, int slices, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    qint64 count = 0;
    std::vector<std::vector<qint16>> kept;
    const bool isHeard = hear(file, limit, [&](Samples samples) {
        count += qint64(samples.size());
        if (count <= mostKept)
            kept.emplace_back(samples.begin(), samples.end());
        else
            kept.clear();
    });
    if (!isHeard || count == 0)
        return {};
    SliceSums sums(slices, count);
    if (count <= mostKept) {
        for (const std::vector<qint16>& samples : kept)
            sums.add(samples);
    } else {
        const auto left = deadline - std::chrono::steady_clock::now();
        if (!hear(file, std::chrono::duration_cast<std::chrono::milliseconds>(left),
                  [&](Samples samples) { sums.add(samples); }))
            return {};
    }
    return sums.rootMeanSquares();
}

} // namespace lumbra::reader

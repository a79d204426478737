// How loud a sound is along its length: the root mean square of each of so many slices.
//
// A slice is the whole number of samples that fits so often; what remains at the end belongs to none. Slices beyond the
// end of a very short sound hold its last sample.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>

#include <chrono>
#include <span>
#include <vector>

namespace lumbra::reader {

class OpenedFile;

// The sums of slices of known length, over samples as they come.
class SliceSums {
public:
    // For so many slices of a sound of so many samples.
    SliceSums(int slices, qint64 samples);

    void add(std::span<const qint16> samples);

    // In single precision, 0 to 32,768.
    QList<float> rootMeanSquares() const;

private:
    const qint64 m_step;
    qint64 m_added = 0;
    qint16 m_last = 0;
    std::vector<quint64> m_sums; // of squares, exact: below 2^30 for each sample
};

// Of the file's first sound at 8,000 samples a second; empty when there is none, or no time to hear it to its end.
QList<float> loudness(const OpenedFile& file, int slices, std::chrono::milliseconds limit);

} // namespace lumbra::reader

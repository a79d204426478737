// Copies what one regular file holds into a new and empty one, by the cheapest way that the two file systems offer:
// sharing the blocks, copying inside the kernel, or reading and writing. Holes stay holes.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ProgressMeter.h"

#include <sys/stat.h>

#include <vector>

namespace lumbra::files {

class ByteCopy {
public:
    explicit ByteCopy(ProgressMeter& meter) : m_meter(meter) {}

    // What the file systems refused before may be tried again: they may be others now.
    void begin();

    // `facts` are the source's. Throws Failure with the name, and Cancelled.
    void copy(int from, int to, const struct stat& facts, const char* name);

private:
    bool share(int from, int to, const struct stat& facts);
    void startWriting(int to, off_t end);
    void copyRange(int from, int to, off_t begin, off_t end, const char* name);
    ssize_t copyChunk(int from, int to, off_t at, size_t size, const char* name);
    ssize_t copyBuffer(int from, int to, off_t at, size_t size, const char* name);

    ProgressMeter& m_meter;
    std::vector<char> m_buffer;
    off_t m_writtenTo = 0; // of the file under way, what the disk has been told to write
    bool m_mayShare = true;
    bool m_mayCopyInKernel = true;
};

} // namespace lumbra::files

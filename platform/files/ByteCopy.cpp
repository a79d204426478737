// SPDX-License-Identifier: GPL-3.0-or-later
#include "ByteCopy.h"

#include "Failure.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace lumbra::files {

namespace {

constexpr size_t bufferSize = 256 * 1024;       // bytes, as all sizes here
constexpr size_t kernelChunk = 8 * 1024 * 1024; // between two looks at whether it is still wanted
constexpr off_t writeAhead = 8 * 1024 * 1024;
constexpr off_t smallFile = 128 * 1024; // for less, finding a cleverer way costs more than it saves

bool isTheDisk(int code) {
    return code == ENOSPC || code == EDQUOT || code == EFBIG || code == EIO || code == EROFS;
}

} // namespace

void ByteCopy::begin() {
    m_mayShare = true;
    m_mayCopyInKernel = true;
}

void ByteCopy::copy(int from, int to, const struct stat& facts, const char* name) {
    if (facts.st_size <= smallFile) {
        // What the system generates says that it has no bytes: read on to its end.
        off_t end = 0;
        while (const ssize_t done = copyBuffer(from, to, end, bufferSize, name)) {
            end += done;
            if (end == facts.st_size)
                return;
        }
        return;
    }
    if (share(from, to, facts))
        return;

    m_writtenTo = 0;
    off_t end = 0;
    while (end < facts.st_size) {
        off_t begin = end;
        if (facts.st_blocks * 512 < facts.st_size) {
            begin = ::lseek(from, end, SEEK_DATA);
            if (begin < 0 && errno == ENXIO)
                begin = facts.st_size; // nothing but a hole follows
            if (begin < 0)
                throw Failure(errno, name);
            begin = std::min(begin, facts.st_size);
            m_meter.carried(begin - end);
            end = ::lseek(from, begin, SEEK_HOLE);
        }
        if (end <= begin)
            end = facts.st_size;
        copyRange(from, to, begin, std::min(end, facts.st_size), name);
    }
    if (::ftruncate(to, facts.st_size) != 0)
        throw Failure(errno, name);
}

bool ByteCopy::share(int from, int to, const struct stat& facts) {
    if (!m_mayShare)
        return false;
    m_mayShare = ::ioctl(to, FICLONE, from) == 0;
    if (m_mayShare)
        m_meter.carried(facts.st_size);
    return m_mayShare;
}

// Lets the disk begin while the rest is still read: the kernel would wait until a tenth of the memory is to be written,
// and the whole time for that at the end.
void ByteCopy::startWriting(int to, off_t end) {
    if (end - m_writtenTo < writeAhead)
        return;
    ::sync_file_range(to, m_writtenTo, end - m_writtenTo, SYNC_FILE_RANGE_WRITE);
    m_writtenTo = end;
}

void ByteCopy::copyRange(int from, int to, off_t begin, off_t end, const char* name) {
    while (begin < end) {
        const ssize_t done = copyChunk(from, to, begin, size_t(end - begin), name);
        if (done == 0)
            return; // it became shorter, which whoever compares its states will see
        begin += done;
        startWriting(to, begin);
    }
}

ssize_t ByteCopy::copyChunk(int from, int to, off_t at, size_t size, const char* name) {
    if (m_mayCopyInKernel) {
        off_t in = at;
        off_t out = at;
        const ssize_t done = ::copy_file_range(from, &in, to, &out, std::min(size, kernelChunk), 0);
        if (done > 0) {
            m_meter.carried(done);
            return done;
        }
        if (done < 0 && isTheDisk(errno))
            throw Failure(errno, name);
        // Some file systems say that there was nothing to copy when they can't.
        m_mayCopyInKernel = done < 0 && errno == EINTR;
    }
    return copyBuffer(from, to, at, size, name);
}

ssize_t ByteCopy::copyBuffer(int from, int to, off_t at, size_t size, const char* name) {
    m_buffer.resize(bufferSize);
    ssize_t done = 0;
    do
        done = ::pread(from, m_buffer.data(), std::min(size, m_buffer.size()), at);
    while (done < 0 && errno == EINTR);
    if (done < 0)
        throw Failure(errno, name);
    for (ssize_t written = 0; written < done;) {
        const ssize_t more = ::pwrite(to, m_buffer.data() + written, size_t(done - written), at + written);
        if (more < 0 && errno != EINTR)
            throw Failure(errno, name);
        written += std::max<ssize_t>(more, 0);
    }
    if (done > 0)
        m_meter.carried(done);
    return done;
}

} // namespace lumbra::files

// SPDX-License-Identifier: GPL-3.0-or-later
#include "Archive.h"

#include "platform/Descriptor.h"

#include <zip.h>

namespace lumbra::reader {

namespace {

constexpr qsizetype step = 256 * 1024;

} // namespace

std::unique_ptr<Archive> Archive::open(const OpenedFile& file) {
    Descriptor own(::fcntl(file.descriptor(), F_DUPFD_CLOEXEC, 0));
    int error = 0;
    zip_t* const opened = own ? zip_fdopen(own.number(), 0, &error) : nullptr;
    if (!opened)
        return nullptr;
    own.release(); // it is the archive's now
    return std::unique_ptr<Archive>(new Archive(opened));
}

void Archive::discard(zip* opened) {
    zip_discard(opened);
}

QByteArray Archive::entry(const char* name, qint64 limit) const {
    struct Close {
        void operator()(zip_file_t* file) const { zip_fclose(file); }
    };
    const std::unique_ptr<zip_file_t, Close> file(zip_fopen(m_zip.get(), name, 0));
    QByteArray bytes;
    while (file) {
        // What the archive says of the size is not believed.
        const qsizetype before = bytes.size();
        bytes.resize(before + step);
        const zip_int64_t read = zip_fread(file.get(), bytes.data() + before, zip_uint64_t(step));
        if (read < 0 || before + read > limit)
            return {};
        bytes.truncate(before + read);
        if (read == 0)
            break;
    }
    return bytes;
}

} // namespace lumbra::reader

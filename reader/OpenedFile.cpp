// SPDX-License-Identifier: GPL-3.0-or-later
#include "OpenedFile.h"

#include <unistd.h>

#include <algorithm>

namespace lumbra::reader {

namespace {

constexpr qsizetype headSize = 4096;

} // namespace

std::unique_ptr<OpenedFile> OpenedFile::open(const QByteArray& path) {
    const Location location(path); // owns what the extension looks into
    auto file = RegularFile::open(location);
    if (!file || file->size() == 0)
        return nullptr;
    const struct stat& facts = file->facts();
    const Identity identity{facts.st_dev, facts.st_ino, facts.st_size, facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec};
    const std::string_view extension = location.extension();
    return std::unique_ptr<OpenedFile>(new OpenedFile(
        std::move(*file), identity, QByteArray(extension.data(), qsizetype(extension.size())).toLower()));
}

OpenedFile::OpenedFile(RegularFile file, const Identity& identity, QByteArray extension)
    : m_file(std::move(file)), m_identity(identity), m_head(headSize, '\0'), m_extension(std::move(extension)) {
    const ssize_t read = ::pread(descriptor(), m_head.data(), size_t(m_head.size()), 0);
    m_head.truncate(std::max<ssize_t>(read, 0));
}

QFile& OpenedFile::device() {
    m_device = std::make_unique<QFile>();
    if (m_device->open(descriptor(), QIODevice::ReadOnly, QFileDevice::DontCloseHandle))
        m_device->seek(0);
    return *m_device;
}

QByteArray OpenedFile::bytes(qint64 limit) {
    return device().read(std::min(limit, size()));
}

} // namespace lumbra::reader

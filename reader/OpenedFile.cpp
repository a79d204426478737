// SPDX-License-Identifier: GPL-3.0-or-later
#include "OpenedFile.h"

#include "platform/Location.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumbra::reader {

namespace {

constexpr qsizetype headSize = 4096;

bool isRegular(const struct stat& status) {
    return S_ISREG(status.st_mode);
}

} // namespace

std::unique_ptr<OpenedFile> OpenedFile::open(const QByteArray& path) {
    struct stat status;
    // Asked before, since to open a device may already move it; and again after, since it may be another one by then.
    if (::stat(path.constData(), &status) != 0 || !isRegular(status))
        return nullptr;
    const int descriptor = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return nullptr;
    if (::fstat(descriptor, &status) != 0 || !isRegular(status) || status.st_size == 0) {
        ::close(descriptor);
        return nullptr;
    }
    const Location location(path); // owns what the extension looks into
    const std::string_view extension = location.extension();
    const Identity identity{status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec,
                            status.st_mtim.tv_nsec};
    return std::unique_ptr<OpenedFile>(
        new OpenedFile(descriptor, identity, QByteArray(extension.data(), qsizetype(extension.size())).toLower()));
}

OpenedFile::OpenedFile(int descriptor, const Identity& identity, QByteArray extension)
    : m_descriptor(descriptor), m_identity(identity), m_head(headSize, '\0'), m_extension(std::move(extension)) {
    const ssize_t read = ::pread(m_descriptor, m_head.data(), size_t(m_head.size()), 0);
    m_head.truncate(std::max<ssize_t>(read, 0));
}

OpenedFile::~OpenedFile() {
    ::close(m_descriptor);
}

QFile& OpenedFile::device() {
    m_device = std::make_unique<QFile>();
    if (m_device->open(m_descriptor, QIODevice::ReadOnly, QFileDevice::DontCloseHandle))
        m_device->seek(0);
    return *m_device;
}

QByteArray OpenedFile::bytes(qint64 limit) {
    return device().read(std::min(limit, size()));
}

} // namespace lumbra::reader

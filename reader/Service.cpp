// SPDX-License-Identifier: GPL-3.0-or-later
#include "Service.h"

#include "OpenedFile.h"
#include "Pictures.h"
#include "Sandbox.h"

#include <QImage>

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>

namespace lumbra::reader {

namespace {

Answer thumbnail(const Request& request, OpenedFile& file, std::span<uchar> arena) {
    const std::optional<PictureBox> box = decodedPictureBox(request.details);
    if (!box)
        return {};
    const QImage picture = Pictures::thumbnail(file, box->size, std::chrono::milliseconds(request.limit));
    const auto bytes = size_t(picture.width()) * size_t(picture.height()) * 4;
    if (picture.isNull() || bytes > arena.size())
        return {};
    const bool opaque = picture.format() == QImage::Format_RGB32;
    const auto row = size_t(picture.width()) * 4;
    for (int y = 0; y < picture.height(); ++y)
        std::memcpy(arena.data() + size_t(y) * row, picture.constScanLine(y), row);
    return {.found = true, .details = encoded(PictureFacts{picture.size(), opaque}), .bulk = quint32(bytes)};
}

} // namespace

Service::Service(int socket, int arena) : m_socket(socket) {
    void* const memory = ::mmap(nullptr, size_t(arenaSize), PROT_READ | PROT_WRITE, MAP_SHARED, arena, 0);
    if (memory != MAP_FAILED)
        m_arena = {static_cast<uchar*>(memory), size_t(arenaSize)};
}

Service::~Service() {
    if (isReady())
        ::munmap(m_arena.data(), m_arena.size());
}

int Service::run() {
    if (!send({}))
        return 0;
    QByteArray message;
    while (true) {
        message.resize(messageLimit + 1);
        const ssize_t size = ::read(m_socket, message.data(), size_t(message.size()));
        if (size < 0 && errno == EINTR)
            continue;
        if (size <= 0)
            return 0;
        message.truncate(size);
        const std::optional<Request> request = decodedRequest(message);
        if (!request)
            return 1;
        if (!send(answer(*request)))
            return 0;
    }
}

Answer Service::answer(const Request& request) {
    Sandbox::limitProcessorTime(std::chrono::milliseconds(request.limit));
    Answer made;
    try {
        if (const std::unique_ptr<OpenedFile> file = OpenedFile::open(request.path)) {
            switch (request.kind) {
            case Kind::thumbnail:
                made = thumbnail(request, *file, m_arena);
            }
        }
    } catch (const std::bad_alloc&) {
        // The limit of the address space: this file wants too much.
        made = {};
    }
    made.number = request.number;
    return made;
}

bool Service::send(const Answer& answer) {
    const QByteArray message = encoded(answer);
    return ::write(m_socket, message.constData(), size_t(message.size())) == message.size();
}

} // namespace lumbra::reader

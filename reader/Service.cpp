// SPDX-License-Identifier: GPL-3.0-or-later
#include "Service.h"

#include "Interruption.h"
#include "OpenedFile.h"
#include "PictureBytes.h"
#include "Pictures.h"
#include "Sandbox.h"

#include <QImage>

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <new>

namespace lumbra::reader {

namespace {

Answer thumbnail(const Request& request, OpenedFile& file, std::span<uchar> arena) {
    const std::optional<PictureBox> box = decodedPictureBox(request.details);
    if (!box)
        return {};
    const QImage picture = Pictures::thumbnail(file, box->size, std::chrono::milliseconds(request.limit));
    const size_t bytes = PictureBytes::write(picture, arena);
    if (bytes == 0)
        return {};
    return {.found = true, .details = encoded(PictureBytes::facts(picture)), .bulk = quint32(bytes)};
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
    Interruption::listenTo(m_socket);
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
        if (isStop(message))
            continue; // it came too late
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
        if (std::unique_ptr<OpenedFile> file = OpenedFile::open(request.path)) {
            switch (request.kind) {
            case Kind::thumbnail:
                made = thumbnail(request, *file, m_arena);
                break;
            case Kind::mediaFacts:
                made = m_media.facts(request, *file);
                break;
            case Kind::frames:
                made = m_media.frames(request, std::move(file), m_arena);
                break;
            case Kind::loudness:
                made = m_media.loudness(request, *file, m_arena);
                break;
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

// SPDX-License-Identifier: GPL-3.0-or-later
#include "Service.h"

#include "Interruption.h"
#include "OpenedFile.h"
#include "PictureBytes.h"
#include "Pictures.h"
#include "Plugins.h"
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

Answer pixels(OpenedFile& file) {
    const PixelSize pixels{Pictures::pixels(file)};
    const QByteArray details = encoded(pixels);
    return decodedPixelSize(details) ? Answer{.found = true, .details = details} : Answer{};
}

Answer ofFilm(const Request& request, std::unique_ptr<OpenedFile> file, std::span<uchar> arena) {
    FilmDecoder* const decoder = FilmDecoder::shared();
    if (!decoder)
        return {};
    return request.kind == Kind::mediaFacts ? decoder->facts(request, *file)
           : request.kind == Kind::frames   ? decoder->frames(request, std::move(file), arena)
                                            : decoder->loudness(request, *file, arena);
}

} // namespace

Service::Service(int socket, int memory) : m_socket(socket) {
    void* const mapped = ::mmap(nullptr, size_t(SharedBlock::size), PROT_READ | PROT_WRITE, MAP_SHARED, memory, 0);
    if (mapped != MAP_FAILED)
        m_block = SharedBlock(static_cast<uchar*>(mapped));
}

Service::~Service() {
    if (isReady())
        ::munmap(m_block.memory(), size_t(SharedBlock::size));
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
    const std::span<uchar> arena = m_block.arenaOf(request.number);
    Sandbox::limitProcessorTime(std::chrono::milliseconds(request.limit));
    Interruption::lookAt(m_block, request.number);
    Answer made;
    try {
        std::unique_ptr<OpenedFile> file = Interruption::isRequested() ? nullptr : OpenedFile::open(request.path);
        if (file) {
            switch (request.kind) {
            case Kind::thumbnail:
                made = thumbnail(request, *file, arena);
                break;
            case Kind::pixels:
                made = pixels(*file);
                break;
            case Kind::mediaFacts:
            case Kind::frames:
            case Kind::loudness:
                made = ofFilm(request, std::move(file), arena);
                break;
            case Kind::pages:
                made = m_pages.pages(std::move(file), arena);
                break;
            case Kind::page:
                made = m_pages.page(request, std::move(file), arena);
                break;
            case Kind::pageText:
                made = m_pages.text(request, std::move(file), arena);
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

// A reader whose decoder has been taken over: it does what the requested file's first word tells it, inside the same
// sandbox as the real one. Any other file is a white pixel.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/reader/Protocol.h"
#include "reader/Sandbox.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

using namespace lumbra::reader;

namespace {

void say(const QByteArray& message) {
    [[maybe_unused]] const auto written = ::write(socketDescriptor, message.constData(), size_t(message.size()));
}

Answer pixel(quint32 number) {
    return {.number = number, .found = true, .details = encoded(PictureFacts{{1, 1}, true}), .bulk = 4};
}

QByteArray firstWord(const QByteArray& path) {
    char text[64] = {};
    const int file = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    [[maybe_unused]] const auto size = ::read(file, text, sizeof text - 1);
    ::close(file);
    return QByteArray(text);
}

// Each answers a picture only if it could do what it must not.
bool couldDo(const QByteArray& deed, const QByteArray& path) {
    if (deed == "write")
        return ::open((path + ".made").constData(), O_WRONLY | O_CREAT, 0600) >= 0;
    if (deed == "connect")
        return ::socket(AF_INET, SOCK_STREAM, 0) >= 0 || ::socket(AF_UNIX, SOCK_STREAM, 0) >= 0;
    if (deed == "run")
        return ::fork() >= 0 || ::execl("/bin/true", "true", nullptr) == 0;
    if (deed == "shrink")
        return ::ftruncate(arenaDescriptor, 0) == 0;
    if (deed == "grow")
        return ::ftruncate(arenaDescriptor, arenaSize * 2) == 0;
    return false;
}

// Nonsense that is sent; empty for the deeds that are something else.
QByteArray nonsense(const QByteArray& deed, const Request& request) {
    Answer answer = pixel(request.number);
    if (deed == "babble")
        return "what was the question?";
    if (deed == "shout")
        return QByteArray(60'000, 'a');
    if (deed == "greet")
        return encoded(Answer{});
    if (deed == "other")
        answer.number += 1;
    else if (deed == "endless")
        answer.bulk = quint32(arenaSize) + 1;
    else if (deed == "huge")
        answer.details = encoded(PictureFacts{{longestSide, longestSide}, true});
    else
        return {};
    return encoded(answer);
}

void misbehave(const QByteArray& deed, const Request& request) {
    if (deed == "exit")
        ::_exit(0);
    if (deed == "crash")
        std::abort();
    if (deed == "stall")
        std::this_thread::sleep_for(std::chrono::hours(1));
    if (deed == "spin")
        while (true)
            std::this_thread::yield();
    if (deed == "flood")
        while (true)
            say(encoded(pixel(request.number)));
    const QByteArray message = nonsense(deed, request);
    if (!message.isEmpty() || deed == "silence")
        return say(message);
    if (couldDo(deed, request.path))
        say(encoded(pixel(request.number)));
    else
        say(encoded(Answer{.number = request.number}));
}

} // namespace

int main() {
    Sandbox::tieToParent();
    void* const arena = ::mmap(nullptr, size_t(arenaSize), PROT_READ | PROT_WRITE, MAP_SHARED, arenaDescriptor, 0);
    if (arena == MAP_FAILED || !Sandbox::enter())
        return 1;
    say(encoded(Answer{}));
    char message[messageLimit];
    while (true) {
        const ssize_t size = ::read(socketDescriptor, message, sizeof message);
        if (size <= 0)
            return 0;
        const auto request = decodedRequest(QByteArray(message, size));
        if (!request)
            return 1;
        const QByteArray deed = firstWord(request->path);
        if (deed == "fine") {
            std::memset(arena, 0xff, 4);
            say(encoded(pixel(request->number)));
        } else {
            misbehave(deed, *request);
        }
    }
}

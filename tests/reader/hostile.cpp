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
    if (deed == "babble")
        say("what was the question?");
    if (deed == "silence")
        say({});
    if (deed == "shout")
        say(QByteArray(60'000, 'a'));
    if (deed == "other")
        say(encoded(pixel(request.number + 1)));
    if (deed == "greet")
        say(encoded(Answer{}));
    if (deed == "endless") {
        Answer answer = pixel(request.number);
        answer.bulk = quint32(arenaSize) + 1;
        say(encoded(answer));
    }
    if (deed == "huge") {
        Answer answer = pixel(request.number);
        answer.details = encoded(PictureFacts{{longestSide, longestSide}, true});
        say(encoded(answer));
    }
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

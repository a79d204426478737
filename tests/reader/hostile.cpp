// A reader whose decoder has been taken over: it does what the requested file's first word tells it, inside the same
// sandbox as the real one. Of a fine file it makes a white pixel, a film of a second, a frame or a loud sound.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/reader/SharedBlock.h"
#include "reader/Sandbox.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

using namespace lumbra::reader;

namespace {

void say(const QByteArray& message) {
    [[maybe_unused]] const auto written = ::write(socketDescriptor, message.constData(), size_t(message.size()));
}

constexpr PictureFacts pixel{{1, 1}, true};
constexpr PictureFacts tooLarge{{longestSide, longestSide}, true};

Answer fineAnswer(const Request& request) {
    Answer answer{.number = request.number, .found = true};
    switch (request.kind) {
    case Kind::thumbnail:
        answer.details = encoded(pixel);
        answer.bulk = 4;
        break;
    case Kind::mediaFacts:
        answer.details = encoded(MediaFacts{1, true, true});
        break;
    case Kind::pixels:
        answer.details = encoded(PixelSize{{1, 1}});
        break;
    case Kind::frames:
        answer.details = encoded(FramesFacts{{pixel}});
        answer.bulk = 4;
        break;
    case Kind::loudness:
        answer.bulk = quint32(decodedLoudnessWish(request.details)->count) * quint32(sizeof(float));
        break;
    case Kind::pages:
        answer.details = encoded(PagesFacts{.count = 0, .isLocked = true});
        break;
    case Kind::page:
        answer.details = encoded(pixel);
        answer.bulk = 4;
        break;
    case Kind::pageText:
        answer.details = encoded(PageTextFacts{});
        break;
    }
    return answer;
}

// It would fit the protocol, but not what was asked or what came with it.
void makeSenseless(Answer& answer, Kind kind) {
    switch (kind) {
    case Kind::thumbnail:
        answer.details = encoded(tooLarge);
        break;
    case Kind::mediaFacts:
        answer.details = encoded(MediaFacts{-1, true, true});
        break;
    case Kind::pixels:
        answer.details = encoded(PixelSize{{longestPicture + 1, 1}});
        break;
    case Kind::frames:
        answer.details = encoded(FramesFacts{{tooLarge}});
        answer.bulk = quint32(arenaSize);
        break;
    case Kind::loudness:
        answer.bulk += 4;
        break;
    case Kind::pages:
        answer.details = encoded(PagesFacts{.count = 2, .isLocked = false});
        answer.bulk = 8;
        break;
    case Kind::page:
        answer.details = encoded(tooLarge);
        break;
    case Kind::pageText:
        answer.details = encoded(PageTextFacts{.places = mostPlaces});
        break;
    }
}

QByteArray firstWord(const QByteArray& path) {
    char text[64] = {};
    const int file = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    [[maybe_unused]] const auto size = ::read(file, text, sizeof text - 1);
    ::close(file);
    return QByteArray(text);
}

bool canTake(qsizetype memory) {
    constexpr qsizetype step = 64 << 20;
    for (qsizetype taken = 0; taken < memory; taken += step) {
        if (::mmap(nullptr, size_t(step), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) == MAP_FAILED)
            return false;
    }
    return true;
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
        return ::ftruncate(blockDescriptor, 0) == 0;
    if (deed == "grow")
        return ::ftruncate(blockDescriptor, SharedBlock::size * 2) == 0;
    if (deed == "hoard")
        return Sandbox::boundsMemory && canTake(qsizetype(3) << 30);
    if (deed == "signal")
        return ::kill(::getppid(), 0) == 0 || ::fcntl(socketDescriptor, F_SETOWN, ::getppid()) == 0;
    if (deed == "look")
        return ::syscall(SYS_process_vm_readv, ::getppid(), nullptr, 0, nullptr, 0, 0) == 0;
    return false;
}

// Nonsense that is sent; empty for the deeds that are something else.
QByteArray nonsense(const QByteArray& deed, const Request& request) {
    Answer answer = fineAnswer(request);
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
        makeSenseless(answer, request.kind);
    else
        return {};
    return encoded(answer);
}

void waitForStop(const SharedBlock& block, quint32 number) {
    while (!block.isStopped(number))
        std::this_thread::yield();
}

// Each answers rightly.
void scribbleFor(const Request& request, const SharedBlock& block) {
    say(encoded(fineAnswer(request)));
    while (true)
        std::ranges::fill(block.arenaOf(request.number).first(4096), uchar(0x55));
}

void breakOff(const Request& request) {
    Answer answer = fineAnswer(request);
    answer.details = encoded(FramesFacts{{pixel}, false});
    say(encoded(answer));
}

void misbehave(const QByteArray& deed, const Request& request, const SharedBlock& block) {
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
            say(encoded(fineAnswer(request)));
    if (deed == "obey")
        waitForStop(block, request.number);
    if (deed == "scribble")
        scribbleFor(request, block);
    if (deed == "break off")
        return breakOff(request);
    const QByteArray message = nonsense(deed, request);
    if (!message.isEmpty() || deed == "silence")
        return say(message);
    if (couldDo(deed, request.path))
        say(encoded(fineAnswer(request)));
    else
        say(encoded(Answer{.number = request.number}));
}

} // namespace

int main() {
    Sandbox::tieToParent();
    void* const memory =
        ::mmap(nullptr, size_t(SharedBlock::size), PROT_READ | PROT_WRITE, MAP_SHARED, blockDescriptor, 0);
    if (memory == MAP_FAILED || !Sandbox::enter())
        return 1;
    const SharedBlock block(static_cast<uchar*>(memory));
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
        if (block.isStopped(request->number)) {
            say(encoded(Answer{.number = request->number}));
        } else if (deed == "fine") {
            std::memset(block.arenaOf(request->number).data(), request->kind == Kind::loudness ? 0 : 0xff, 4);
            say(encoded(fineAnswer(*request)));
        } else {
            misbehave(deed, *request, block);
        }
    }
}

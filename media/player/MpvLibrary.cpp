// SPDX-License-Identifier: GPL-3.0-or-later
#include "MpvLibrary.h"

#include <QLibrary>

namespace lumbra {

namespace {

// With its version: the name without one belongs to the package for developers.
constexpr char libraryName[] = "libmpv.so.2";

constexpr int quiet = -8; // FFmpeg's AV_LOG_QUIET

// What the decoders think of a file is said nowhere; they would write it over the terminal. Looked up through libmpv,
// which finds it in the very FFmpeg that libmpv uses.
void silenceDecoders(QLibrary& library) {
    using SetLevel = void (*)(int);
    if (const auto setLevel = reinterpret_cast<SetLevel>(library.resolve("av_log_set_level")))
        setLevel(quiet);
}

} // namespace

std::unique_ptr<const MpvLibrary> MpvLibrary::load(const char* name) {
    QLibrary library(QString::fromLatin1(name));
    library.setLoadHints(QLibrary::PreventUnloadHint);
    if (!library.load())
        return nullptr;
    auto found = std::make_unique<MpvLibrary>();
    bool isWhole = true;
#define LUMBRA_MPV_FUNCTION(name)                                                                                      \
    found->name = reinterpret_cast<decltype(found->name)>(library.resolve("mpv_" #name));                              \
    isWhole = isWhole && found->name;
    LUMBRA_MPV_FUNCTIONS(LUMBRA_MPV_FUNCTION)
#undef LUMBRA_MPV_FUNCTION
    if (!isWhole)
        return nullptr;
    silenceDecoders(library);
    return found;
}

const MpvLibrary* MpvLibrary::shared() {
    // Never destroyed: players on their way out still call it.
    static const MpvLibrary* const library = load(libraryName).release();
    return library;
}

} // namespace lumbra

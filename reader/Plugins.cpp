// SPDX-License-Identifier: GPL-3.0-or-later
#include "Plugins.h"

#include "Interruption.h"

#include <QCoreApplication>
#include <QLibrary>

namespace lumbra::reader {

namespace {

template <typename Decoder>
Decoder* loaded(QLatin1String name, const char* function) {
    QLibrary library(QCoreApplication::applicationDirPath() + u'/' + name);
    library.setLoadHints(QLibrary::PreventUnloadHint);
    const auto make = reinterpret_cast<Decoder* (*)(IsInterrupted)>(library.resolve(function));
    return make ? make(&Interruption::isRequested) : nullptr;
}

} // namespace

FilmDecoder* FilmDecoder::shared() {
    static FilmDecoder* const decoder =
        loaded<FilmDecoder>(QLatin1String("lumbra-reader-media.so"), "lumbraFilmDecoder");
    return decoder;
}

VipsDecoder* VipsDecoder::shared() {
    static VipsDecoder* const decoder =
        loaded<VipsDecoder>(QLatin1String("lumbra-reader-vips.so"), "lumbraVipsDecoder");
    return decoder;
}

} // namespace lumbra::reader

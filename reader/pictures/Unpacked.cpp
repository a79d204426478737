// SPDX-License-Identifier: GPL-3.0-or-later
#include "Unpacked.h"

#include <zlib.h>
#include <zstd.h>

#include <memory>

namespace lumbra::reader {

namespace {

constexpr qsizetype step = 64 * 1024;

// How far back a stream may refer, in powers of two: 64 MiB.
constexpr int zstdWindow = 26;

QByteArray unpackedByZlib(const QByteArray& packed, qint64 limit) {
    z_stream stream{};
    constexpr int gzip = 16;
    if (inflateInit2(&stream, MAX_WBITS + gzip) != Z_OK)
        return {};
    // The interface is older than const.
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.constData()));
    stream.avail_in = uInt(packed.size());
    QByteArray made;
    for (int state = Z_OK; state == Z_OK && made.size() < limit;) {
        const qsizetype before = made.size(), room = qsizetype(std::min<qint64>(step, limit - before));
        made.resize(before + room);
        stream.next_out = reinterpret_cast<Bytef*>(made.data() + before);
        stream.avail_out = uInt(room);
        state = inflate(&stream, Z_NO_FLUSH);
        made.truncate(before + room - qsizetype(stream.avail_out));
        if (made.size() == before)
            break;
    }
    inflateEnd(&stream);
    return made;
}

QByteArray unpackedByZstd(const QByteArray& packed, qint64 limit) {
    const std::unique_ptr<ZSTD_DCtx, decltype(&ZSTD_freeDCtx)> context(ZSTD_createDCtx(), &ZSTD_freeDCtx);
    if (!context || ZSTD_isError(ZSTD_DCtx_setParameter(context.get(), ZSTD_d_windowLogMax, zstdWindow)))
        return {};
    ZSTD_inBuffer in{packed.constData(), size_t(packed.size()), 0};
    QByteArray made;
    while (made.size() < limit) {
        const qsizetype before = made.size(), room = qsizetype(std::min<qint64>(step, limit - before));
        made.resize(before + room);
        ZSTD_outBuffer out{made.data() + before, size_t(room), 0};
        const size_t state = ZSTD_decompressStream(context.get(), &out, &in);
        made.truncate(before + qsizetype(out.pos));
        if (ZSTD_isError(state) || (out.pos == 0 && in.pos == in.size))
            break;
    }
    return made;
}

} // namespace

QByteArray unpacked(const QByteArray& packed, qint64 limit) {
    if (packed.startsWith("\x1f\x8b"))
        return unpackedByZlib(packed, limit);
    if (packed.startsWith("\x28\xb5\x2f\xfd"))
        return unpackedByZstd(packed, limit);
    return {};
}

} // namespace lumbra::reader

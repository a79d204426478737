// Files of formats that no tool of the tests writes, made by hand around a picture: documents, scenes, raw photographs,
// music with a cover.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QByteArrayList>
#include <QImage>
#include <QRect>
#include <QtEndian>

#include <zip.h>

#include <array>
#include <utility>
#include <vector>

namespace lumbra::made {

inline QByteArray encoded(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format))
        qFatal("cannot write %s", format);
    return bytes;
}

template <typename Number>
QByteArray little(Number number) {
    QByteArray bytes(sizeof number, '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

template <typename Number>
QByteArray big(Number number) {
    QByteArray bytes(sizeof number, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

using Entries = std::vector<std::pair<QByteArray, QByteArray>>;

inline void zip(const QString& path, const Entries& entries) {
    int error = 0;
    zip_t* const archive = zip_open(path.toUtf8().constData(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    bool isMade = archive != nullptr;
    for (const auto& [name, bytes] : entries) {
        zip_source_t* const source = zip_source_buffer(archive, bytes.constData(), zip_uint64_t(bytes.size()), 0);
        isMade = isMade && source && zip_file_add(archive, name.constData(), source, ZIP_FL_OVERWRITE) >= 0;
    }
    if (!isMade || zip_close(archive) != 0)
        qFatal("cannot write %s", qPrintable(path));
}

inline void zip(const QString& path, const QByteArray& name, const QByteArray& entry) {
    zip(path, Entries{{name, entry}});
}

inline QByteArray pixels(const QImage& image, QImage::Format format, int bytesPerPixel) {
    const QImage plain = image.convertToFormat(format);
    QByteArray bytes;
    for (int y = 0; y < plain.height(); ++y)
        bytes.append(reinterpret_cast<const char*>(plain.constScanLine(y)), qsizetype(plain.width()) * bytesPerPixel);
    return bytes;
}

enum class Blender { pointersOf8, pointersOf4, bigEndian, fifth };

inline QByteArray blend(const QImage& image, Blender layout = Blender::pointersOf8) {
    const bool isBig = layout == Blender::bigEndian, isFifth = layout == Blender::fifth;
    const auto number = [isBig](qint32 value) { return isBig ? big(value) : little(value); };
    const auto block = [&](const QByteArray& code, const QByteArray& data) {
        if (isFifth)
            return code + little(qint32(0)) + QByteArray(8, '\0') + little(qint64(data.size())) + little(qint64(1))
                   + data;
        const int pointer = layout == Blender::pointersOf4 ? 4 : 8;
        return code + number(qint32(data.size())) + QByteArray(pointer, '\0') + number(0) + number(1) + data;
    };
    const QByteArray head = isFifth                          ? "BLENDER17-01v0500"
                            : layout == Blender::pointersOf4 ? "BLENDER_v306"
                            : isBig                          ? "BLENDER-V306"
                                                             : "BLENDER-v306";
    return head + block("REND", QByteArray(72, '\0'))
           + block("TEST", number(image.width()) + number(image.height())
                               + pixels(image.mirrored(), QImage::Format_RGBA8888, 4))
           + block("GLOB", QByteArray(64, '\0'));
}

// PostScript with a TIFF beside it, and with digits in it.
inline QByteArray postscript(const QByteArray& tiff) {
    const QByteArray program("%!PS-Adobe-3.0 EPSF-3.0\nshowpage\n");
    return "\xc5\xd0\xd3\xc6" + little(quint32(30)) + little(quint32(program.size())) + QByteArray(8, '\0')
           + little(quint32(30 + program.size())) + little(quint32(tiff.size())) + "\xff\xff" + program + tiff;
}

inline QByteArray postscriptOfDigits(const QImage& image) {
    QByteArray digits;
    for (int y = 0; y < image.height(); ++y) {
        digits += "% ";
        for (int x = 0; x < image.width(); ++x)
            digits += QByteArray(1, char(255 - qGray(image.pixel(x, y)))).toHex();
        digits += '\n';
    }
    return "%!PS-Adobe-3.0 EPSF-3.0\n%%BeginPreview: " + QByteArray::number(image.width()) + ' '
           + QByteArray::number(image.height()) + " 8 " + QByteArray::number(image.height()) + '\n' + digits
           + "%%EndPreview\nshowpage\n";
}

// A digital negative: a preview of plain colours, and the sensor's own picture, which is white.
inline QByteArray rawPhotograph(const QImage& preview, quint16 orientation = 1) {
    struct Tag {
        quint16 number, type;
        QByteArray data;
    };
    constexpr quint16 byte = 1, ascii = 2, word = 3, longWord = 4;
    const auto words = [](std::initializer_list<quint16> values) {
        QByteArray bytes;
        for (const quint16 value : values)
            bytes += little(value);
        return bytes;
    };
    const auto one = [](quint32 value) { return little(value); };
    // Values of more than four bytes lie behind the table.
    const auto directory = [](const std::vector<Tag>& tags, quint32 start) {
        QByteArray table = little(quint16(tags.size())), behind;
        const auto behindAt = quint32(start + 2 + tags.size() * 12 + 4);
        for (const Tag& tag : tags) {
            const int size = tag.type == 4 ? 4 : tag.type == 3 ? 2 : 1;
            table += little(tag.number) + little(tag.type) + little(quint32(tag.data.size() / size));
            if (tag.data.size() <= 4) {
                table += tag.data.leftJustified(4, '\0');
            } else {
                table += little(quint32(behindAt + quint32(behind.size())));
                behind += tag.data.size() % 2 ? tag.data + '\0' : tag.data;
            }
        }
        return table + QByteArray(4, '\0') + behind;
    };
    constexpr quint32 side = 64;
    const QByteArray sensor = little(quint16(0x3fff)).repeated(side * side);
    const QByteArray plain = pixels(preview, QImage::Format_RGB888, 3);
    constexpr quint32 firstAt = 8, secondAt = 1024, sensorAt = 2048;
    const auto previewAt = quint32(sensorAt + quint32(sensor.size()));
    const QByteArray first = directory({{254, longWord, one(1)},
                                        {256, longWord, one(quint32(preview.width()))},
                                        {257, longWord, one(quint32(preview.height()))},
                                        {258, word, words({8, 8, 8})},
                                        {259, word, words({1})},
                                        {262, word, words({2})},
                                        {271, ascii, QByteArray("Maker\0", 6)},
                                        {272, ascii, QByteArray("Model\0", 6)},
                                        {273, longWord, one(previewAt)},
                                        {274, word, words({orientation})},
                                        {277, word, words({3})},
                                        {278, longWord, one(quint32(preview.height()))},
                                        {279, longWord, one(quint32(plain.size()))},
                                        {330, longWord, one(secondAt)},
                                        {50706, byte, QByteArray("\1\4\0\0", 4)},
                                        {50708, ascii, QByteArray("Maker Model\0", 12)}},
                                       firstAt);
    const QByteArray second = directory({{254, longWord, one(0)},
                                         {256, longWord, one(side)},
                                         {257, longWord, one(side)},
                                         {258, word, words({16})},
                                         {259, word, words({1})},
                                         {262, word, words({32803})},
                                         {273, longWord, one(sensorAt)},
                                         {277, word, words({1})},
                                         {278, longWord, one(side)},
                                         {279, longWord, one(quint32(sensor.size()))},
                                         {33421, word, words({2, 2})},
                                         {33422, byte, QByteArray("\0\1\1\2", 4)}},
                                        secondAt);
    const QByteArray start = QByteArray("II*\0", 4) + little(firstAt) + first;
    return start.leftJustified(secondAt, '\0') + second.leftJustified(sensorAt - secondAt, '\0') + sensor + plain;
}

// One layer of an animation of forty by thirty, and an archive of such an animation.
inline QByteArray layer(const QByteArray& facts, QPoint place) {
    const QByteArray at = QByteArray::number(place.x()) + ',' + QByteArray::number(place.y());
    return "{" + facts
           + ",\"ip\":0,\"op\":30,\"st\":0,\"ks\":{\"o\":{\"a\":0,\"k\":100},\"r\":{\"a\":0,\"k\":0},\"p\":{\"a\":0,"
             "\"k\":["
           + at + ",0]},\"a\":{\"a\":0,\"k\":[0,0,0]},\"s\":{\"a\":0,\"k\":[100,100,100]}}}";
}

inline QByteArray solidLayer(const QByteArray& colour, QRect place) {
    return layer("\"ty\":1,\"sw\":" + QByteArray::number(place.width())
                     + ",\"sh\":" + QByteArray::number(place.height()) + ",\"sc\":\"" + colour + "\"",
                 place.topLeft());
}

inline void animation(const QString& path, const QByteArrayList& layers, const QByteArray& assets = {}) {
    zip(path, {{"manifest.json", "{\"animations\":[{\"id\":\"one\"}]}"},
               {"animations/one.json", "{\"v\":\"5.5.0\",\"fr\":30,\"ip\":0,\"op\":30,\"w\":40,\"h\":30,\"assets\":["
                                           + assets + "],\"layers\":[" + layers.join(',') + "]}"}});
}

inline void quarteredAnimation(const QString& path) {
    animation(path, {solidLayer("#ff0000", {0, 0, 20, 15}), solidLayer("#00ff00", {20, 0, 20, 15}),
                     solidLayer("#0000ff", {0, 15, 20, 15}), solidLayer("#ffffff", {20, 15, 20, 15})});
}

// A tag of a cover, as music of many containers has it.
inline QByteArray id3(const QByteArray& cover, const QByteArray& type = "image/png") {
    const QByteArray frame = QByteArray(1, '\0') + type + QByteArray("\0\3\0", 3) + cover;
    const QByteArray body = "APIC" + big(quint32(frame.size())) + QByteArray(2, '\0') + frame;
    QByteArray size;
    for (const int shift : {21, 14, 7, 0})
        size += char(body.size() >> shift & 0x7f);
    return QByteArray("ID3\3\0\0", 6) + size + body;
}

// The same as the containers of free codecs have it, in their own tag.
inline QByteArray coverBlock(const QByteArray& cover, QSize pixels) {
    const QByteArray type("image/png");
    return (big(quint32(3)) + big(quint32(type.size())) + type + big(quint32(0)) + big(quint32(pixels.width()))
            + big(quint32(pixels.height())) + big(quint32(24)) + big(quint32(0)) + big(quint32(cover.size())) + cover)
        .toBase64();
}

inline quint32 checksum(const QByteArray& bytes) {
    quint32 sum = 0xffffffff;
    for (const char byte : bytes) {
        sum ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ (sum & 1 ? 0xedb88320 : 0);
    }
    return ~sum;
}

// A black picture of one bit a pixel, small on disk however large it is; its header may claim another size.
inline QByteArray blackPng(QSize size, QSize claimed) {
    const auto chunk = [](const QByteArray& type, const QByteArray& data) {
        return big(quint32(data.size())) + type + data + big(checksum(type + data));
    };
    const QByteArray rows(((size.width() + 7) / 8 + 1) * qsizetype(size.height()), '\0');
    const QByteArray packed = qCompress(rows).mid(4); // without the length, which is Qt's own
    const QByteArray depthAndColour("\1\0\0\0\0", 5);
    return "\x89PNG\r\n\x1a\n"
           + chunk("IHDR", big(quint32(claimed.width())) + big(quint32(claimed.height())) + depthAndColour)
           + chunk("IDAT", packed) + chunk("IEND", {});
}

} // namespace lumbra::made

// Photoshop's documents, large ones too: the merged picture at the file's end, reduced row by row as it is unpacked; or
// else the small preview among the resources.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "EmbeddedPictures.h"
#include "Makers.h"

#include <QColorSpace>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <vector>

namespace lumbra::reader {

namespace {

using Clock = std::chrono::steady_clock;

constexpr qint64 sectionLimit = 64 * 1024 * 1024; // bytes of resources that are looked at

// Numbers from the device, whose end reads as zeros.
class Numbers {
public:
    explicit Numbers(QIODevice& device) : m_device(device) {}

    template <typename Number>
    Number next() {
        Number number{};
        if (m_device.read(reinterpret_cast<char*>(&number), sizeof number) != qint64(sizeof number))
            return {};
        return qFromBigEndian(number);
    }

    // A length of four bytes, or of eight in large documents.
    qint64 length(bool isLong) { return isLong ? next<qint64>() : qint64(next<quint32>()); }

private:
    QIODevice& m_device;
};

struct Header {
    enum Mode { grey = 1, indexed = 2, rgb = 3, inks = 4 };

    bool isLarge = false;
    int channels = 0;
    int width = 0;
    int height = 0;
    int depth = 0; // bits
    int mode = 0;

    static Header read(QIODevice& device) {
        Numbers numbers(device);
        device.seek(4); // the signature
        Header header;
        header.isLarge = numbers.next<quint16>() == 2;
        device.skip(6);
        header.channels = numbers.next<quint16>();
        header.height = int(std::min<quint32>(numbers.next<quint32>(), INT_MAX));
        header.width = int(std::min<quint32>(numbers.next<quint32>(), INT_MAX));
        header.depth = numbers.next<quint16>();
        header.mode = numbers.next<quint16>();
        return header;
    }

    int colours() const { return mode == rgb ? 3 : mode == inks ? 4 : 1; }

    bool isReadable() const {
        constexpr int mostChannels = 56;
        const bool knownMode = mode == grey || mode == indexed || mode == rgb || mode == inks;
        return knownMode && (depth == 8 || depth == 16) && channels >= colours() && channels <= mostChannels
               && width > 0 && height > 0 && std::max(width, height) <= largestSide;
    }
};

struct Resources {
    QByteArray thumbnail; // a JPEG
    QByteArray profile;
    bool hasMerged = true;
};

Resources resourcesOf(const QByteArray& section) {
    constexpr int thumbnailId = 1036, profileId = 1039, versionId = 1057;
    constexpr qsizetype thumbnailHeader = 28, hasMergedAt = 4;
    Resources resources;
    qsizetype at = 0;
    while (section.size() - at > 12 && section.mid(at, 4) == "8BIM") {
        const int id = qFromBigEndian<quint16>(section.constData() + at + 4);
        const qsizetype name = (uchar(section[at + 6]) + 2) & ~1; // with its length, and made even
        if (section.size() - at < 10 + name)
            break;
        const qsizetype size = qFromBigEndian<quint32>(section.constData() + at + 6 + name);
        const QByteArray data = section.mid(at + 10 + name, size);
        if (id == thumbnailId)
            resources.thumbnail = data.mid(thumbnailHeader);
        else if (id == profileId)
            resources.profile = data;
        else if (id == versionId && data.size() > hasMergedAt)
            resources.hasMerged = data[hasMergedAt] != 0;
        at += 10 + name + ((size + 1) & ~qsizetype(1));
    }
    return resources;
}

// Rows of one channel after the other, as they are or with runs packed.
class Rows {
public:
    // Nothing below reads more than this says.
    Rows(QIODevice& device, const Header& header) : m_device(device), m_size(header.width * header.depth / 8) {
        Numbers numbers(device);
        m_packed = numbers.next<quint16>() == 1;
        if (!m_packed)
            return;
        m_lengths.resize(size_t(header.channels) * size_t(header.height));
        for (quint32& length : m_lengths)
            length = header.isLarge ? numbers.next<quint32>() : numbers.next<quint16>();
    }

    // False at the file's end.
    bool next(QByteArray& row) {
        row.resize(m_size);
        if (!m_packed)
            return m_device.read(row.data(), m_size) == m_size;
        if (m_at == m_lengths.size())
            return false;
        const qint64 length = m_lengths[m_at++];
        if (length > 2 * qint64(m_size) + 16)
            return false;
        const QByteArray packed = m_device.read(length);
        unpackRuns(packed, row);
        return packed.size() == length;
    }

private:
    static void unpackRuns(const QByteArray& packed, QByteArray& row) {
        qsizetype to = 0;
        for (qsizetype from = 0; from < packed.size() && to < row.size();) {
            const auto code = static_cast<signed char>(packed[from++]);
            const qsizetype room = row.size() - to;
            if (code >= 0) {
                const qsizetype count = std::min({qsizetype(code) + 1, room, packed.size() - from});
                std::copy_n(packed.begin() + from, count, row.begin() + to);
                from += code + 1;
                to += count;
            } else if (code != -128 && from < packed.size()) {
                const qsizetype count = std::min(qsizetype(1 - code), room);
                std::fill_n(row.begin() + to, count, packed[from++]);
                to += count;
            }
        }
        std::fill(row.begin() + to, row.end(), '\0');
    }

    QIODevice& m_device;
    int m_size; // bytes of a row
    bool m_packed;
    std::vector<quint32> m_lengths; // of the packed rows
    size_t m_at = 0;
};

// One channel as means over the pixels that fall on each small one.
std::vector<uchar> reducedChannel(Rows& rows, const Header& header, QSize size, Clock::time_point deadline) {
    std::vector<uchar> channel;
    std::vector<quint32> sums(size_t(size.width())), counts(size_t(size.width()));
    const int step = header.depth / 8; // the first byte of two says enough
    QByteArray row;
    for (int y = 0; y < header.height; ++y) {
        if (!rows.next(row) || Clock::now() >= deadline)
            return {};
        for (int x = 0; x < header.width; ++x) {
            const auto to = size_t(qint64(x) * size.width() / header.width);
            sums[to] += uchar(row[x * step]);
            ++counts[to];
        }
        const bool ends = qint64(y + 1) * size.height() / header.height > qint64(y) * size.height() / header.height;
        if (!ends)
            continue;
        for (size_t x = 0; x < sums.size(); ++x)
            channel.push_back(uchar(sums[x] / std::max(counts[x], 1U)));
        std::ranges::fill(sums, 0U);
        std::ranges::fill(counts, 0U);
    }
    return channel;
}

QRgb inkColour(int cyan, int magenta, int yellow, int black) {
    // Kept as what is not inked.
    return qRgb(cyan * black / 255, magenta * black / 255, yellow * black / 255);
}

QImage inScreenColours(QImage image, const Header& header, const QByteArray& profile) {
    const QColorSpace colours = header.mode == Header::rgb ? QColorSpace::fromIccProfile(profile) : QColorSpace();
    if (colours.isValid()) {
        image.setColorSpace(colours);
        image.convertToColorSpace(QColorSpace(QColorSpace::SRgb));
    }
    return image;
}

// `hasAlpha`: the first channel behind the colours is the clearness of the whole.
QImage merged(QIODevice& device, const Header& header, bool hasAlpha, QSize size, Clock::time_point deadline) {
    Rows rows(device, header);
    std::vector<std::vector<uchar>> channels;
    const int wanted = header.colours() + (hasAlpha ? 1 : 0);
    for (int i = 0; i < wanted; ++i) {
        channels.push_back(reducedChannel(rows, header, size, deadline));
        if (channels.back().size() != size_t(size.width()) * size_t(size.height()))
            return {};
    }
    QImage image(size, hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const auto at = [&, i = size_t(y) * size_t(size.width()) + size_t(x)](int c) {
                return int(channels[size_t(c)][i]);
            };
            const QRgb colour = header.mode == Header::inks  ? inkColour(at(0), at(1), at(2), at(3))
                                : header.mode == Header::rgb ? qRgb(at(0), at(1), at(2))
                                                             : qRgb(at(0), at(0), at(0));
            row[x] = hasAlpha ? (colour & 0xffffff) | QRgb(at(wanted - 1)) << 24 : colour;
        }
    }
    return image;
}

// The count of layers is below zero where the merged picture is clear somewhere.
bool isClearSomewhere(QIODevice& device, bool isLarge) {
    Numbers numbers(device);
    return numbers.length(isLarge) > 2 && numbers.next<qint16>() < 0;
}

} // namespace

QSize photoshopPixels(OpenedFile& file) {
    const Header header = Header::read(file.device());
    return header.isReadable() ? QSize(header.width, header.height) : QSize();
}

QImage photoshopPicture(OpenedFile& file, QSize box, Milliseconds limit) {
    const Clock::time_point deadline = Clock::now() + limit;
    QFile& device = file.device();
    const Header header = Header::read(device);
    Numbers numbers(device);
    device.skip(numbers.next<quint32>()); // the palette
    const qint64 resourcesSize = numbers.next<quint32>();
    const qint64 resourcesEnd = device.pos() + resourcesSize;
    const Resources resources = resourcesOf(device.read(std::min(resourcesSize, sectionLimit)));

    QImage image;
    if (header.isReadable() && header.mode != Header::indexed && resources.hasMerged && device.seek(resourcesEnd)) {
        const qint64 layersSize = numbers.length(header.isLarge);
        const qint64 layersEnd = device.pos() + layersSize;
        const bool hasAlpha =
            layersSize > 0 && header.channels > header.colours() && isClearSomewhere(device, header.isLarge);
        const QSize size = fittedWithoutEnlarging(QSize(header.width, header.height), box);
        if (layersSize >= 0 && layersEnd < file.size() && device.seek(layersEnd))
            image = inScreenColours(merged(device, header, hasAlpha, size, deadline), header, resources.profile);
    }
    return image.isNull() ? embeddedPicture(resources.thumbnail, box) : image;
}

} // namespace lumbra::reader

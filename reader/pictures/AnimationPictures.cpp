// Vector animations: Lottie documents in their archives. The first of their frames that shows anything, since most
// begin with nothing.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Archive.h"
#include "Makers.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <rlottie.h>

#include <algorithm>
#include <array>
#include <memory>

namespace lumbra::reader {

namespace {

constexpr qint64 textLimit = 16 * 1024 * 1024; // bytes, unpacked
constexpr double framesLimit = 100'000;

// Of the length: where a frame is looked for.
constexpr std::array moments{0.0, 0.1, 0.25, 0.5, 0.75};

// The first one that the archive names; both versions of the format.
QByteArray animationIn(const Archive& archive) {
    const QJsonObject manifest = QJsonDocument::fromJson(archive.entry("manifest.json", textLimit)).object();
    const QByteArray name =
        manifest[QLatin1String("animations")][0][QLatin1String("id")].toString(QStringLiteral("animation")).toUtf8();
    const QByteArray first = archive.entry(("animations/" + name + ".json").constData(), textLimit);
    return first.isEmpty() ? archive.entry(("a/" + name + ".json").constData(), textLimit) : first;
}

// Pictures that lie beside are left out: the names that lead to them may lead anywhere.
QByteArray withoutReferences(QJsonObject animation) {
    const QJsonArray assets = animation[QLatin1String("assets")].toArray();
    QJsonArray kept;
    for (const auto& asset : assets) {
        const QJsonValue picture = asset[QLatin1String("p")];
        if (picture.isUndefined() || picture.toString().startsWith(QLatin1String("data:")))
            kept.append(asset);
    }
    animation[QLatin1String("assets")] = kept;
    return QJsonDocument(animation).toJson(QJsonDocument::Compact);
}

bool isClear(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        if (std::any_of(row, row + image.width(), [](QRgb pixel) { return qAlpha(pixel) > 0; }))
            return false;
    }
    return true;
}

QImage drawn(rlottie::Animation& animation, size_t frame, QSize size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    animation.renderSync(frame, rlottie::Surface(reinterpret_cast<uint32_t*>(image.bits()), size_t(size.width()),
                                                 size_t(size.height()), size_t(image.bytesPerLine())));
    return image;
}

} // namespace

QImage animationPicture(OpenedFile& file, QSize box, Milliseconds) {
    const std::unique_ptr<Archive> archive = Archive::open(file);
    const QJsonObject document = archive ? QJsonDocument::fromJson(animationIn(*archive)).object() : QJsonObject();
    const double length = document[QLatin1String("op")].toDouble() - document[QLatin1String("ip")].toDouble();
    if (document[QLatin1String("layers")].toArray().isEmpty() || length < 0 || length > framesLimit)
        return {};
    const QByteArray text = withoutReferences(document);
    const auto animation = rlottie::Animation::loadFromData(text.toStdString(), {}, {}, false);
    if (!animation || animation->totalFrame() < 1)
        return {};
    size_t width = 0, height = 0;
    animation->size(width, height);
    if (width < 1 || height < 1 || width > size_t(largestSide) || height > size_t(largestSide))
        return {};
    const QSize size = fitted(QSizeF(double(width), double(height)), box);
    for (const double moment : moments) {
        const QImage image = drawn(*animation, size_t(moment * double(animation->totalFrame() - 1)), size);
        if (!isClear(image))
            return image;
    }
    return {};
}

} // namespace lumbra::reader

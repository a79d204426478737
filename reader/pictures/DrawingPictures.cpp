// Drawings: SVG by Qt. What a drawing takes from elsewhere is left out, so that a file can't make others be read.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "EmbeddedPictures.h"
#include "Makers.h"
#include "Unpacked.h"
#include "reader/Formats.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace lumbra::reader {

namespace {

constexpr qint64 textLimit = 32 * 1024 * 1024; // bytes

constexpr qint64 embeddedPixels = 16'000'000; // of one picture in a drawing

// The drawing's reader unpacks whatever it finds there, other drawings too, which may refer to anything again.
bool isPicture(const QByteArray& bytes) {
    switch (formatOf(bytes.left(4096), {})) {
    case Format::jpeg:
    case Format::png:
    case Format::webp:
    case Format::simpleImage: {
        QBuffer device;
        device.setData(bytes);
        device.open(QIODevice::ReadOnly);
        const QSize size = QImageReader(&device).size();
        return !size.isEmpty() && qint64(size.width()) * size.height() <= embeddedPixels;
    }
    default:
        return false;
    }
}

// "#name" is in the document, "data:" is in the attribute itself.
bool staysInside(QStringView reference) {
    static constexpr QStringView mark = u"base64,";
    const QStringView trimmed = reference.trimmed();
    if (trimmed.startsWith(u'#'))
        return true;
    const qsizetype at = trimmed.lastIndexOf(mark);
    return trimmed.startsWith(u"data:") && at >= 0
           && isPicture(QByteArray::fromBase64(trimmed.mid(at + mark.size()).toLatin1()));
}

bool isReference(QStringView attribute) {
    return attribute == u"href" || attribute.endsWith(u":href");
}

// The document without references to other files, style sheets of its own folder and declarations; empty when it is
// not well-formed.
QByteArray withoutReferences(const QByteArray& text) {
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false); // prefixes stay as they are
    QByteArray kept;
    QXmlStreamWriter writer(&kept);
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement: {
            writer.writeStartElement(reader.qualifiedName().toString());
            const QXmlStreamAttributes attributes = reader.attributes();
            for (const QXmlStreamAttribute& attribute : attributes) {
                if (!isReference(attribute.qualifiedName()) || staysInside(attribute.value()))
                    writer.writeAttribute(attribute.qualifiedName().toString(), attribute.value().toString());
            }
            break;
        }
        case QXmlStreamReader::EndElement:
            writer.writeEndElement();
            break;
        case QXmlStreamReader::Characters:
            writer.writeCharacters(reader.text().toString());
            break;
        default:
            break;
        }
    }
    return reader.hasError() ? QByteArray() : kept;
}

// In letters of one byte, as far as markup goes. Others would hide what is looked for.
bool isPlain(const QByteArray& text) {
    constexpr qsizetype declaration = 200; // bytes in which it stands
    const QByteArray start = text.left(declaration).toLower();
    const bool isNamed = start.contains("encoding");
    return !text.contains('\0') && (!isNamed || start.contains("\"utf-8\"") || start.contains("'utf-8'"));
}

// Most drawings refer to nothing and declare nothing, and are spared being written anew.
bool mayRefer(const QByteArray& text) {
    return !isPlain(text) || text.contains("href") || text.contains("<!DOCTYPE") || text.contains("<?xml-");
}

} // namespace

QImage drawingPicture(const QByteArray& text, QSize box) {
    const QByteArray kept = mayRefer(text) ? withoutReferences(text) : text;
    QSvgRenderer renderer;
    if (kept.isEmpty() || !renderer.load(kept) || renderer.defaultSize().isEmpty())
        return {};
    QImage image(fitted(QSizeF(renderer.defaultSize()), box), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter, QRectF(image.rect()));
    return image;
}

QImage drawingPicture(OpenedFile& file, QSize box, Milliseconds) {
    return file.size() > textLimit ? QImage() : drawingPicture(file.bytes(textLimit), box);
}

QImage packedDrawingPicture(OpenedFile& file, QSize box, Milliseconds) {
    if (file.size() > textLimit)
        return {};
    const QByteArray text = unpacked(file.bytes(textLimit), textLimit);
    return text.size() < textLimit ? drawingPicture(text, box) : QImage();
}

} // namespace lumbra::reader

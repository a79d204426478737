// Drawings: SVG by Qt. What a drawing takes from elsewhere is left out, so that a file can't make others be read.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "EmbeddedPictures.h"
#include "Makers.h"
#include "Unpacked.h"

#include <QPainter>
#include <QSvgRenderer>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace lumbra::reader {

namespace {

constexpr qint64 textLimit = 32 * 1024 * 1024; // bytes

// "#name" is in the document, "data:" is in the attribute itself.
bool staysInside(QStringView reference) {
    const QStringView trimmed = reference.trimmed();
    return trimmed.startsWith(u'#') || trimmed.startsWith(u"data:");
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

// Most drawings refer to nothing and declare nothing, and are spared being written anew. Two bytes a letter would hide
// what is looked for.
bool mayRefer(const QByteArray& text) {
    return text.contains("href") || text.contains("<!DOCTYPE") || text.contains("<?xml-") || text.contains('\0');
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

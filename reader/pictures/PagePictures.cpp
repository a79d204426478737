// Pages: the first of a PDF.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "EmbeddedPictures.h"
#include "Makers.h"

#include <QBuffer>
#include <QPainter>
#include <QPdfDocument>

namespace lumbra::reader {

namespace {

QImage firstPage(QIODevice& device, QSize box) {
    QPdfDocument document;
    document.load(&device);
    if (document.status() != QPdfDocument::Status::Ready || document.pageCount() < 1)
        return {};
    const QSizeF page = document.pagePointSize(0);
    if (page.isEmpty())
        return {};
    const QImage drawn = document.render(0, fitted(page, box));
    if (drawn.isNull())
        return {};
    // Pages are drawn on nothing; paper is white.
    QImage paper(drawn.size(), QImage::Format_RGB32);
    paper.fill(Qt::white);
    QPainter painter(&paper);
    painter.drawImage(0, 0, drawn);
    return paper;
}

} // namespace

QImage pagePicture(OpenedFile& file, QSize box, Milliseconds) {
    return firstPage(file.device(), box);
}

QImage pagePicture(const QByteArray& bytes, QSize box) {
    QBuffer device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly);
    return firstPage(device, box);
}

} // namespace lumbra::reader

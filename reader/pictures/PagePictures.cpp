// Pages: the first of a PDF.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "EmbeddedPictures.h"
#include "Makers.h"
#include "reader/pages/PdfPage.h"

#include <QBuffer>
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
    const QSize size = fitted(page, box);
    return pdfPage(document, 0, size, QRect(QPoint(), size));
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

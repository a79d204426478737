// Pages: the first of a PDF.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Makers.h"

#include <QPainter>
#include <QPdfDocument>

namespace lumbra::reader {

QImage pagePicture(OpenedFile& file, QSize box, Milliseconds) {
    QPdfDocument document;
    document.load(&file.device());
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

} // namespace lumbra::reader

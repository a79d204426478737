// SPDX-License-Identifier: GPL-3.0-or-later
#include "PdfPage.h"

#include <QPainter>
#include <QPdfDocument>
#include <QPdfDocumentRenderOptions>

namespace lumbra::reader {

QImage pdfPage(QPdfDocument& document, int page, QSize whole, QRect part) {
    QPdfDocumentRenderOptions options;
    if (part != QRect(QPoint(), whole)) {
        options.setScaledSize(whole);
        // Qt 6.4 takes the distance between the first and the last pixel for the size.
        options.setScaledClipRect(part.adjusted(0, 0, 1, 1));
    }
    const QImage drawn = document.render(page, part.size(), options);
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

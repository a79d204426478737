// Real PDFs for tests: pages of a colour of their own, with their number in large letters.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QColor>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>

#include <functional>

namespace lumbra::PdfFiles {

// The colour of a page's bar along its upper edge, a quarter of its height; below it the paper is bare.
inline QColor colourOf(int page) {
    static const QColor colours[] = {Qt::red, Qt::green, Qt::blue, Qt::yellow, Qt::magenta};
    return colours[page % 5];
}

inline void drawPage(QPainter& painter, int page) {
    const QRect sheet = painter.viewport();
    painter.fillRect(0, 0, sheet.width(), sheet.height() / 4, colourOf(page));
    QFont font;
    font.setPixelSize(sheet.height() / 6);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(QRect(0, sheet.height() / 2, sheet.width(), sheet.height() / 3), Qt::AlignCenter,
                     QString::number(page + 1));
}

// A4 without margins, but for what `sizeOf` says.
inline Location make(const Location& file, int pages, const std::function<QPageSize(int)>& sizeOf = {}) {
    QPdfWriter writer(file.toString());
    writer.setResolution(72);
    writer.setPageMargins(QMarginsF());
    QPainter painter;
    for (int page = 0; page < pages; ++page) {
        writer.setPageSize(sizeOf ? sizeOf(page) : QPageSize(QPageSize::A4));
        if (page == 0)
            painter.begin(&writer);
        else
            writer.newPage();
        drawPage(painter, page);
    }
    return file;
}

// Where `write` puts its lines on A4, in points.
inline constexpr double width = 595, left = 72, firstLine = 100, lineHeight = 40;

// Pages of lines of words.
inline Location write(const Location& file, const QList<QList<const char*>>& pages) {
    QPdfWriter writer(file.toString());
    writer.setResolution(72);
    writer.setPageMargins(QMarginsF());
    writer.setPageSize(QPageSize(QPageSize::A4));
    QPainter painter(&writer);
    QFont font;
    font.setPixelSize(18);
    painter.setFont(font);
    for (qsizetype page = 0; page < pages.size(); ++page) {
        if (page > 0)
            writer.newPage();
        for (qsizetype line = 0; line < pages[page].size(); ++line)
            painter.drawText(QPointF(left, firstLine + 6 + double(line) * lineHeight),
                             QString::fromUtf8(pages[page][line]));
    }
    return file;
}

// A copy that asks for a password.
inline Location lock(const Location& from, const Location& to) {
    if (QProcess::execute(QStringLiteral("qpdf"),
                          {QStringLiteral("--encrypt"), QStringLiteral("user"), QStringLiteral("owner"),
                           QStringLiteral("256"), QStringLiteral("--"), from.toString(), to.toString()})
        != 0)
        qFatal("qpdf does not lock %s", from.path().constData());
    return to;
}

} // namespace lumbra::PdfFiles

// SPDX-License-Identifier: GPL-3.0-or-later
#include "DocumentContent.h"

#include "MarkdownRows.h"
#include "TableCells.h"
#include "TextHead.h"
#include "TextRows.h"
#include "platform/Phrases.h"

namespace lumbra {

std::optional<DocumentContent> DocumentContent::read(const Location& file, DocumentKind kind) {
    const std::optional<TextHead> head = TextHead::read(file, limit);
    if (!head)
        return std::nullopt;
    DocumentContent content;
    bool isWhole = head->isWhole;
    switch (kind) {
    case DocumentKind::text:
        content.rows = textRows(head->text, DocumentRow::Style::body);
        break;
    case DocumentKind::source:
        content.rows = textRows(head->text, DocumentRow::Style::line);
        break;
    case DocumentKind::markdown:
        content.rows = markdownRows(head->text, file.parent().canonical());
        break;
    case DocumentKind::subtitles:
        content.rows = subtitleRows(head->text);
        if (content.rows.isEmpty())
            content.rows = textRows(head->text, DocumentRow::Style::body);
        break;
    case DocumentKind::table: {
        const bool hasTabs = file.toString().endsWith(QLatin1String(".tsv"), Qt::CaseInsensitive);
        TableCells table = TableCells::of(head->text, hasTabs ? std::optional(QChar(u'\t')) : std::nullopt);
        isWhole = isWhole && table.isWhole;
        content.cells = std::move(table.rows);
        break;
    }
    default:
        break;
    }
    if (content.rows.size() >= mostRows)
        isWhole = false;
    if (!isWhole && !content.isEmpty())
        content.notice = QStringLiteral("This is the beginning of a file of %1.").arg(Phrases::bytes(head->size));
    return content;
}

} // namespace lumbra

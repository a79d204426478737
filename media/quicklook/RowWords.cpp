// SPDX-License-Identifier: GPL-3.0-or-later
#include "RowWords.h"

#include "TextRows.h"

#include <QTextBoundaryFinder>
#include <QTextDocumentFragment>

#include <algorithm>

namespace lumbra {

namespace {

// The character that an entity of a web page stands for, "&" to ";".
QString characterOf(QStringView entity) {
    if (entity == u"&lt;")
        return QStringLiteral("<");
    if (entity == u"&gt;")
        return QStringLiteral(">");
    if (entity == u"&amp;")
        return QStringLiteral("&");
    if (entity == u"&quot;")
        return QStringLiteral("\"");
    return QTextDocumentFragment::fromHtml(entity.toString()).toPlainText();
}

// Rich text has no other markup than its tags and entities.
QString withoutLooks(const QString& rich) {
    constexpr qsizetype longestEntity = 40;
    QString words;
    words.reserve(rich.size());
    for (qsizetype at = 0; at < rich.size(); ++at) {
        if (rich[at] == u'<') {
            const qsizetype end = rich.indexOf(u'>', at);
            if (end < 0)
                break;
            if (QStringView(rich).mid(at, 3) == u"<br")
                words += u'\n';
            at = end;
        } else if (const qsizetype end = rich[at] == u'&' ? rich.indexOf(u';', at) : -1;
                   end > at && end - at < longestEntity) {
            words += characterOf(QStringView(rich).mid(at, end + 1 - at));
            at = end;
        } else {
            words += rich[at];
        }
    }
    return words;
}

// What is copied of the characters of a row that are marked one by one.
QString wordsWithin(const DocumentRow& row, int from, int to) {
    if (from >= to)
        return {};
    return row.withTabs.isEmpty() ? wordsOf(row).mid(from, to - from) : textWithTabs(row.withTabs, from, to);
}

// What stands between a row and the one before it.
QString gapBefore(const DocumentRow& row) {
    using Style = DocumentRow::Style;
    const bool isLine = !row.isRich && (row.style == Style::body || row.style == Style::line);
    if (isLine)
        return row.isTight ? QString() : QStringLiteral("\n");
    return row.isTight ? QStringLiteral("\n") : QStringLiteral("\n\n");
}

} // namespace

QString wordsOf(const DocumentRow& row) {
    if (row.cells.isEmpty())
        return row.isRich ? withoutLooks(row.text) : row.text;
    QStringList cells;
    for (const QString& cell : row.cells)
        cells.append(withoutLooks(cell).simplified());
    return cells.join(u'\t');
}

int lengthOf(const DocumentRow& row) {
    if (!row.cells.isEmpty() || row.style == DocumentRow::Style::picture)
        return 1;
    return int(wordsOf(row).size());
}

QString wordsBetween(const DocumentRows& rows, TextSpot from, TextSpot to) {
    QString words;
    const int begin = std::max(0, from.row), last = std::min(to.row, int(rows.size()) - 1);
    for (int i = begin; i <= last; ++i) {
        const DocumentRow& row = rows[i];
        const int first = i == from.row ? from.at : 0;
        const int end = i == to.row ? to.at : lengthOf(row);
        if (i > begin)
            words += gapBefore(row);
        if (lengthOf(row) == 1 && wordsOf(row).size() != 1)
            words += first < end ? wordsOf(row) : QString();
        else
            words += wordsWithin(row, first, end);
    }
    return words;
}

std::pair<int, int> wordAt(const QString& words, int at) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, words);
    const int inside = std::clamp(at, 0, std::max(0, int(words.size()) - 1));
    finder.setPosition(inside);
    if (!finder.isAtBoundary())
        finder.toPreviousBoundary();
    const auto begin = int(std::max(qsizetype(0), finder.position()));
    finder.setPosition(inside);
    const auto end = int(finder.toNextBoundary());
    return {begin, end < 0 ? int(words.size()) : end};
}

} // namespace lumbra

// SPDX-License-Identifier: GPL-3.0-or-later
#include "TextRows.h"

#include <QRegularExpression>

#include <algorithm>

namespace lumbra {

namespace {

bool isPlain(QChar character) {
    return character.category() != QChar::Other_Control;
}

// The blanks, or else the one character, that stand for a character of the text before which the line has `column`.
qsizetype widthOf(QChar character, qsizetype column) {
    return character == u'\t' ? tabStop - column % tabStop : 1;
}

// The text with blanks for all that has no shape but its tabs; nothing if it has none.
QString withTabsAlone(QString text) {
    if (!text.contains(u'\t'))
        return {};
    for (QChar& character : text)
        if (!isPlain(character) && character != u'\t')
            character = u' ';
    return text;
}

// Where a piece of the text that is too long for a row ends: behind a blank if there is one not far from its end, and
// never within a character.
qsizetype endOfPiece(QStringView text) {
    constexpr qsizetype search = 200;
    if (text.size() <= longestRow)
        return text.size();
    const qsizetype blank = text.lastIndexOf(u' ', longestRow - 1);
    if (blank >= longestRow - search)
        return blank + 1;
    return text[longestRow].isLowSurrogate() ? longestRow - 1 : longestRow;
}

void appendLine(DocumentRows& rows, QStringView line, DocumentRow::Style style) {
    bool isFirst = true;
    do {
        const qsizetype end = endOfPiece(line);
        const QString piece = line.left(end).toString();
        rows.append(
            {.style = style, .text = printableText(piece), .withTabs = withTabsAlone(piece), .isTight = !isFirst});
        line = line.mid(end);
        isFirst = false;
    } while (!line.isEmpty() && rows.size() < mostRows);
}

// "1:02:03,500" as "1:02:03", "00:07.250" as "00:07".
QString momentOf(const QString& times) {
    const QString start = times.section(QLatin1String("-->"), 0, 0).trimmed();
    return printableText(start.left(start.indexOf(QRegularExpression(QStringLiteral("[.,]"))))).left(16);
}

bool isTime(QStringView line) {
    return line.contains(u"-->");
}

} // namespace

QString printableText(const QString& text) {
    if (std::all_of(text.begin(), text.end(), isPlain))
        return text;
    QString made;
    made.reserve(text.size() + tabStop);
    for (const QChar character : text) {
        if (isPlain(character))
            made.append(character);
        else
            made.append(QString(widthOf(character, made.size()), u' '));
    }
    return made;
}

QString textWithTabs(const QString& text, int from, int to) {
    QString words;
    qsizetype shown = 0, lineBegin = 0; // in the text that is shown
    for (const QChar character : text) {
        if (shown >= to)
            break;
        shown += widthOf(character, shown - lineBegin);
        if (shown > from)
            words.append(character);
        if (character == u'\n')
            lineBegin = shown;
    }
    return words;
}

DocumentRows textRows(const QString& text, DocumentRow::Style style) {
    DocumentRows rows;
    qsizetype at = 0;
    qsizetype end = text.size();
    while (end > 0 && text[end - 1] == u'\n')
        --end;
    while (at < end && rows.size() < mostRows) {
        qsizetype next = text.indexOf(u'\n', at);
        if (next < 0 || next > end)
            next = end;
        appendLine(rows, QStringView(text).mid(at, next - at), style);
        at = next + 1;
    }
    return rows;
}

DocumentRows subtitleRows(const QString& text) {
    static const QRegularExpression tags(QStringLiteral("<[^>]{0,100}>|\\{\\\\[^}]{0,100}\\}"));
    const QList<QStringView> lines = QStringView(text).split(u'\n');
    DocumentRows rows;
    bool inCue = false;
    for (qsizetype i = 0; i < lines.size() && rows.size() < mostRows; ++i) {
        const QString line = lines[i].trimmed().toString();
        if (isTime(line)) {
            rows.append({.style = DocumentRow::Style::cue, .mark = momentOf(line)});
            inCue = true;
        } else if (line.isEmpty()) {
            inCue = false;
        } else if (inCue && !(i + 1 < lines.size() && isTime(lines[i + 1]))) { // which would be the next one's name
            QString& said = rows.last().text;
            if (said.size() < longestRow)
                said += (said.isEmpty() ? QString() : QStringLiteral("\n"))
                        + printableText(QString(line).remove(tags)).left(longestRow);
        }
    }
    return rows;
}

} // namespace lumbra

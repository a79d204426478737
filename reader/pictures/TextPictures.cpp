// Texts: what stands at their beginning, each kind brought into paragraphs in its own way and drawn as a page.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Makers.h"
#include "RichText.h"
#include "TextPage.h"
#include "WebPage.h"
#include "platform/TextDecoding.h"

#include <QRegularExpression>

namespace lumbra::reader {

namespace {

using Style = Paragraph::Style;

// Bytes of the beginning: far more than a page holds, since markup and long lines stand between its letters.
constexpr qint64 textLimit = 16 * 1024;
constexpr qint64 markupLimit = 1024 * 1024;

constexpr qsizetype mostLines = 80;

// What no page holds is not looked at.
QStringList linesOf(OpenedFile& file, qint64 limit = textLimit) {
    return decodedText(file.bytes(limit)).split(u'\n').mid(0, mostLines);
}

// Control characters and what else has no shape would be drawn as boxes.
QString printable(QString text, int tab) {
    text.replace(u'\t', QString(tab, u' '));
    for (QChar& character : text) {
        if (character.category() == QChar::Other_Control)
            character = u' ';
    }
    return text;
}

QString withoutMarks(QString text) {
    static const QRegularExpression links(QStringLiteral("!?\\[([^\\]]*)\\]\\([^)]*\\)"));
    static const QRegularExpression marks(QStringLiteral("\\*\\*|__|~~|`|(?<!\\w)[*_](?=\\S)|(?<=\\S)[*_](?!\\w)"));
    return text.replace(links, QStringLiteral("\\1")).remove(marks);
}

// Lines that belong together are one paragraph, as an empty one or a mark ends it.
class MarkdownReader {
public:
    void add(const QString& line) {
        const QString text = line.trimmed();
        if (text.startsWith(QLatin1String("```")) || text.startsWith(QLatin1String("~~~"))) {
            m_inCode = !m_inCode;
            m_open = false;
        } else if (m_inCode) {
            m_made.append({printable(line, 4), Style::code});
        } else if (text.isEmpty()) {
            m_open = false;
        } else if (!addMarked(text)) {
            addPlain(text);
        }
    }

    Paragraphs taken() { return std::move(m_made); }

private:
    bool addMarked(const QString& text) {
        static const QRegularExpression heading(QStringLiteral("^(#{1,6})\\s+(.*?)\\s*#*$"));
        static const QRegularExpression item(QStringLiteral("^(?:[-*+]|\\d{1,9}[.)])\\s+(?:\\[[ xX]\\]\\s+)?(.*)$"));
        static const QRegularExpression quote(QStringLiteral("^>\\s?(.*)$"));
        static const QRegularExpression rule(QStringLiteral("^(?:-{3,}|\\*{3,}|_{3,}|(?:- ){2,}-|={3,})$"));
        if (const auto found = heading.match(text); found.hasMatch())
            return addOne(found.captured(2), found.capturedLength(1) == 1 ? Style::title : Style::heading);
        if (rule.match(text).hasMatch())
            return addOne({}, Style::rule);
        if (const auto found = item.match(text); found.hasMatch())
            return addOne(found.captured(1), Style::item, true);
        if (const auto found = quote.match(text); found.hasMatch())
            return addOne(found.captured(1), Style::quote);
        if (text.startsWith(u'|')) // a table's row
            return addOne(QString(text).replace(u'|', QLatin1String("   ")).trimmed(), Style::code);
        return false;
    }

    bool addOne(const QString& text, Style style, bool open = false) {
        m_made.append({withoutMarks(printable(text, 1)), style});
        m_open = open;
        return true;
    }

    void addPlain(const QString& text) {
        if (m_open)
            m_made.last().text += u' ' + withoutMarks(printable(text, 1));
        else
            addOne(text, Style::body);
        m_open = true;
    }

    Paragraphs m_made;
    bool m_open = false; // the next line goes on with the last paragraph
    bool m_inCode = false;
};

// The one of the usual separators that the first line has most of.
QChar separatorOf(const QString& line) {
    QChar best = u',';
    for (const QChar candidate : {u',', u';', u'\t', u'|'}) {
        if (line.count(candidate) > line.count(best))
            best = candidate;
    }
    return best;
}

// Fields may be quoted, and then hold separators, line ends and doubled quotes.
QList<QStringList> rowsOf(const QString& text) {
    const QChar separator = separatorOf(text.left(text.indexOf(u'\n')));
    QList<QStringList> rows;
    QStringList row;
    QString field;
    bool quoted = false;
    for (qsizetype i = 0; i < text.size() && rows.size() < mostLines; ++i) {
        const QChar character = text[i];
        if (character == u'"' && quoted && i + 1 < text.size() && text[i + 1] == u'"') {
            field += text[++i];
        } else if (character == u'"' && (quoted || field.isEmpty())) {
            quoted = !quoted;
        } else if (!quoted && (character == separator || character == u'\n')) {
            row.append(printable(field, 1).simplified());
            field.clear();
            if (character == u'\n')
                rows.append(std::exchange(row, {}));
        } else {
            field += character;
        }
    }
    if (!field.isEmpty() || !row.isEmpty())
        rows.append(row << printable(field, 1).simplified());
    rows.removeIf([](const QStringList& cells) { return cells.join(QString()).isEmpty(); });
    return rows;
}

bool isTime(const QString& line) {
    return line.contains(QLatin1String("-->"));
}

} // namespace

QImage plainTextPicture(OpenedFile& file, QSize box, Milliseconds) {
    Paragraphs page;
    for (const QString& text : linesOf(file)) {
        if (!text.trimmed().isEmpty() || !page.isEmpty())
            page.append({printable(text, 4), Style::body});
    }
    return textPage(page, box);
}

QImage sourceTextPicture(OpenedFile& file, QSize box, Milliseconds) {
    Paragraphs page;
    for (const QString& text : linesOf(file))
        page.append({printable(text, 4), Style::code});
    return textPage(page, box);
}

QImage markdownPicture(OpenedFile& file, QSize box, Milliseconds) {
    QStringList lines = linesOf(file);
    // What a head of "key: value" lines between dashes says is for programs.
    if (lines.value(0) == QLatin1String("---")) {
        const qsizetype end = lines.indexOf(QStringLiteral("---"), 1);
        lines = end < 0 ? lines : lines.mid(end + 1);
    }
    MarkdownReader reader;
    for (const QString& text : lines)
        reader.add(text);
    return textPage(reader.taken(), box);
}

QImage webPagePicture(OpenedFile& file, QSize box, Milliseconds) {
    return textPage(webPageText(decodedText(file.bytes(markupLimit))), box);
}

QImage tablePicture(OpenedFile& file, QSize box, Milliseconds) {
    return tablePage(rowsOf(decodedText(file.bytes(textLimit))), box);
}

QImage subtitlesPicture(OpenedFile& file, QSize box, Milliseconds) {
    static const QRegularExpression tags(QStringLiteral("<[^>]{0,100}>|\\{\\\\[^}]{0,100}\\}"));
    const QStringList lines = linesOf(file);
    Paragraphs page;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString text = lines[i].trimmed();
        const bool isNumber = i + 1 < lines.size() && isTime(lines[i + 1]); // or a name
        if (isTime(text))
            page.append({text.section(QLatin1String("-->"), 0, 0).trimmed(), Style::small});
        else if (!text.isEmpty() && !isNumber && !text.startsWith(QLatin1String("WEBVTT")))
            page.append({printable(QString(text).remove(tags), 1), Style::body});
    }
    return textPage(page, box);
}

QImage richTextPicture(OpenedFile& file, QSize box, Milliseconds) {
    return textPage(richText(file.bytes(markupLimit)), box);
}

} // namespace lumbra::reader

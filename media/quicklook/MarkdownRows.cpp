// SPDX-License-Identifier: GPL-3.0-or-later
#include "MarkdownRows.h"

#include "MarkdownPieces.h"
#include "TextRows.h"

#include <md4c.h>

#include <algorithm>

namespace lumbra {

namespace {

using Style = DocumentRow::Style;

QString textOf(const MD_ATTRIBUTE& attribute) {
    return QString::fromUtf8(attribute.text, qsizetype(attribute.size));
}

class MarkdownReader {
public:
    explicit MarkdownReader(const Location& folder) : m_folder(folder) {}

    DocumentRows run(const QByteArray& text) {
        MD_PARSER parser{};
        parser.flags = MD_FLAG_TABLES | MD_FLAG_STRIKETHROUGH | MD_FLAG_TASKLISTS | MD_FLAG_PERMISSIVEURLAUTOLINKS;
        parser.enter_block = [](MD_BLOCKTYPE type, void* detail, void* reader) {
            return static_cast<MarkdownReader*>(reader)->enterBlock(type, detail);
        };
        parser.leave_block = [](MD_BLOCKTYPE type, void* detail, void* reader) {
            return static_cast<MarkdownReader*>(reader)->leaveBlock(type, detail);
        };
        parser.enter_span = [](MD_SPANTYPE type, void* detail, void* reader) {
            return static_cast<MarkdownReader*>(reader)->enterSpan(type, detail);
        };
        parser.leave_span = [](MD_SPANTYPE type, void* detail, void* reader) {
            return static_cast<MarkdownReader*>(reader)->leaveSpan(type, detail);
        };
        parser.text = [](MD_TEXTTYPE type, const MD_CHAR* bytes, MD_SIZE size, void* reader) {
            auto* const self = static_cast<MarkdownReader*>(reader);
            if (self->m_style == Style::code)
                takeTabsBefore(bytes, self->m_source, self->m_text);
            return self->text(type, QString::fromUtf8(bytes, qsizetype(size)));
        };
        m_source = text;
        md_parse(text.constData(), MD_SIZE(text.size()), &parser, this);
        return std::move(m_rows);
    }

private:
    struct List {
        bool isOrdered;
        unsigned next;
        QChar delimiter;
    };

    // What each call of the parser answers: nonzero ends it.
    int goOn() const { return m_rows.size() >= mostRows ? 1 : 0; }

    int enterBlock(MD_BLOCKTYPE type, void* detail) {
        switch (type) {
        case MD_BLOCK_QUOTE:
            endRow();
            ++m_quotes;
            break;
        case MD_BLOCK_UL:
            endRow();
            m_startsList = m_lists.isEmpty();
            m_lists.append({.isOrdered = false, .next = 0, .delimiter = {}});
            break;
        case MD_BLOCK_OL: {
            endRow();
            m_startsList = m_lists.isEmpty();
            const auto* list = static_cast<MD_BLOCK_OL_DETAIL*>(detail);
            m_lists.append({.isOrdered = true, .next = list->start, .delimiter = QLatin1Char(list->mark_delimiter)});
            break;
        }
        case MD_BLOCK_LI:
            endRow();
            m_mark = markOf(*static_cast<MD_BLOCK_LI_DETAIL*>(detail));
            break;
        case MD_BLOCK_H:
            m_style = headingOf(static_cast<MD_BLOCK_H_DETAIL*>(detail)->level);
            break;
        case MD_BLOCK_CODE:
            endRow();
            m_style = Style::code;
            break;
        case MD_BLOCK_HTML:
            endRow();
            m_inMarkup = true;
            break;
        case MD_BLOCK_TABLE:
            m_inTable = true;
            break;
        case MD_BLOCK_THEAD:
            m_inHead = true;
            break;
        default:
            break;
        }
        return goOn();
    }

    int leaveBlock(MD_BLOCKTYPE type, void* detail) {
        switch (type) {
        case MD_BLOCK_QUOTE:
            endRow();
            --m_quotes;
            break;
        case MD_BLOCK_UL:
        case MD_BLOCK_OL:
            endRow();
            m_lists.removeLast();
            break;
        case MD_BLOCK_LI:
            if (m_hasWords || !m_mark.isEmpty())
                appendRow();
            break;
        case MD_BLOCK_P:
        case MD_BLOCK_H:
            endRow();
            m_style = Style::body;
            break;
        case MD_BLOCK_CODE:
            endCode();
            m_style = Style::body;
            break;
        case MD_BLOCK_HTML:
            m_text = withoutTags(m_text).trimmed().toHtmlEscaped();
            m_hasWords = !m_text.isEmpty();
            m_inMarkup = false;
            endRow();
            break;
        case MD_BLOCK_HR:
            m_rows.append({.style = Style::rule});
            break;
        case MD_BLOCK_TH:
        case MD_BLOCK_TD:
            m_cells.append(std::exchange(m_text, {}));
            m_alignments.append(alignmentOf(static_cast<MD_BLOCK_TD_DETAIL*>(detail)->align));
            m_hasWords = false;
            break;
        case MD_BLOCK_TR:
            m_rows.append({.style = m_inHead ? Style::tableHead : Style::tableRow,
                           .isRich = true,
                           .indent = indent(),
                           .isTight = !m_inHead,
                           .cells = std::exchange(m_cells, {}),
                           .alignments = std::exchange(m_alignments, {})});
            break;
        case MD_BLOCK_TABLE:
            m_inTable = false;
            break;
        case MD_BLOCK_THEAD:
            m_inHead = false;
            break;
        default:
            break;
        }
        return goOn();
    }

    int enterSpan(MD_SPANTYPE type, void* detail) {
        if (type == MD_SPAN_IMG) {
            if (m_pictures++ == 0)
                beginPicture(textOf(static_cast<MD_SPAN_IMG_DETAIL*>(detail)->src));
            return goOn();
        }
        if (m_pictures > 0)
            return goOn();
        QString tag = tagOf(type);
        if (tag.isEmpty())
            return goOn();
        m_open.append(tag);
        if (type == MD_SPAN_A) {
            const QString target = textOf(static_cast<MD_SPAN_A_DETAIL*>(detail)->href).toHtmlEscaped();
            m_text += QStringLiteral("<a href=\"%1\">").arg(target);
        } else {
            m_text += u'<' + tag + u'>';
        }
        return goOn();
    }

    int leaveSpan(MD_SPANTYPE type, void*) {
        if (type == MD_SPAN_IMG) {
            if (--m_pictures == 0)
                endPicture();
            return goOn();
        }
        if (m_pictures > 0 || tagOf(type).isEmpty())
            return goOn();
        m_text += QStringLiteral("</%1>").arg(m_open.takeLast());
        return goOn();
    }

    int text(MD_TEXTTYPE type, const QString& characters) {
        if (m_pictures > 0) {
            m_description += characters;
            return goOn();
        }
        m_hasWords |= type != MD_TEXT_NULLCHAR && type != MD_TEXT_BR && type != MD_TEXT_SOFTBR && type != MD_TEXT_HTML;
        if (m_style == Style::code || m_inMarkup) {
            m_text += characters;
            return goOn();
        }
        switch (type) {
        case MD_TEXT_NULLCHAR:
            break;
        case MD_TEXT_BR:
            m_text += QStringLiteral("<br>");
            break;
        case MD_TEXT_SOFTBR:
            m_text += u' ';
            break;
        case MD_TEXT_ENTITY: // "&" to ";", as the parser has checked
            m_text += characters;
            break;
        case MD_TEXT_HTML:
            if (characters.startsWith(QLatin1String("<br"), Qt::CaseInsensitive))
                m_text += QStringLiteral("<br>");
            break;
        case MD_TEXT_CODE:
            m_text += printableText(characters).toHtmlEscaped();
            breakIfLong();
            break;
        default:
            m_text += withSingleBlanks(printableText(characters)).toHtmlEscaped();
            breakIfLong();
        }
        return goOn();
    }

    static Style headingOf(unsigned level) {
        return level == 1 ? Style::title : level == 2 ? Style::heading : Style::subheading;
    }

    static Qt::AlignmentFlag alignmentOf(MD_ALIGN align) {
        return align == MD_ALIGN_RIGHT ? Qt::AlignRight : align == MD_ALIGN_CENTER ? Qt::AlignHCenter : Qt::AlignLeft;
    }

    static QString tagOf(MD_SPANTYPE type) {
        switch (type) {
        case MD_SPAN_EM:
            return QStringLiteral("i");
        case MD_SPAN_STRONG:
            return QStringLiteral("b");
        case MD_SPAN_CODE:
            return QStringLiteral("code");
        case MD_SPAN_DEL:
            return QStringLiteral("s");
        case MD_SPAN_A:
            return QStringLiteral("a");
        default:
            return {};
        }
    }

    QString markOf(const MD_BLOCK_LI_DETAIL& item) {
        List& list = m_lists.last();
        if (item.is_task)
            return item.task_mark == ' ' ? QStringLiteral("☐") : QStringLiteral("☑");
        return list.isOrdered ? QString::number(list.next++) + list.delimiter : QStringLiteral("•");
    }

    int indent() const {
        constexpr qsizetype deepest = 8;
        return int(std::min(deepest, m_lists.size() + std::max(0, m_quotes - 1)));
    }

    void endRow() {
        if (m_hasWords)
            appendRow();
        m_text.clear();
    }

    void appendRow() {
        m_hasWords = false;
        const bool isItem = !m_lists.isEmpty() && m_style == Style::body && !std::exchange(m_startsList, false);
        const Style style = m_quotes > 0 && m_style == Style::body ? Style::quote : m_style;
        m_rows.append({.style = style,
                       .text = std::exchange(m_text, {}).trimmed(),
                       .isRich = true,
                       .indent = indent(),
                       .mark = std::exchange(m_mark, {}),
                       .isTight = isItem && !m_rows.isEmpty() && m_rows.last().indent > 0});
    }

    // A paragraph without an end is laid out in pieces; what was open goes on in the next.
    void breakIfLong() {
        if (m_text.size() < longestRow || m_inTable || m_open.contains(QStringLiteral("a")))
            return;
        for (auto tag = m_open.crbegin(); tag != m_open.crend(); ++tag)
            m_text += QStringLiteral("</%1>").arg(*tag);
        appendRow();
        for (const QString& tag : m_open)
            m_text += u'<' + tag + u'>';
    }

    void endCode() {
        constexpr qsizetype linesOfPiece = 100;
        while (m_text.endsWith(u'\n'))
            m_text.chop(1);
        m_hasWords = false;
        const DocumentRows lines = textRows(std::exchange(m_text, {}), Style::code);
        for (qsizetype i = 0; i < lines.size(); i += linesOfPiece) {
            QStringList piece, withTabs;
            for (qsizetype line = i; line < std::min(lines.size(), i + linesOfPiece); ++line) {
                piece.append(lines[line].text);
                withTabs.append(lines[line].withTabs.isEmpty() ? lines[line].text : lines[line].withTabs);
            }
            m_rows.append({.style = Style::code,
                           .text = piece.join(u'\n'),
                           .withTabs = withTabs.join(u'\n'),
                           .indent = indent(),
                           .isTight = i > 0});
        }
    }

    void beginPicture(const QString& address) {
        m_description.clear();
        m_picture = pictureAt(address, m_folder);
    }

    void endPicture() {
        const QString description = printableText(m_description).simplified();
        if (m_picture.isEmpty() || m_inTable) {
            m_text += description.toHtmlEscaped();
            m_hasWords |= !description.isEmpty();
            return;
        }
        endRow(); // what stands before it in its paragraph
        m_rows.append({.style = Style::picture,
                       .text = description,
                       .indent = indent(),
                       .mark = std::exchange(m_mark, {}),
                       .picture = m_picture});
        for (const QString& tag : m_open)
            m_text += u'<' + tag + u'>';
    }

    const Location m_folder;
    QByteArray m_source;
    DocumentRows m_rows;
    QList<List> m_lists;
    int m_quotes = 0;
    int m_pictures = 0; // nested: the outermost counts
    bool m_inMarkup = false;
    bool m_inTable = false;
    bool m_inHead = false;
    Style m_style = Style::body;
    QString m_text;          // of the row, as it grows
    bool m_hasWords = false; // it is more than tags
    QString m_mark;          // for the row
    QStringList m_open;      // tags
    QStringList m_cells;
    QList<int> m_alignments;
    bool m_startsList = false; // the row is the first of a list that stands in no other
    Location m_picture;
    QString m_description;
};

} // namespace

DocumentRows markdownRows(const QString& text, const Location& folder) {
    return MarkdownReader(folder).run(withoutHead(text).toUtf8());
}

} // namespace lumbra

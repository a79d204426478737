// SPDX-License-Identifier: GPL-3.0-or-later
#include "WebPage.h"

#include <QTextDocumentFragment>

#include <algorithm>
#include <array>

namespace lumbra::reader {

namespace {

using Style = Paragraph::Style;

constexpr qsizetype mostParagraphs = 80;

struct Element {
    QLatin1String name;
    Style style;
};

// Each begins a paragraph.
constexpr std::array blocks{
    Element{QLatin1String("h1"), Style::title},         Element{QLatin1String("h2"), Style::heading},
    Element{QLatin1String("h3"), Style::heading},       Element{QLatin1String("h4"), Style::heading},
    Element{QLatin1String("h5"), Style::heading},       Element{QLatin1String("h6"), Style::heading},
    Element{QLatin1String("li"), Style::item},          Element{QLatin1String("blockquote"), Style::quote},
    Element{QLatin1String("figcaption"), Style::small}, Element{QLatin1String("small"), Style::small},
    Element{QLatin1String("pre"), Style::code},         Element{QLatin1String("p"), Style::body},
    Element{QLatin1String("div"), Style::body},         Element{QLatin1String("section"), Style::body},
    Element{QLatin1String("article"), Style::body},     Element{QLatin1String("header"), Style::body},
    Element{QLatin1String("footer"), Style::body},      Element{QLatin1String("main"), Style::body},
    Element{QLatin1String("nav"), Style::body},         Element{QLatin1String("ul"), Style::body},
    Element{QLatin1String("ol"), Style::body},          Element{QLatin1String("table"), Style::body},
    Element{QLatin1String("tr"), Style::body},          Element{QLatin1String("dt"), Style::body},
    Element{QLatin1String("dd"), Style::body},          Element{QLatin1String("br"), Style::body},
};

// What stands in these is not for reading.
constexpr std::array silent{QLatin1String("script"), QLatin1String("style"),    QLatin1String("svg"),
                            QLatin1String("title"),  QLatin1String("noscript"), QLatin1String("template"),
                            QLatin1String("canvas"), QLatin1String("select"),   QLatin1String("iframe")};

// Decodes what characters are called, such as "&eacute;".
QString withCharacters(const QString& text) {
    return text.contains(u'&') ? QTextDocumentFragment::fromHtml(text.left(2000)).toPlainText() : text;
}

class Reading {
public:
    explicit Reading(const QString& markup) : m_markup(markup) {}

    Paragraphs run() {
        while (m_at < m_markup.size() && m_made.size() < mostParagraphs) {
            const qsizetype tag = m_markup.indexOf(u'<', m_at);
            take(tag < 0 ? m_markup.size() : tag);
            if (tag >= 0)
                skipTag();
        }
        close();
        return std::move(m_made);
    }

private:
    void take(qsizetype end) {
        m_text += QStringView(m_markup).mid(m_at, end - m_at);
        m_at = end;
    }

    void skipTag() {
        if (QStringView(m_markup).mid(m_at).startsWith(u"<!--")) {
            goBehind(QStringLiteral("-->"), m_at);
            return;
        }
        qsizetype end = m_at + 1;
        const bool closes = end < m_markup.size() && m_markup[end] == u'/';
        end += closes ? 1 : 0;
        const qsizetype start = end;
        while (end < m_markup.size() && m_markup[end].isLetterOrNumber())
            ++end;
        const QString name = m_markup.mid(start, end - start).toLower();
        if (name.isEmpty() && !closes && !QStringView(m_markup).mid(m_at).startsWith(u"<!")) {
            take(m_at + 1); // no tag: a sign of comparison
            return;
        }
        goBehind(QStringLiteral(">"), end);
        if (!closes && std::ranges::find(silent, name) != silent.end() && m_markup[m_at - 1] == u'>'
            && m_markup[m_at - 2] != u'/') {
            goBehind(QStringLiteral("</") + name, m_at);
            goBehind(QStringLiteral(">"), m_at);
            return;
        }
        const auto block = std::ranges::find(blocks, name, &Element::name);
        if (block != blocks.end())
            begin(closes ? Style::body : block->style);
        else if (name == QLatin1String("td") || name == QLatin1String("th"))
            m_text += QLatin1String("   ");
        else if (name == QLatin1String("hr"))
            rule();
    }

    // To behind the next of it, or to the end.
    void goBehind(const QString& mark, qsizetype from) {
        const qsizetype found = m_markup.indexOf(mark, from, Qt::CaseInsensitive);
        m_at = found < 0 ? m_markup.size() : found + mark.size();
    }

    void begin(Style style) {
        close();
        m_style = style;
    }

    void close() {
        const QString text = std::exchange(m_text, {});
        if (m_style == Style::code) {
            for (const QString& line : text.split(u'\n').mid(0, mostParagraphs))
                m_made.append({withCharacters(line), Style::code});
        } else if (const QString plain = withCharacters(text.simplified()).simplified(); !plain.isEmpty()) {
            m_made.append({plain, m_style});
        }
        m_style = Style::body;
    }

    void rule() {
        close();
        m_made.append({{}, Style::rule});
    }

    const QString& m_markup;
    qsizetype m_at = 0;
    QString m_text;
    Style m_style = Style::body;
    Paragraphs m_made;
};

} // namespace

Paragraphs webPageText(const QString& markup) {
    return Reading(markup).run();
}

} // namespace lumbra::reader

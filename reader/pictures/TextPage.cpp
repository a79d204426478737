// SPDX-License-Identifier: GPL-3.0-or-later
#include "TextPage.h"

#include "Makers.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <array>

namespace lumbra::reader {

namespace {

// The page has its own measure, which the box scales: at the middle size of a tile a line is just legible. It is fine
// enough for whole numbers, as sizes of letters have to be.
constexpr QSizeF page(2640, 3520);
constexpr double margin = 240;
constexpr double width = page.width() - 2 * margin;
constexpr double bottom = page.height() - margin / 2;

constexpr QColor ink(0x1d, 0x1d, 0x1f), quiet(0x86, 0x86, 0x8b), ruleColour(0xd8, 0xd8, 0xdc), shade(0xf5, 0xf5, 0xf7);

// No page holds more; to lay out a megabyte without a line's end takes seconds.
constexpr qsizetype longestParagraph = 3000;

struct Look {
    int size; // of the letters
    QFont::Weight weight;
    double above; // space, unless it comes first
    double indent = 0;
    bool isQuiet = false;
};

// In the order of the styles.
constexpr std::array looks{
    Look{110, QFont::Normal, 50},
    Look{200, QFont::DemiBold, 120},
    Look{140, QFont::DemiBold, 110},
    Look{110, QFont::Normal, 30, 130},
    Look{110, QFont::Normal, 50, 130, true},
    Look{85, QFont::Medium, 90, 0, true},
    Look{90, QFont::Normal, 60},
    Look{0, QFont::Normal, 90},
};

constexpr double leading = 1.12; // of the font's own distance of lines

QFont fontOf(const Look& look, bool isCode = false) {
    QFont font(isCode ? QStringList{QStringLiteral("DejaVu Sans Mono"), QStringLiteral("monospace")}
                      : QStringList{QStringLiteral("Inter"), QStringLiteral("sans-serif")});
    font.setStyleHint(isCode ? QFont::Monospace : QFont::SansSerif);
    font.setHintingPreference(QFont::PreferNoHinting); // letters keep their places at every size
    font.setPixelSize(look.size);
    font.setWeight(look.weight);
    return font;
}

class Sheet {
public:
    explicit Sheet(QSize box) : m_image(fitted(page, box), QImage::Format_RGB32) {
        m_image.fill(Qt::white);
        m_painter.begin(&m_image);
        m_painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
        m_painter.scale(m_image.width() / page.width(), m_image.height() / page.height());
    }

    QPainter& painter() { return m_painter; }

    void rule(double y, double thickness = 6) { m_painter.fillRect(QRectF(margin, y, width, thickness), ruleColour); }

    QImage taken() {
        m_painter.end();
        return m_image;
    }

private:
    QImage m_image;
    QPainter m_painter;
};

// Draws one paragraph with its top at `y` as far as the page goes, and returns where it ends.
double drawn(Sheet& sheet, const Paragraph& paragraph, double y) {
    using Style = Paragraph::Style;
    const bool isCode = paragraph.style == Style::code;
    const Look& look = looks[size_t(paragraph.style)];
    QTextOption option;
    option.setWrapMode(isCode ? QTextOption::NoWrap : QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextLayout layout(paragraph.text.left(longestParagraph), fontOf(look, isCode));
    layout.setTextOption(option);
    layout.setCacheEnabled(true);
    const double top = y;
    layout.beginLayout();
    while (y < bottom) {
        QTextLine textLine = layout.createLine();
        if (!textLine.isValid())
            break;
        textLine.setLineWidth(width - look.indent);
        textLine.setPosition(QPointF(look.indent, y - top));
        y += textLine.height() * leading;
    }
    layout.endLayout();
    QPainter& painter = sheet.painter();
    painter.setPen(look.isQuiet ? quiet : ink);
    layout.draw(&painter, QPointF(margin, top));
    if (paragraph.style == Style::item) {
        const double middle = top + layout.lineAt(0).height() / 2;
        painter.setBrush(ink);
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(QPointF(margin + 45, middle), 18, 18);
    } else if (paragraph.style == Style::quote) {
        painter.fillRect(QRectF(margin, top, 24, y - top), ruleColour);
    }
    return y;
}

bool saysNothing(const Paragraphs& paragraphs) {
    return std::ranges::all_of(paragraphs, [](const Paragraph& paragraph) {
        return paragraph.style == Paragraph::Style::rule || paragraph.text.trimmed().isEmpty();
    });
}

} // namespace

QImage textPage(const Paragraphs& paragraphs, QSize box) {
    if (saysNothing(paragraphs))
        return {};
    Sheet sheet(box);
    sheet.painter().setClipRect(QRectF(margin / 2, 0, page.width() - margin, page.height()));
    double y = margin;
    auto previous = Paragraph::Style::body;
    for (const Paragraph& paragraph : paragraphs) {
        if (y >= bottom)
            break;
        // Lines of code stand close to each other, but not to other text.
        const bool goesOn = paragraph.style == Paragraph::Style::code && previous == Paragraph::Style::code;
        if (y > margin && !goesOn)
            y += looks[size_t(paragraph.style)].above;
        previous = paragraph.style;
        if (paragraph.style == Paragraph::Style::rule)
            sheet.rule(y);
        else
            y = drawn(sheet, paragraph, y);
    }
    return sheet.taken();
}

QImage tablePage(const QList<QStringList>& rows, QSize box) {
    constexpr Look cell{90, QFont::Normal, 0}, headCell{90, QFont::DemiBold, 0};
    constexpr double rowHeight = 190, padding = 60, narrowest = 240, widest = 1100;
    constexpr double side = margin / 2;
    constexpr qsizetype mostColumns = 12, longestCell = 60;

    const auto mostRows = qsizetype((page.height() - 2 * side) / rowHeight) + 1;
    const QList<QStringList> shown = rows.first(std::min(rows.size(), mostRows));
    const QFontMetricsF metrics(fontOf(headCell));
    QList<double> widths;
    for (const QStringList& row : shown) {
        for (qsizetype column = 0; column < std::min(row.size(), mostColumns); ++column) {
            const double wanted = metrics.horizontalAdvance(row[column].left(longestCell)) + 2 * padding;
            if (column == widths.size())
                widths.append(narrowest);
            widths[column] = std::max(widths[column], std::min(wanted, widest));
        }
    }
    double whole = 0;
    for (const double one : widths)
        whole += one;
    if (whole == 0)
        return {};
    // A narrow table takes the page's whole width.
    const double stretch = std::max(1.0, (page.width() - 2 * side) / whole);

    Sheet sheet(box);
    QPainter& painter = sheet.painter();
    painter.setClipRect(QRectF(side, side, page.width() - 2 * side, page.height() - 2 * side));
    painter.fillRect(QRectF(0, side, page.width(), rowHeight), shade);
    double y = side;
    for (const QStringList& row : shown) {
        const bool isHead = y == side;
        painter.setFont(fontOf(isHead ? headCell : cell));
        painter.setPen(ink);
        double x = side;
        for (qsizetype column = 0; column < std::min(row.size(), widths.size()); ++column) {
            const double span = widths[column] * stretch;
            const QString text = metrics.elidedText(row[column].left(longestCell), Qt::ElideRight, span - 2 * padding);
            painter.drawText(QRectF(x + padding, y, span - 2 * padding, rowHeight), Qt::AlignVCenter | Qt::AlignLeft,
                             text);
            x += span;
        }
        y += rowHeight;
        painter.fillRect(QRectF(side, y - 3, page.width(), 6), ruleColour);
    }
    return sheet.taken();
}

} // namespace lumbra::reader

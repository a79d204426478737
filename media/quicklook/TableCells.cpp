// SPDX-License-Identifier: GPL-3.0-or-later
#include "TableCells.h"

#include "TextRows.h"

#include <algorithm>

namespace lumbra {

namespace {

QChar separatorOf(QStringView line) {
    qsizetype counts[4] = {};
    constexpr QStringView candidates = u",;\t|";
    bool quoted = false;
    for (const QChar character : line) {
        if (character == u'"')
            quoted = !quoted;
        else if (const qsizetype which = quoted ? -1 : candidates.indexOf(character); which >= 0)
            ++counts[which];
    }
    return candidates[std::max_element(std::begin(counts), std::end(counts)) - std::begin(counts)];
}

// Takes the text character by character, since a line may end within a cell.
class Reading {
public:
    Reading(QStringView text, QChar separator) : m_text(text), m_separator(separator) {}

    TableCells run() {
        for (; m_at < m_text.size(); ++m_at) {
            if (m_made.rows.size() == TableCells::mostRows) {
                m_made.isWhole = false;
                return std::move(m_made);
            }
            take(m_text[m_at]);
        }
        endRow();
        return std::move(m_made);
    }

private:
    void take(QChar character) {
        if (character == u'"' && m_quoted && m_at + 1 < m_text.size() && m_text[m_at + 1] == u'"') {
            m_cell += character;
            ++m_at;
        } else if (character == u'"' && (m_quoted || m_cell.isEmpty())) {
            m_quoted = !m_quoted;
        } else if (!m_quoted && character == m_separator) {
            endCell();
        } else if (!m_quoted && character == u'\n') {
            endRow();
        } else if (m_cell.size() < TableCells::longestCell) {
            m_cell += character;
        }
    }

    void endCell() {
        if (m_row.size() < TableCells::mostColumns)
            m_row.append(printableText(m_cell).simplified());
        m_cell.clear();
        m_quoted = false;
    }

    void endRow() {
        endCell();
        if (std::any_of(m_row.begin(), m_row.end(), [](const QString& cell) { return !cell.isEmpty(); }))
            m_made.rows.append(m_row);
        m_row.clear();
    }

    const QStringView m_text;
    const QChar m_separator;
    qsizetype m_at = 0;
    bool m_quoted = false;
    QString m_cell;
    QStringList m_row;
    TableCells m_made;
};

} // namespace

TableCells TableCells::of(const QString& text, std::optional<QChar> separator) {
    const QStringView first = QStringView(text).left(text.indexOf(u'\n'));
    return Reading(text, separator.value_or(separatorOf(first))).run();
}

} // namespace lumbra

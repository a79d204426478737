// SPDX-License-Identifier: GPL-3.0-or-later
#include "TextSelection.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>
#include <tuple>

namespace lumbra {

void TextSelection::setText(DocumentText* text) {
    if (m_text == text)
        return;
    if (m_text)
        m_text->disconnect(this);
    m_text = text;
    clear();
    if (text) {
        const auto changedFrom = [this](int row) {
            if (row <= m_to.row)
                clear();
        };
        connect(text, &DocumentText::modelReset, this, &TextSelection::clear);
        connect(text, &DocumentText::rowsRemoved, this,
                [changedFrom](const QModelIndex&, int first) { changedFrom(first); });
        connect(text, &DocumentText::rowsInserted, this,
                [changedFrom](const QModelIndex&, int first) { changedFrom(first); });
        connect(text, &DocumentText::dataChanged, this,
                [changedFrom](const QModelIndex& first) { changedFrom(first.row()); });
    }
    Q_EMIT textChanged();
}

void TextSelection::begin(int row, int at, int clicks) {
    if (!m_text)
        return;
    m_grain = clicks == 2 ? Grain::word : clicks > 2 ? Grain::row : Grain::character;
    std::tie(m_firstFrom, m_firstTo) = grainAt({row, at});
    mark(m_firstFrom, m_firstTo);
}

void TextSelection::extend(int row, int at) {
    if (!m_text)
        return;
    const auto [from, to] = grainAt({row, at});
    mark(std::min(from, m_firstFrom), std::max(to, m_firstTo));
}

void TextSelection::selectAll() {
    if (!m_text || m_text->rows().isEmpty())
        return;
    const auto last = int(m_text->rows().size()) - 1;
    mark({0, 0}, {last, lengthOf(m_text->rows()[last])});
}

void TextSelection::clear() {
    m_firstFrom = m_firstTo = {};
    mark({}, {});
}

void TextSelection::mark(TextSpot from, TextSpot to) {
    if (m_from == from && m_to == to)
        return;
    m_from = from;
    m_to = to;
    ++m_version;
    Q_EMIT changed();
}

std::pair<TextSpot, TextSpot> TextSelection::grainAt(TextSpot spot) const {
    const DocumentRows& rows = m_text->rows();
    if (rows.isEmpty())
        return {};
    const int row = std::clamp(spot.row, 0, int(rows.size()) - 1);
    const int length = lengthOf(rows[row]);
    const int at = std::clamp(spot.at, 0, length);
    if (m_grain == Grain::character)
        return {{row, at}, {row, at}};
    if (m_grain == Grain::row)
        return {{row, 0}, {row, length}};
    const auto [from, to] = wordAt(wordsOf(rows[row]), at);
    return {{row, std::min(from, length)}, {row, std::min(to, length)}};
}

QPointF TextSelection::rangeIn(int row) const {
    if (isEmpty() || !m_text || row < m_from.row || row > m_to.row || row >= m_text->rows().size())
        return {};
    const int end = row == m_to.row ? m_to.at : lengthOf(m_text->rows()[row]);
    return QPointF(row == m_from.row ? m_from.at : 0, end);
}

QString TextSelection::words() const {
    return m_text ? wordsBetween(m_text->rows(), m_from, m_to) : QString();
}

void TextSelection::copy() const {
    if (!isEmpty())
        QGuiApplication::clipboard()->setText(words());
}

} // namespace lumbra

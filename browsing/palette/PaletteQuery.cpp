// SPDX-License-Identifier: GPL-3.0-or-later
#include "PaletteQuery.h"

#include "NameArena.h"

#include <QStringList>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace lumbra {

std::optional<int> score(const QString& text, const QString& query) {
    return PaletteQuery(query).score(text);
}

PaletteQuery PaletteQuery::typed(const QString& text) {
    return PaletteQuery(text.trimmed().toLower());
}

PaletteQuery::PaletteQuery(const QString& text)
    : m_text(text), m_folded(text.normalized(QString::NormalizationForm_C).toStdString()) {
    const QStringList words = text.normalized(QString::NormalizationForm_C).split(u' ', Qt::SkipEmptyParts);
    for (const QString& word : words)
        m_words.push_back(word.toStdString());
}

std::optional<int> PaletteQuery::score(const QString& text) const {
    const std::string folded = NameArena::folded(text);
    const auto holds = [&](const std::string& word) { return folded.find(word) != std::string::npos; };
    if (!std::ranges::all_of(m_words, holds))
        return std::nullopt;
    return scoreOfMatch(folded, length(text.toLower()));
}

int PaletteQuery::scoreOfMatch(std::string_view folded, qsizetype length) const {
    constexpr int forBeginning = 30;
    constexpr int forEquality = 50;
    constexpr int charactersForOne = 8;
    if (isEmpty())
        return 0;
    int score = !m_words.empty() && folded.starts_with(m_words.front()) ? forBeginning : 0;
    if (folded == m_folded)
        score += forEquality;
    return score - int(length / charactersForOne);
}

qsizetype PaletteQuery::length(const QString& text) {
    const auto isPlain = [](QChar c) { return c.unicode() >= 0x20 && c.unicode() < 0x7F; };
    if (std::ranges::all_of(text, isPlain))
        return text.size();
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() >= 0)
        ++count;
    return count;
}

} // namespace lumbra

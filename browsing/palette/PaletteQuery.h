// What was typed into the palette, made ready for comparing, and the one measure of how well a text answers it.
//
// A plain value for any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbra {

// How well the text answers the query; nothing if a word of the query is missing in it. The query is taken as it is,
// without being put into lower case.
std::optional<int> score(const QString& text, const QString& query);

class PaletteQuery {
public:
    // Blanks around it and the case of its letters do not count.
    static PaletteQuery typed(const QString& text);

    PaletteQuery() = default;

    // The query as it is.
    explicit PaletteQuery(const QString& text);

    bool isEmpty() const { return m_text.isEmpty(); }
    const QString& text() const { return m_text; }

    // All of which a text must hold, as NameArena finds them.
    const std::vector<std::string>& words() const { return m_words; }

    std::optional<int> score(const QString& text) const;

    // The score of a text that holds all the words, given as NameArena has it, with its length in characters.
    int scoreOfMatch(std::string_view folded, qsizetype length) const;

    // A text's length as people count it.
    static qsizetype length(const QString& text);

private:
    QString m_text;
    std::string m_folded;
    std::vector<std::string> m_words;
};

} // namespace lumbra

// Names to be searched at each keystroke: all of them one after another in one piece of memory, in lower case and with
// accents composed, so that a search is a scan and costs no look at any one name.
//
// A value that is never changed once it is made; make it, and let a large one go, off the main thread. Safe to read on
// any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbra {

class NameArena {
public:
    // What stands for a text in the arena, and what a word must be to be found in it.
    static std::string folded(const QString& text);

    // Room for so many names of so many bytes altogether.
    void reserve(size_t names, size_t bytes);

    // UTF-8 without a NUL; names keep the order in which they are added.
    void add(std::string_view name);

    // The same name as another arena has it.
    void addFrom(const NameArena& other, size_t position);

    size_t size() const { return m_starts.size(); }
    size_t bytes() const { return m_text.size(); }

    // As it is searched.
    std::string_view at(size_t position) const;

    // Calls `visit` with the position of each name that holds all of the folded words, in order, until it answers
    // false. Without a word there is nothing to find.
    template <typename Visit>
    void find(const std::vector<std::string>& words, Visit visit) const {
        for (auto found = next(words, {}); found; found = next(words, *found)) {
            if (!visit(found->position))
                return;
        }
    }

private:
    struct Place {
        size_t position = 0;
        size_t end = 0; // where the next name begins
    };

    std::optional<Place> next(const std::vector<std::string>& words, const Place& from) const;

    // Each name is followed by a NUL, which no word holds: what is found never lies in two names.
    std::string m_text;
    std::vector<size_t> m_starts;
};

} // namespace lumbra

// SPDX-License-Identifier: GPL-3.0-or-later
#include "NameArena.h"

#include <algorithm>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace lumbra {

namespace {

bool isAscii(std::string_view text) {
    unsigned char all = 0;
    for (const char c : text)
        all |= static_cast<unsigned char>(c);
    return all < 0x80;
}

char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? char(c + ('a' - 'A')) : c;
}

// Where the word begins in the text, or null. The word has two bytes at least.
const char* firstOf(const char* text, const char* end, std::string_view word) {
#ifdef __SSE2__
    // Sixteen places at once: those where both the first and the last byte of the word stand are looked at.
    const __m128i first = _mm_set1_epi8(word.front());
    const __m128i last = _mm_set1_epi8(word.back());
    const auto load = [](const char* at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at)); };
    const auto step = std::ptrdiff_t(sizeof(__m128i));
    const auto reach = std::ptrdiff_t(word.size()) - 1;
    for (; end - text >= reach + step; text += step) {
        const __m128i both = _mm_and_si128(_mm_cmpeq_epi8(first, load(text)), _mm_cmpeq_epi8(last, load(text + reach)));
        for (auto places = unsigned(_mm_movemask_epi8(both)); places; places &= places - 1) {
            const char* const place = text + __builtin_ctz(places);
            if (std::memcmp(place + 1, word.data() + 1, word.size() - 2) == 0)
                return place;
        }
    }
#endif
    return static_cast<const char*>(::memmem(text, size_t(end - text), word.data(), word.size()));
}

} // namespace

std::string NameArena::folded(const QString& text) {
    return text.toLower().normalized(QString::NormalizationForm_C).toStdString();
}

void NameArena::reserve(size_t names, size_t bytes) {
    m_starts.reserve(names);
    m_text.reserve(bytes + names);
}

void NameArena::add(std::string_view name) {
    m_starts.push_back(m_text.size());
    if (isAscii(name)) {
        const size_t start = m_text.size();
        m_text.resize(start + name.size());
        std::ranges::transform(name, m_text.begin() + std::ptrdiff_t(start), lowered);
    } else {
        m_text += folded(QString::fromUtf8(name.data(), qsizetype(name.size())));
    }
    m_text += '\0';
}

void NameArena::addFrom(const NameArena& other, size_t position) {
    m_starts.push_back(m_text.size());
    m_text += other.at(position);
    m_text += '\0';
}

std::string_view NameArena::at(size_t position) const {
    const size_t start = m_starts[position];
    const size_t end = position + 1 < m_starts.size() ? m_starts[position + 1] : m_text.size();
    return std::string_view(m_text).substr(start, end - start - 1);
}

// Leaps from word to word: each is looked for from the beginning of the name at which the one before was found, and
// where it is found in a later name, that name is the next that may hold them all. So a rare word lets all the places
// of the frequent ones be passed over, whatever the order in which they were typed.
std::optional<NameArena::Place> NameArena::next(const std::vector<std::string>& words, const Place& from) const {
    if (words.empty() || std::ranges::any_of(words, [](const std::string& word) {
            return word.empty() || word.find('\0') != std::string::npos;
        }))
        return std::nullopt;
    const char* const text = m_text.data();
    const char* const end = text + m_text.size();
    const char* name = text + from.end;
    size_t agreed = 0;
    for (size_t turn = 0; agreed < words.size(); turn = (turn + 1) % words.size()) {
        const std::string& word = words[turn];
        const auto* const found = word.size() == 1
                                      ? static_cast<const char*>(std::memchr(name, word.front(), size_t(end - name)))
                                      : firstOf(name, end, word);
        if (!found)
            return std::nullopt;
        const auto* const border = static_cast<const char*>(::memrchr(name, '\0', size_t(found - name)));
        if (border)
            name = border + 1;
        agreed = border ? 1 : agreed + 1;
    }
    const auto start = size_t(name - text);
    // Matches often are near each other, and to look for the next one among all names would cost more than to find it.
    size_t reach = from.position;
    for (size_t stride = 1; reach < m_starts.size() && m_starts[reach] < start; stride *= 2)
        reach += stride;
    const auto first = m_starts.begin() + std::ptrdiff_t(from.position);
    const auto last = m_starts.begin() + std::ptrdiff_t(std::min(reach + 1, m_starts.size()));
    const auto position = size_t(std::lower_bound(first, last, start) - m_starts.begin());
    return Place{position, start + at(position).size() + 1};
}

} // namespace lumbra

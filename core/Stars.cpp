// SPDX-License-Identifier: GPL-3.0-or-later
#include "Stars.h"

#include <array>
#include <charconv>
#include <cmath>

namespace lumbra::Stars {

namespace {

// Read as a fallback, never written, removed whenever a star changes.
constexpr AttributeName legacyAttribute{"agency.tarnwick.folia.starred"};

constexpr size_t longest = 64;

std::optional<Date> dateOf(std::string_view text) {
    double seconds = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, seconds);
    // A star that is infinitely late, or at no time, would break the order of every list it is in.
    if (error != std::errc() || stop != end || !std::isfinite(seconds))
        return std::nullopt;
    return Date{seconds};
}

std::optional<Date> readOne(const Location& file, const AttributeName& name) {
    const auto value = ExtendedAttributes::read(file, name, longest);
    if (!value)
        return std::nullopt;
    return dateOf({value->constData(), size_t(value->size())});
}

std::optional<Date> readOneAt(int folder, const char* entry, const AttributeName& name) {
    std::array<char, longest> buffer;
    const auto value = ExtendedAttributes::readAt(folder, entry, name, buffer);
    return value ? dateOf(*value) : std::nullopt;
}

} // namespace

std::optional<Date> read(const Location& file) {
    const auto date = readOne(file, attribute);
    return date ? date : readOne(file, legacyAttribute);
}

// The list of names answers for both attributes at once. Measured on 50,000 files of ext4 and tmpfs: listing takes 0.4
// microseconds a file, asking for one value 0.4 to 0.55, asking for both 0.8 to 0.9; with a note on every file 0.46 to
// 0.73, 0.57 to 0.77 and 0.97 to 1.2. So a file without a star costs no more than one question.
std::optional<Date> readAt(int folder, const char* entry) {
    const auto names = ExtendedAttributes::NamesAt::of(folder, entry);
    const auto read = [&](const AttributeName& name) {
        return names && !names->holds(name) ? std::nullopt : readOneAt(folder, entry, name);
    };
    const auto date = read(attribute);
    return date ? date : read(legacyAttribute);
}

bool write(const Location& file, bool starred) {
    ExtendedAttributes::remove(file, legacyAttribute);
    if (!starred)
        return ExtendedAttributes::remove(file, attribute) != ExtendedAttributes::Removal::failed;
    std::array<char, 32> text; // the shortest form that reads back to the same number has 24 at most
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), Date::now().seconds);
    return error == std::errc() && ExtendedAttributes::write(file, attribute, QByteArrayView(text.data(), end));
}

} // namespace lumbra::Stars

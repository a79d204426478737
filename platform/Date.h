// A moment, as the product keeps it everywhere: seconds since 1970-01-01 UTC.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <compare>

namespace lumbra {

struct Date {
    double seconds = 0;

    // Earlier than any file: what a missing date compares as (the first instant of year 1).
    static constexpr Date distantPast() { return {-62135596800.0}; }

    // The system clock's present time. Logic that compares with "now" takes it as an argument instead.
    static Date now();

    constexpr Date operator+(double interval) const { return {seconds + interval}; }
    constexpr Date operator-(double interval) const { return {seconds - interval}; }
    constexpr double operator-(Date other) const { return seconds - other.seconds; }

    // NOLINTNEXTLINE(modernize-use-nullptr): clang-tidy 14 takes the 0 that `<` compares with for a pointer
    friend constexpr auto operator<=>(const Date&, const Date&) = default;
};

} // namespace lumbra

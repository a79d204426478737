// How long tests wait for what must come. It costs nothing where all is well, and these programs run beside many
// others: what takes a moment alone may then take seconds. Every test has it without including it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTest>

namespace lumbra {

inline constexpr int patience = 60'000; // ms

} // namespace lumbra

#undef QTRY_VERIFY
#define QTRY_VERIFY(...) QTRY_VERIFY_WITH_TIMEOUT((__VA_ARGS__), lumbra::patience)
#undef QTRY_VERIFY2
#define QTRY_VERIFY2(statement, message) QTRY_VERIFY2_WITH_TIMEOUT((statement), (message), lumbra::patience)
#undef QTRY_COMPARE
#define QTRY_COMPARE(actual, ...) QTRY_COMPARE_WITH_TIMEOUT((actual), (__VA_ARGS__), lumbra::patience)

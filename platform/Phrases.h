// Amounts in words, in English whatever the locale, as all texts of the product are. Pure functions; safe on any
// thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Date.h"

#include <QString>

namespace lumbra::Phrases {

// A file's size in steps of 1000: "Zero KB", "1 byte", "512 bytes", "34 KB", "1.2 MB", "3.25 GB".
QString bytes(qint64 count);

// When something was, seen from `now`, in the largest unit that fits: "now", "2 hours ago", "yesterday", "last month",
// "in 3 days". From a day on, days are those of the calendar, in the local time zone.
QString relativeTime(Date then, Date now);

// The day and the minute, in the local time zone: "Nov 21, 2026 at 5:30 PM".
QString dateAndTime(Date moment);

} // namespace lumbra::Phrases

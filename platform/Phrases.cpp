// SPDX-License-Identifier: GPL-3.0-or-later
#include "Phrases.h"

#include <QDateTime>
#include <QLocale>

#include <unicode/reldatefmt.h>

#include <algorithm>
#include <cmath>

namespace lumbra::Phrases {

namespace {

struct Unit {
    QLatin1String name;
    qint64 size;
    int digits; // after the point
};

constexpr Unit units[] = {
    {QLatin1String("KB"), 1'000, 0},
    {QLatin1String("MB"), 1'000'000, 1},
    {QLatin1String("GB"), 1'000'000'000, 2},
    {QLatin1String("TB"), 1'000'000'000'000, 2},
    {QLatin1String("PB"), 1'000'000'000'000'000, 2},
    {QLatin1String("EB"), 1'000'000'000'000'000'000, 2},
};

constexpr qint64 minute = 60; // in seconds
constexpr qint64 hour = 60 * minute;
constexpr qint64 day = 24 * hour;

struct Distance {
    qint64 count;
    URelativeDateTimeUnit unit;
};

// How far `earlier` lies before `later`, in the largest unit of which it is at least one.
Distance distance(const QDateTime& earlier, const QDateTime& later) {
    const qint64 seconds = earlier.secsTo(later);
    if (seconds < minute)
        return {seconds, UDAT_REL_UNIT_SECOND};
    if (seconds < hour)
        return {seconds / minute, UDAT_REL_UNIT_MINUTE};
    if (seconds < day)
        return {seconds / hour, UDAT_REL_UNIT_HOUR};

    const QDate from = earlier.date();
    const QDate to = later.date();
    // Whole months of the calendar: the same day of the month must have come round.
    qint64 months = (to.year() - from.year()) * 12 + to.month() - from.month();
    if (from.addMonths(int(months)) > to)
        --months;
    if (months >= 12)
        return {months / 12, UDAT_REL_UNIT_YEAR};
    if (months >= 1)
        return {months, UDAT_REL_UNIT_MONTH};
    const qint64 days = from.daysTo(to);
    if (days >= 7)
        return {days / 7, UDAT_REL_UNIT_WEEK};
    return {std::max<qint64>(days, 1), UDAT_REL_UNIT_DAY};
}

// Dates that a file system can state at all; beyond them calendars have no answer.
QDateTime localTime(Date date) {
    constexpr double bound = 253'402'300'799.0; // the end of the year 9999
    return QDateTime::fromMSecsSinceEpoch(qint64(std::clamp(date.seconds, Date::distantPast().seconds, bound) * 1000));
}

} // namespace

QString bytes(qint64 count) {
    if (count <= 0)
        return QStringLiteral("Zero KB");
    if (count < 1000)
        return count == 1 ? QStringLiteral("1 byte") : QStringLiteral("%1 bytes").arg(count);
    for (const Unit& unit : units) {
        // In whole steps of the last digit shown, since 999,950 bytes must not read as 1000 KB.
        qint64 steps = 1;
        for (int digit = 0; digit < unit.digits; ++digit)
            steps *= 10;
        const qint64 step = unit.size / steps;
        const qint64 rounded = count / step + (count % step >= step / 2 ? 1 : 0);
        if (rounded >= 1000 * steps && &unit != std::end(units) - 1)
            continue;
        QString number = QString::number(rounded / steps);
        if (qint64 fraction = rounded % steps; fraction != 0) {
            QString digits = QString::number(fraction).rightJustified(unit.digits, u'0');
            while (digits.endsWith(u'0'))
                digits.chop(1);
            number += u'.' + digits;
        }
        return number + u' ' + unit.name;
    }
    Q_UNREACHABLE();
}

QString relativeTime(Date then, Date now) {
    const QDateTime thenLocal = localTime(then);
    const QDateTime nowLocal = localTime(now);
    const bool isPast = thenLocal <= nowLocal;
    const Distance apart = isPast ? distance(thenLocal, nowLocal) : distance(nowLocal, thenLocal);

    // Making a formatter reads its data, some tenths of a millisecond; asking one that nobody changes is thread-safe.
    UErrorCode status = U_ZERO_ERROR;
    static const icu::RelativeDateTimeFormatter formatter(icu::Locale::getEnglish(), status);
    icu::UnicodeString text;
    formatter.format(isPast ? -double(apart.count) : double(apart.count), apart.unit, text, status);
    return QString::fromUtf16(text.getBuffer(), text.length());
}

QString dateAndTime(Date moment) {
    return QLocale::c().toString(localTime(moment), QStringLiteral("MMM d, yyyy 'at' h:mm AP"));
}

} // namespace lumbra::Phrases

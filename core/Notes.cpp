// SPDX-License-Identifier: GPL-3.0-or-later
#include "Notes.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>

namespace lumbra {

namespace {

using Text = std::optional<QString> AgentNote::*;

struct Field {
    QLatin1String key;
    Text text;
};

constexpr QLatin1String createdKey{"created"};

constexpr std::array texts{
    Field{QLatin1String("prompt"), &AgentNote::prompt}, Field{QLatin1String("model"), &AgentNote::model},
    Field{QLatin1String("tool"), &AgentNote::tool},     Field{QLatin1String("task"), &AgentNote::task},
    Field{QLatin1String("agent"), &AgentNote::agent},   Field{QLatin1String("source"), &AgentNote::source},
    Field{QLatin1String("repo"), &AgentNote::repo},     Field{QLatin1String("commit"), &AgentNote::commit},
};

// The years that ISO 8601 writes in four digits: 0001-01-01 until before 10000-01-01.
constexpr double firstMoment = -62135596800.0;
constexpr double endOfMoments = 253402300800.0;

// Absent for a moment that has no ISO 8601 text.
std::optional<QString> textOf(Date date) {
    const double seconds = std::floor(date.seconds);
    if (!(seconds >= firstMoment && seconds < endOfMoments))
        return std::nullopt;
    return QDateTime::fromSecsSinceEpoch(qint64(seconds), Qt::UTC).toString(Qt::ISODate);
}

std::optional<Date> dateOf(const QString& text) {
    // Qt takes more than ISO 8601 for a date, and a text without a zone for one in the zone of whoever reads it.
    static const QRegularExpression moment(
        QStringLiteral(R"(\A\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(?:[.,]\d+)?(?:Z|[+-]\d\d(?::?\d\d)?)\z)"));
    if (!moment.match(text).hasMatch())
        return std::nullopt;
    const QDateTime parsed = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!parsed.isValid())
        return std::nullopt;
    return Date{double(parsed.toMSecsSinceEpoch()) / 1000};
}

std::optional<AgentNote> decoded(const QByteArray& bytes) {
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject object = document.object();
    // Null is how some writers of JSON say that they have nothing to say.
    const auto isPresent = [](const QJsonValue& value) { return !value.isUndefined() && !value.isNull(); };
    AgentNote note;
    for (const auto& [key, text] : texts) {
        if (const QJsonValue value = object.value(key); isPresent(value)) {
            if (!value.isString())
                return std::nullopt;
            note.*text = value.toString();
        }
    }
    if (const QJsonValue value = object.value(createdKey); isPresent(value)) {
        note.created = dateOf(value.toString());
        if (!note.created)
            return std::nullopt;
    }
    return note;
}

std::optional<QByteArray> encoded(const AgentNote& note) {
    QJsonObject object; // sorts its keys
    for (const auto& [key, text] : texts) {
        if (note.*text)
            object.insert(key, *(note.*text));
    }
    if (note.created) {
        const auto date = textOf(*note.created);
        if (!date)
            return std::nullopt;
        object.insert(createdKey, *date);
    }
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace

bool AgentNote::isEmpty() const {
    constexpr std::array telling{&AgentNote::prompt, &AgentNote::model, &AgentNote::tool,
                                 &AgentNote::task,   &AgentNote::agent, &AgentNote::source};
    return std::all_of(telling.begin(), telling.end(),
                       [this](Text text) { return !(this->*text) || (this->*text)->isEmpty(); });
}

AgentNote AgentNote::mergedWith(const AgentNote& other) const {
    AgentNote merged = *this;
    for (const auto& [key, text] : texts) {
        if (other.*text)
            merged.*text = other.*text;
    }
    if (!merged.created)
        merged.created = other.created;
    return merged;
}

QString AgentNote::summary() const {
    QStringList phrases;
    if (agent)
        phrases << QStringLiteral("Made by ") + *agent;
    if (const auto& maker = tool ? tool : model)
        phrases << (phrases.isEmpty() ? QStringLiteral("Made with ") : QStringLiteral("with ")) + *maker;
    if (task)
        phrases << QStringLiteral("for ") + *task;
    return phrases.join(u' ');
}

namespace Notes {

std::optional<AgentNote> read(const Location& file) {
    const auto value = ExtendedAttributes::read(file, attribute);
    return value ? decoded(*value) : std::nullopt;
}

bool write(const AgentNote& note, const Location& file) {
    const auto value = encoded(read(file).value_or(AgentNote()).mergedWith(note));
    return value && ExtendedAttributes::write(file, attribute, *value);
}

} // namespace Notes

} // namespace lumbra

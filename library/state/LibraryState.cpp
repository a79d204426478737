// SPDX-License-Identifier: GPL-3.0-or-later
#include "LibraryState.h"

#include <QJsonArray>

#include <algorithm>

namespace lumbra {

namespace {

// Readers of one JSON value; absent when it has another type.

std::optional<QString> text(const QJsonValue& value) {
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

std::optional<int> integer(const QJsonValue& value) {
    const double number = value.toDouble(0.5);
    const int whole = value.toInt();
    return value.isDouble() && double(whole) == number ? std::optional(whole) : std::nullopt;
}

template <typename Read>
auto list(const QJsonValue& value, Read read) -> std::optional<QList<typename decltype(read(value))::value_type>> {
    if (!value.isArray())
        return std::nullopt;
    QList<typename decltype(read(value))::value_type> result;
    for (const QJsonValue element : value.toArray()) {
        auto item = read(element);
        if (!item)
            return std::nullopt;
        result.append(*std::move(item));
    }
    return result;
}

std::optional<ProjectGroup> group(const QJsonValue& value) {
    const QJsonObject object = value.toObject();
    const auto id = text(object[u"id"]);
    const auto name = text(object[u"name"]);
    const auto projects = list(object[u"projects"], text);
    const QJsonValue collapsed = object[u"collapsed"];
    if (!id || !name || !projects || !collapsed.isBool())
        return std::nullopt;
    ProjectGroup group{QUuid::fromString(*id), *name, *projects, std::nullopt, collapsed.toBool()};
    if (group.id.isNull())
        return std::nullopt;
    if (const QJsonValue color = object[u"color"]; !color.isUndefined() && !color.isNull()) {
        group.color = integer(color);
        if (!group.color)
            return std::nullopt;
    }
    return group;
}

QJsonObject toJson(const ProjectGroup& group) {
    QJsonObject object{{QStringLiteral("id"), group.id.toString(QUuid::WithoutBraces).toUpper()},
                       {QStringLiteral("name"), group.name},
                       {QStringLiteral("projects"), QJsonArray::fromStringList(group.projects)},
                       {QStringLiteral("collapsed"), group.collapsed}};
    if (group.color)
        object.insert(QStringLiteral("color"), *group.color);
    return object;
}

} // namespace

std::optional<LibraryState> LibraryState::fromJson(const QJsonObject& object) {
    const auto pins = list(object[u"pins"], text);
    const auto groups = list(object[u"groups"], group);
    const auto hidden = list(object[u"hidden"], text);
    const auto dismissed = list(object[u"dismissed"], text);
    const QJsonValue colors = object[u"colors"];
    if (!pins || !groups || !hidden || !dismissed || !colors.isObject())
        return std::nullopt;
    LibraryState state{*pins, *groups, *hidden, {}, *dismissed, std::nullopt};
    const QJsonObject colorTable = colors.toObject();
    for (auto entry = colorTable.begin(); entry != colorTable.end(); ++entry) {
        const auto color = integer(entry.value());
        if (!color)
            return std::nullopt;
        state.colors.insert(entry.key(), *color);
    }
    if (const QJsonValue tidy = object[u"tidyDismissed"]; !tidy.isUndefined() && !tidy.isNull()) {
        state.tidyDismissed = list(tidy, text);
        if (!state.tidyDismissed)
            return std::nullopt;
    }
    return state;
}

QJsonObject LibraryState::toJson() const {
    QJsonArray groupList;
    for (const ProjectGroup& group : groups)
        groupList.append(lumbra::toJson(group));
    QJsonObject colorTable;
    for (auto entry = colors.begin(); entry != colors.end(); ++entry)
        colorTable.insert(entry.key(), entry.value());
    QJsonObject object{{QStringLiteral("pins"), QJsonArray::fromStringList(pins)},
                       {QStringLiteral("groups"), groupList},
                       {QStringLiteral("hidden"), QJsonArray::fromStringList(hidden)},
                       {QStringLiteral("colors"), colorTable},
                       {QStringLiteral("dismissed"), QJsonArray::fromStringList(dismissed)}};
    if (tidyDismissed)
        object.insert(QStringLiteral("tidyDismissed"), QJsonArray::fromStringList(*tidyDismissed));
    return object;
}

LibraryState LibraryState::renaming(const QString& old, const QString& name) const {
    LibraryState next = *this;
    for (QString& pin : next.pins) {
        if (pin == old)
            pin = name;
        else if (pin.startsWith(old + u'/'))
            pin = name + pin.mid(old.size());
    }
    for (ProjectGroup& entry : next.groups)
        std::ranges::replace(entry.projects, old, name);
    std::ranges::replace(next.hidden, old, name);
    if (next.colors.contains(old))
        next.colors.insert(name, next.colors.take(old));
    return next;
}

LibraryState LibraryState::forgetting(const QString& name) const {
    LibraryState next = *this;
    next.pins.removeIf([&](const QString& pin) { return pin == name || pin.startsWith(name + u'/'); });
    for (ProjectGroup& entry : next.groups)
        entry.projects.removeAll(name);
    next.groups.removeIf([](const ProjectGroup& entry) { return entry.projects.isEmpty(); });
    next.hidden.removeAll(name);
    next.colors.remove(name);
    return next;
}

} // namespace lumbra

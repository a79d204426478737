// One row of the palette: a project, a group, a folder, a file or an action, with its words and what it leads to.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"

#include <QObject>

#include <functional>
#include <optional>

namespace lumbra {

class PaletteResult {
    Q_GADGET
    Q_PROPERTY(QString id READ id)
    Q_PROPERTY(QString section MEMBER section)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString subtitle MEMBER subtitle)
    Q_PROPERTY(bool hasBadge READ hasBadge)
    Q_PROPERTY(QString badgeName READ badgeName)
    Q_PROPERTY(int badgeHue READ badgeHue)
    Q_PROPERTY(bool hasAsset READ hasAsset)
    Q_PROPERTY(lumbra::Asset file READ file)
    Q_PROPERTY(QString symbol READ symbolName)
    Q_PROPERTY(QString hint READ hint)

public:
    // In the order of the sections.
    enum class Kind { project, folder, file, action };
    Q_ENUM(Kind)

    struct Badge {
        QString name; // whose mark it bears
        int hue = 0;

        friend bool operator==(const Badge&, const Badge&) = default;
    };

    Kind kind = Kind::project;
    QString title = {};
    QString subtitle = {};
    std::optional<Place> place = {}; // of projects, groups and folders
    std::optional<Badge> badge = {};
    std::optional<Asset> asset = {}; // of files
    std::optional<QString> symbol = {};
    std::function<void()> run = {}; // of actions
    qsizetype index = 0;            // among all rows
    QString section = {};           // the section's title, on its first row

    QString id() const;

    // What the keys do with the row.
    QString hint() const;

    static QString sectionTitle(Kind kind);

    // Of what is to be seen.
    friend bool operator==(const PaletteResult& a, const PaletteResult& b) {
        return a.id() == b.id() && a.section == b.section && a.place == b.place && a.badge == b.badge
               && a.asset == b.asset && a.symbol == b.symbol;
    }

private:
    bool hasBadge() const { return badge.has_value(); }
    QString badgeName() const { return badge ? badge->name : QString(); }
    int badgeHue() const { return badge ? badge->hue : 0; }
    bool hasAsset() const { return asset.has_value(); }
    Asset file() const { return asset.value_or(Asset()); }
    QString symbolName() const { return symbol.value_or(QString()); }
};

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::PaletteResult)

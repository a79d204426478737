// Every word that a page shows about itself: title, subtitle, status line, the states of an empty page, and the
// captions of tiles. Pure functions over what the page and the library hold.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"
#include "library/state/LibraryState.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

// What a page shows in place of its tiles.
class EmptyState {
    Q_GADGET
    QML_ANONYMOUS

    Q_PROPERTY(bool shown MEMBER shown)
    Q_PROPERTY(bool busy MEMBER busy)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(QString button MEMBER button)
    Q_PROPERTY(int offset MEMBER offset)

public:
    bool shown = false; // false while the page has tiles to draw, or may get some
    bool busy = false;  // a progress indicator with the title, and nothing else
    QString symbol;
    QString title;
    QString text;
    QString button; // "Show Everything", or empty for none
    int offset = 0; // below the header

    friend bool operator==(const EmptyState&, const EmptyState&) = default;
};

// What stands above a block of the feed.
class SectionHeader {
    Q_GADGET
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString detail MEMBER detail)
    Q_PROPERTY(QString button MEMBER button)

public:
    QString symbol;
    QString title;
    QString detail;
    QString button; // "Show All" above the shelf, or empty

    friend bool operator==(const SectionHeader&, const SectionHeader&) = default;
};

namespace PageText {

// The symbol of the pages that no folder stands for; empty for a folder.
QString symbol(const Place& place);

// `group` is the place's group and `project` the one that contains the place's folder, where there is one.
QString title(const Place& place, const std::optional<ProjectGroup>& group, const std::optional<Project>& project);
QString subtitle(const Place& place, qsizetype starred, const std::optional<Project>& project);

// The components of a location below its project's root, by its canonical form where it lies behind a link.
QStringList componentsBelow(const Project& project, const Location& url);

// A stack's caption: the project and the folders on the way down to it.
QString displayPath(const Location& url, const std::optional<Project>& project);

SectionHeader shelfHeader(qsizetype starred);
SectionHeader sectionHeader(AssetKind kind, qsizetype total);

// "Show More Images": the button below a section that holds more than it shows.
QString showMore(AssetKind kind);

struct StatusFacts {
    Place place;
    qsizetype groupProjects = 0; // projects of the place's group
    qsizetype folders = 0;       // folder tiles
    qsizetype items = 0;         // selectable tiles
    qint64 bytes = 0;            // their summed size
    qsizetype selection = 0;     // selected paths, those that went away included
    qint64 selectedBytes = 0;    // summed size of those that are still there
};

QString status(const StatusFacts& facts);

struct EmptyFacts {
    Place place;
    bool loaded = false;
    bool indexing = false;
    bool recursive = false;
    bool hasFolders = false;
    bool hasAssets = false;        // of a folder or starred page
    bool hasFeed = false;          // sections, or a shelf
    std::optional<AssetKind> kind; // the kind filter
    QString search;
    int recentDays = 0;
};

EmptyState emptyState(const EmptyFacts& facts);

} // namespace PageText
} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::EmptyState)
Q_DECLARE_METATYPE(lumbra::SectionHeader)

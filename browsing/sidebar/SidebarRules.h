// The small decisions of the sidebar: what a badge reads, what counts as new, which rows the present place opens, what
// a project dropped on another one does, and what the footer says.
//
// Pure functions; safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"
#include "library/state/LibraryState.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

// What the line at the foot of the pane says.
struct SidebarFooter {
    Q_GADGET
    QML_ANONYMOUS

    Q_PROPERTY(bool busy MEMBER busy)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(double share MEMBER share)
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(QString tail MEMBER tail)
    Q_PROPERTY(QString detail MEMBER detail)

public:
    bool busy = false;   // a spinner stands in the symbol's place
    QString symbol = {}; // empty where a spinner or a gauge stands
    double share = -1;   // of the work that is done, for a gauge; below zero for none
    QString text = {};
    QString tail = {};   // of the text: what stays where there is no room for all of it
    QString detail = {}; // the second line

    friend bool operator==(const SidebarFooter&, const SidebarFooter&) = default;
};

namespace SidebarRules {

// The number of new files as the badge of Recent has room for it; empty for none.
QString newBadge(qsizetype count);

// How long activity keeps a project's dot, in seconds.
inline constexpr double freshFor = 86400;

bool isFresh(const std::optional<Date>& lastActivity, Date now);

// The rows to open so that the row of a folder can be reached: the folder itself, those above it up to the root, and
// the project that contains it, which may lie elsewhere. `folder` and `root` are canonical.
QSet<Location> openedBy(const Location& folder, const Location& root, const std::optional<Location>& project);

// What dropping a project on another one comes to, when the other stands in no group: a group of both, with this name.
// It is their first word where the dropped name begins with it too.
QString groupNameFor(const QString& target, const QString& dropped);

// The text with its first character in upper case and the rest as it stands.
QString capitalized(const QString& text);

// The drag payload of a project's row, and the name in a payload; absent for any other text.
QString dragPayload(const QString& projectName);
std::optional<QString> projectNameIn(const QString& payload);

// The hue of each of the projects by its name: that of the first group that it stands in, or its own. What the library
// answers for one name, found for all of them in one pass over the groups.
QHash<QString, int> hues(const LibraryState& state, const QList<Project>& projects);
int groupHue(const LibraryState& state, const ProjectGroup& group);

struct FooterFacts {
    bool indexing = false;
    std::optional<QString> paused = {}; // why nothing is understood at the moment
    int done = 0;                       // files understood since the launch
    int planned = 0;                    // those and the ones to come
    std::optional<QString> current = {};
    Location root = {};
    qsizetype projects = 0; // visible ones
};

// What goes on, what it waits for, how far it is, or else where the library lies. The plural is fixed.
SidebarFooter footer(const FooterFacts& facts);

} // namespace SidebarRules
} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::SidebarFooter)

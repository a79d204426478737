// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageText.h"

#include "media/KindSymbol.h"
#include "platform/Phrases.h"

namespace lumbra::PageText {

namespace {

QString counted(qsizetype count, QLatin1String one, QLatin1String many) {
    return QString::number(count) + u' ' + (count == 1 ? one : many);
}

EmptyState indexing() {
    EmptyState state;
    state.shown = true;
    state.busy = true;
    state.title = QStringLiteral("Indexing the library…");
    state.offset = 120;
    return state;
}

EmptyState empty(const char16_t* symbol, const char16_t* title, const QString& text) {
    EmptyState state;
    state.shown = true;
    state.symbol = QString::fromUtf16(symbol);
    state.title = QString::fromUtf16(title);
    state.text = text;
    state.offset = 80;
    return state;
}

EmptyState emptyFolder(const EmptyFacts& facts) {
    if (!facts.kind && facts.search.isEmpty())
        return empty(u"tray", u"Nothing here yet",
                     QStringLiteral("Files agents save to this folder appear here as soon as they land."));
    EmptyState state = empty(u"line.3.horizontal.decrease.circle", u"No matches", {});
    if (facts.search.isEmpty()) {
        state.title = QStringLiteral("No %1 here").arg(pluralLabel(*facts.kind).toLower());
        state.text = QStringLiteral("A filter is hiding the rest of this folder.");
    } else {
        state.text = QStringLiteral("Nothing matches “") + facts.search + QStringLiteral("”.");
    }
    state.button = QStringLiteral("Show Everything");
    return state;
}

} // namespace

QString symbol(const Place& place) {
    switch (place.which()) {
    case Place::Case::starred:
        return QStringLiteral("star.fill");
    case Place::Case::tidy:
        return QStringLiteral("wand.and.stars");
    case Place::Case::recent:
        return QStringLiteral("clock");
    case Place::Case::group:
    case Place::Case::folder:
        break;
    }
    return {};
}

QString title(const Place& place, const std::optional<ProjectGroup>& group, const std::optional<Project>& project) {
    switch (place.which()) {
    case Place::Case::starred:
        return QStringLiteral("Starred");
    case Place::Case::tidy:
        return QStringLiteral("Tidy");
    case Place::Case::group:
        return group ? group->name : QStringLiteral("Group");
    case Place::Case::folder:
        return project ? project->name : place.folderUrl()->name();
    case Place::Case::recent:
        break;
    }
    return QStringLiteral("Recent");
}

QString subtitle(const Place& place, qsizetype starred, const std::optional<Project>& project) {
    switch (place.which()) {
    case Place::Case::starred:
        return QStringLiteral("%1 kept").arg(starred);
    case Place::Case::recent:
        return QStringLiteral("Every project, newest first");
    case Place::Case::tidy:
    case Place::Case::group:
        return {};
    case Place::Case::folder:
        break;
    }
    if (!project)
        return {};
    const QStringList below = componentsBelow(*project, *place.folderUrl());
    if (!below.isEmpty())
        return below.join(u'/');
    return project->repo ? QStringLiteral("Linked to ") + project->repo->abbreviated()
                         : QStringLiteral("Not linked to a repository");
}

QStringList componentsBelow(const Project& project, const Location& url) {
    const Location inside = url.isAtOrBelow(project.url) ? url : url.canonical();
    if (!inside.isAtOrBelow(project.url))
        return {};
    return inside.toString().mid(project.url.toString().size()).split(u'/', Qt::SkipEmptyParts);
}

QString displayPath(const Location& url, const std::optional<Project>& project) {
    if (!project)
        return url.name();
    return (QStringList(project->name) + componentsBelow(*project, url)).join(QStringLiteral(" › "));
}

SectionHeader shelfHeader(qsizetype starred) {
    return {QStringLiteral("star.fill"), QStringLiteral("Starred"), QStringLiteral("%1 kept").arg(starred),
            QStringLiteral("Show All")};
}

SectionHeader sectionHeader(AssetKind kind, qsizetype total) {
    return {kindSymbol(kind), pluralLabel(kind), QStringLiteral("%1 new").arg(total), {}};
}

QString showMore(AssetKind kind) {
    return QStringLiteral("Show More ") + pluralLabel(kind);
}

QString status(const StatusFacts& facts) {
    if (facts.place.is(Place::Case::group))
        return counted(facts.groupProjects, QLatin1String("project"), QLatin1String("projects"));
    if (facts.selection > 0)
        return QStringLiteral("%1 selected · ").arg(facts.selection) + Phrases::bytes(facts.selectedBytes);
    QString text = counted(facts.items, QLatin1String("item"), QLatin1String("items"));
    if (facts.folders > 0 && facts.place.is(Place::Case::folder))
        text += QStringLiteral(", ") + counted(facts.folders, QLatin1String("folder"), QLatin1String("folders"));
    return text + QStringLiteral(" · ") + Phrases::bytes(facts.bytes);
}

EmptyState emptyState(const EmptyFacts& facts) {
    switch (facts.place.which()) {
    case Place::Case::folder:
        if (facts.recursive && facts.indexing)
            return indexing();
        if (facts.loaded && !facts.hasFolders && !facts.hasAssets)
            return emptyFolder(facts);
        break;
    case Place::Case::starred:
        if (facts.loaded && !facts.hasAssets)
            return empty(u"star", u"Nothing starred yet",
                         QStringLiteral("Hover anything and click its star, or select it and press S. Starred things "
                                        "stay here and at the top of Recent."));
        break;
    case Place::Case::recent:
        if (facts.indexing)
            return indexing();
        if (facts.loaded && !facts.hasFeed)
            return empty(u"clock", u"Nothing new",
                         QStringLiteral("Nothing new was saved in the last %1.")
                             .arg(facts.recentDays == 1 ? QStringLiteral("day")
                                                        : QStringLiteral("%1 days").arg(facts.recentDays)));
        break;
    case Place::Case::group:
    case Place::Case::tidy:
        break;
    }
    return {};
}

} // namespace lumbra::PageText

// SPDX-License-Identifier: GPL-3.0-or-later
#include "Sidebar.h"

#include "browsing/DroppedFiles.h"
#include "core/PreferenceKeys.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace lumbra {

using Type = SidebarRow::Type;
using Chevron = SidebarRow::Chevron;

namespace {

std::optional<Location> folderOf(const SidebarRow& row) {
    return row.type == Type::project || row.type == Type::folder ? row.place.folderUrl() : std::nullopt;
}

} // namespace

Sidebar::Sidebar(Library* library, QObject* parent)
    : QObject(parent),
      m_library(library),
      m_byActivity(Preferences::shared().value(PreferenceKeys::projectsByActivity)) {
    m_refresh.setSingleShot(true);
    m_refresh.setInterval(0);
    connect(&m_refresh, &QTimer::timeout, this, &Sidebar::refresh);
    m_aging.setSingleShot(true);
    connect(&m_aging, &QTimer::timeout, this, &Sidebar::refresh);

    connect(library, &Library::projectsChanged, this, &Sidebar::takeInLibrary);
    connect(library, &Library::stateChanged, this, &Sidebar::takeInLibrary);
    connect(library, &Library::derivedChanged, this, &Sidebar::takeInLibrary);
    connect(library, &Library::indexingChanged, this, &Sidebar::refreshLater);
    connect(library, &Library::placeChanged, this, &Sidebar::followPlace);
    connect(&m_listings, &FolderListings::changed, this, &Sidebar::refreshLater);
    followPlace();
    refresh();
}

void Sidebar::setFilter(const QString& filter) {
    if (m_filter == filter)
        return;
    m_filter = filter;
    m_outdated = true;
    refresh();
    Q_EMIT filterChanged();
}

void Sidebar::setByActivity(bool byActivity) {
    if (m_byActivity == byActivity)
        return;
    m_byActivity = byActivity;
    Preferences::shared().setValue(PreferenceKeys::projectsByActivity, byActivity);
    m_outdated = true;
    refresh();
    Q_EMIT byActivityChanged();
}

void Sidebar::setInsights(InsightEngine* insights) {
    m_insights = insights;
    for (const auto changed : {&InsightEngine::doneChanged, &InsightEngine::plannedChanged,
                               &InsightEngine::currentChanged, &InsightEngine::pausedChanged})
        connect(insights, changed, this, &Sidebar::refreshFooter);
    refreshFooter();
}

void Sidebar::setTidySuggestions(qsizetype count) {
    m_facts.tidy = count;
    refreshLater();
}

void Sidebar::appeared(int row) {
    const SidebarRow* shown = rowAt(row);
    if (shown && shown->type == Type::folder)
        m_listings.request(*shown->place.folderUrl());
}

void Sidebar::choose(int row) {
    if (const SidebarRow* chosen = rowAt(row); chosen && chosen->isChoosable())
        m_library->setPlace(chosen->place);
}

void Sidebar::toggle(int row) {
    if (const SidebarRow* toggled = rowAt(row); toggled && toggled->chevron != Chevron::none)
        setOpen(*toggled, toggled->chevron == Chevron::closed);
}

int Sidebar::collapse(int row) {
    const SidebarRow* closing = rowAt(row);
    if (!closing)
        return row;
    if (closing->chevron == Chevron::open) {
        setOpen(*closing, false);
        return row;
    }
    for (int above = row - 1; above >= 0 && closing->depth > 0; --above) {
        if (rowAt(above)->depth < closing->depth)
            return above;
    }
    return row;
}

int Sidebar::expand(int row) {
    const SidebarRow* opening = rowAt(row);
    if (!opening)
        return row;
    if (opening->chevron == Chevron::closed) {
        setOpen(*opening, true);
        return row;
    }
    const SidebarRow* below = rowAt(row + 1);
    return below && below->depth > opening->depth ? row + 1 : row;
}

int Sidebar::step(int row, int by) const {
    for (int next = row + by; rowAt(next); next += by) {
        if (rowAt(next)->isChoosable())
            return next;
    }
    return row;
}

int Sidebar::selectedRow() const {
    const QList<SidebarRow>& rows = m_rows.rows();
    const auto selected =
        std::find_if(rows.crbegin(), rows.crend(), [](const SidebarRow& row) { return row.selected; });
    return int(rows.crend() - selected) - 1;
}

int Sidebar::firstResult() const {
    const QList<SidebarRow>& rows = m_rows.rows();
    const auto first = std::ranges::find_if(
        rows, [](const SidebarRow& row) { return row.type == Type::group || row.type == Type::project; });
    return first == rows.end() ? -1 : int(first - rows.begin());
}

QVariantList Sidebar::menu(int row) const {
    const SidebarRow* shown = rowAt(row);
    if (!shown)
        return {};
    switch (shown->type) {
    case Type::project:
        if (const auto project = projectOf(*shown))
            return MenuEntry::toVariants(menus().project(*project));
        break;
    case Type::group:
        if (const auto group = m_library->groupWithId(*shown->place.groupId()))
            return MenuEntry::toVariants(menus().group(*group));
        break;
    case Type::folder:
        return MenuEntry::toVariants(menus().folder(*shown->place.folderUrl()));
    case Type::pinned:
        return MenuEntry::toVariants(menus().pinned(*shown->place.folderUrl()));
    default:
        break;
    }
    return {};
}

QVariantList Sidebar::newMenu() const {
    return MenuEntry::toVariants(menus().newItems());
}

QVariantList Sidebar::optionsMenu() {
    return MenuEntry::toVariants(menus().options(
        m_byActivity, [this](bool byActivity) { setByActivity(byActivity); }, m_insights));
}

QString Sidebar::dragPayload(int row) const {
    const SidebarRow* dragged = rowAt(row);
    return dragged && dragged->type == Type::project ? SidebarRules::dragPayload(dragged->project) : QString();
}

bool Sidebar::accepts(int row, const QString& payload) const {
    const SidebarRow* target = rowAt(row);
    const auto dragged = draggedProject(payload);
    if (!target || !dragged)
        return false;
    if (target->type == Type::project)
        return target->project != dragged->name;
    return target->type == Type::group || target->type == Type::projectsHeader;
}

void Sidebar::drop(int row, const QString& payload) {
    if (!accepts(row, payload))
        return;
    const SidebarRow target = *rowAt(row);
    const QString dropped = draggedProject(payload)->name;
    if (target.type == Type::group)
        m_library->add(dropped, *target.place.groupId());
    else if (target.type == Type::projectsHeader)
        m_library->removeFromGroup(dropped);
    else
        dropOnProject(dropped, target);
}

void Sidebar::dropFiles(int row, const QList<QUrl>& urls) {
    if (const SidebarRow* target = rowAt(row); target && target->takesFiles())
        m_library->bring(droppedFiles(urls), *target->place.folderUrl());
}

void Sidebar::unpin(int row) {
    if (const SidebarRow* pin = rowAt(row); pin && pin->type == Type::pinned)
        m_library->togglePin(*pin->place.folderUrl());
}

void Sidebar::acceptSuggestion() {
    if (const auto suggestion = m_library->groupSuggestion())
        m_library->newGroup(SidebarRules::capitalized(suggestion->prefix), suggestion->projects);
}

void Sidebar::dismissSuggestion() {
    if (const auto suggestion = m_library->groupSuggestion())
        m_library->dismiss(*suggestion);
}

const SidebarRow* Sidebar::rowAt(int row) const {
    const QList<SidebarRow>& rows = m_rows.rows();
    return row >= 0 && row < rows.size() ? &rows[row] : nullptr;
}

std::optional<Project> Sidebar::projectOf(const SidebarRow& row) const {
    const QList<Project> projects = m_library->projects();
    const auto found = std::ranges::find(projects, row.project, &Project::name);
    return found == projects.end() ? std::nullopt : std::optional(*found);
}

// The payload may come from any program.
std::optional<Project> Sidebar::draggedProject(const QString& payload) const {
    const auto name = SidebarRules::projectNameIn(payload);
    if (!name)
        return std::nullopt;
    const QList<Project> projects = m_library->projects();
    const auto found = std::ranges::find(projects, *name, &Project::name);
    return found == projects.end() ? std::nullopt : std::optional(*found);
}

SidebarMenus Sidebar::menus() const {
    return {m_library,
            [this](const NamePrompt& prompt) {
                if (m_ask)
                    m_ask(prompt);
            },
            [this](const Confirmation& question) {
                if (m_confirm)
                    m_confirm(question);
            }};
}

void Sidebar::setOpen(const SidebarRow& row, bool open) {
    if (const auto group = row.place.groupId()) {
        const auto stored = m_library->groupWithId(*group);
        if (stored && stored->collapsed == open)
            m_library->toggleCollapsed(*group);
    } else if (const auto folder = folderOf(row)) {
        if (open)
            m_open.insert(*folder);
        else
            m_open.remove(*folder);
    }
    refresh();
}

void Sidebar::dropOnProject(const QString& dropped, const SidebarRow& target) {
    if (const auto group = m_library->groupContaining(target.project))
        m_library->add(dropped, group->id);
    else
        m_library->newGroup(SidebarRules::groupNameFor(target.project, dropped), {target.project, dropped});
}

void Sidebar::followPlace() {
    if (const auto folder = m_library->place().folderUrl()) {
        const auto project = m_library->projectContaining(*folder);
        const bool isInLibrary = folder->isAtOrBelow(m_library->root()); // and so named as the disk has it
        m_open.unite(SidebarRules::openedBy(isInLibrary ? *folder : folder->canonical(), m_library->root(),
                                            project ? std::optional(project->url) : std::nullopt));
    }
    refreshLater();
}

void Sidebar::takeInLibrary() {
    m_outdated = true;
    refreshLater();
}

void Sidebar::refreshLater() {
    m_refresh.start();
}

void Sidebar::refresh() {
    m_refresh.stop();
    if (std::exchange(m_outdated, false))
        gather();
    m_facts.place = m_library->place();
    m_facts.open = m_open;
    m_facts.subfolders = m_listings.subfolders();
    m_facts.now = Date::now();
    m_rows.setRows(SidebarRows::list(m_facts));
    refreshFooter();
    listNewlyOpen();
    wakeWhenSomethingAges();
}

// The larger part of a refresh where there are many projects; turning to another place and opening a row do without.
void Sidebar::gather() {
    const LibraryState state = m_library->state();
    const DerivedIndex& derived = m_library->derived();
    m_visible = m_library->visibleProjects();

    m_facts.newToday = derived.newToday;
    m_facts.starred = derived.starred.size();
    m_facts.activity = derived.activity;
    m_facts.filter = m_filter;
    m_facts.suggestion = m_filter.isEmpty() ? m_library->groupSuggestion() : std::nullopt;
    m_facts.entries =
        SidebarEntries::list({m_visible, state.groups, derived.activity, m_filter,
                              m_byActivity ? SidebarEntries::Order::activity : SidebarEntries::Order::name});
    m_facts.hues = SidebarRules::hues(state, m_library->projects()); // of hidden ones too, in which pins may lie
    m_facts.groupHues.clear();
    for (const ProjectGroup& group : state.groups)
        m_facts.groupHues.insert(group.id, SidebarRules::groupHue(state, group));
    m_facts.pins.clear();
    const QList<Location> pins = m_library->pinnedURLs();
    for (const Location& pin : pins) {
        const auto project = m_library->projectContaining(pin);
        m_facts.pins.append({pin, project ? std::optional(project->name) : std::nullopt});
    }
}

void Sidebar::refreshFooter() {
    SidebarRules::FooterFacts facts{
        .indexing = m_library->indexing(), .root = m_library->root(), .projects = m_visible.size()};
    if (m_insights) {
        facts.paused = m_insights->paused();
        facts.done = m_insights->done();
        facts.planned = m_insights->planned();
        facts.current = m_insights->current();
    }
    const SidebarFooter footer = SidebarRules::footer(facts);
    if (m_footer == footer)
        return;
    m_footer = footer;
    Q_EMIT footerChanged();
}

// A row that opens, or comes back open, is listed anew; one that stays as it is keeps its answer.
void Sidebar::listNewlyOpen() {
    QSet<Location> shown;
    for (const SidebarRow& row : m_rows.rows()) {
        const auto folder = folderOf(row);
        if (!folder || !m_open.contains(*folder))
            continue;
        shown.insert(*folder);
        if (!m_listed.contains(*folder))
            m_listings.request(*folder);
    }
    m_listed = shown;
}

void Sidebar::wakeWhenSomethingAges() {
    // The timer stands still while the machine sleeps, so it is not set for longer than a dot may outstay its day. That
    // also keeps a file dated far ahead from overflowing it.
    constexpr double longest = 3600;
    double soonest = std::numeric_limits<double>::infinity();
    for (const Project& project : std::as_const(m_visible)) {
        const auto last = m_library->lastActivity(project);
        if (SidebarRules::isFresh(last, m_facts.now))
            soonest = std::min(soonest, *last + SidebarRules::freshFor - m_facts.now);
    }
    m_aging.stop();
    if (std::isfinite(soonest))
        m_aging.start(int(std::ceil(std::min(soonest, longest) * 1000)));
}

} // namespace lumbra

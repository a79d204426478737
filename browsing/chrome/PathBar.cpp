// SPDX-License-Identifier: GPL-3.0-or-later
#include "PathBar.h"

#include "browsing/DroppedFiles.h"
#include "browsing/MenuEntry.h"
#include "library/Actions.h"
#include "library/Scanner.h"
#include "platform/Desktop.h"
#include "platform/Tasks.h"

namespace lumbra {

namespace {

// What lies in the library is named as the disk has it, which is not asked: a share may have stopped answering.
Location resolved(const Location& url, const Location& root) {
    return url.isAtOrBelow(root) ? url : url.canonical();
}

} // namespace

PathBar::PathBar(Library* library, QObject* parent) : QObject(parent), m_library(library) {
    connect(library, &Library::placeChanged, this, &PathBar::refresh);
    connect(library, &Library::placeChanged, this, &PathBar::listSiblings);
    connect(library, &Library::projectsChanged, this, &PathBar::refresh);
    connect(library, &Library::stateChanged, this, &PathBar::refresh);
    refresh();
    listSiblings();
}

void PathBar::refresh() {
    const Place place = m_library->place();
    PathFacts facts{place};
    if (const auto url = place.folderUrl())
        facts.project = m_library->projectContaining(*url);
    if (const auto id = place.groupId())
        facts.group = m_library->groupWithId(*id);
    else if (facts.project)
        facts.group = m_library->groupContaining(facts.project->name);
    if (facts.project)
        facts.projectHue = m_library->hueFor(facts.project->name);
    if (facts.group)
        facts.groupHue = m_library->groupHue(*facts.group);

    QList<PathStep> steps = pathSteps(facts);
    if (steps == m_steps)
        return;
    m_steps = std::move(steps);
    Q_EMIT stepsChanged();
}

void PathBar::listSiblings() {
    m_siblings.clear();
    Q_EMIT siblingsChanged();
    const Place place = m_library->place();
    const auto url = place.folderUrl();
    const auto project = url ? m_library->projectContaining(*url) : std::nullopt;
    const Location here = url ? resolved(*url, m_library->root()) : Location();
    if (!project || here == project->url)
        return;
    Tasks::run(Tasks::Pool::lasting, [parent = here.parent()] {
        return Scanner::list(parent).folders;
    }).then(this, [this, place](const QList<Location>& folders) {
        if (place != m_library->place())
            return;
        m_siblings = folders;
        Q_EMIT siblingsChanged();
    });
}

void PathBar::go(int step) {
    if (step >= 0 && step < m_steps.size())
        m_library->setPlace(m_steps.at(step).place);
}

void PathBar::drop(int step, const QList<QUrl>& urls) {
    if (const auto folder = m_steps.value(step).url)
        m_library->bring(droppedFiles(urls), *folder);
}

QVariantList PathBar::menu() const {
    const auto url = m_library->place().folderUrl();
    if (!url)
        return {};
    QList<MenuEntry> entries;
    const Location here = resolved(*url, m_library->root());
    for (const Location& sibling : m_siblings)
        entries.append(MenuEntry::item(sibling.name(), [library = m_library, sibling] {
                           library->setPlace(Place::folder(sibling));
                       }).withCheckmark(sibling == here));
    if (!entries.isEmpty())
        entries.append(MenuEntry::divider());
    entries.append(MenuEntry::item(QStringLiteral("Show in Finder"), [folder = *url] { Desktop::reveal({folder}); }));
    entries.append(MenuEntry::item(QStringLiteral("Copy Path"), [folder = *url] { Actions::copyPaths({folder}); }));
    return MenuEntry::toVariants(entries);
}

QVariantList PathBar::stepList() const {
    QVariantList steps;
    for (const PathStep& step : m_steps)
        steps.append(QVariant::fromValue(step));
    return steps;
}

} // namespace lumbra

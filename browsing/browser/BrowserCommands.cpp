// SPDX-License-Identifier: GPL-3.0-or-later
#include "BrowserCommands.h"

#include "library/Actions.h"
#include "platform/Desktop.h"

namespace lumbra {

BrowserCommands::BrowserCommands(Browser* browser, QObject* parent) : QObject(parent), m_browser(browser) {
    connect(browser, &Browser::selectedChanged, this, &BrowserCommands::follow);
    connect(library(), &Library::placeChanged, this, &BrowserCommands::follow);
    follow();
}

void BrowserCommands::open() const {
    Actions::open(selectedPaths());
}

void BrowserCommands::reveal() const {
    QList<Location> locations = selectedPaths();
    if (locations.isEmpty())
        if (const auto folder = library()->place().folderUrl())
            locations.append(*folder);
    Desktop::reveal(locations);
}

void BrowserCommands::copyPaths() const {
    Actions::copyPaths(selectedPaths());
}

void BrowserCommands::exportFiles() const {
    Actions::exportFiles(selectedPaths(), library());
}

void BrowserCommands::star() const {
    library()->toggleStar(selectedPaths());
}

void BrowserCommands::rename() const {
    if (const auto selected = selectedPaths(); selected.size() == 1)
        m_browser->rename(selected.first());
}

void BrowserCommands::trash() const {
    m_browser->trashSelected();
}

void BrowserCommands::newFolder() const {
    m_browser->newFolder();
}

void BrowserCommands::addFiles() const {
    if (const auto folder = library()->place().folderUrl())
        Actions::importFiles(*folder, library());
}

void BrowserCommands::toggleInspector() const {
    BrowserSettings& settings = *m_browser->settings();
    settings.setShowInspector(!settings.showInspector());
}

QList<Location> BrowserCommands::selectedPaths() const {
    return urlsOf(m_browser->selected());
}

void BrowserCommands::follow() {
    const bool hasSelection = m_browser->selectedCount() > 0;
    if (std::exchange(m_hasSelection, hasSelection) != hasSelection)
        Q_EMIT hasSelectionChanged();
    const bool hasFolder = library()->place().is(Place::Case::folder);
    if (std::exchange(m_hasFolder, hasFolder) != hasFolder)
        Q_EMIT hasFolderChanged();
}

} // namespace lumbra

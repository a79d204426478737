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
    Actions::open(m_browser->selectedPaths());
}

void BrowserCommands::reveal() const {
    QList<Location> locations = m_browser->selectedPaths();
    if (locations.isEmpty())
        if (const auto folder = library()->place().folderUrl())
            locations.append(*folder);
    Desktop::reveal(locations);
}

void BrowserCommands::copyPaths() const {
    Actions::copyPaths(m_browser->selectedPaths());
}

void BrowserCommands::exportFiles() const {
    Actions::exportFiles(m_browser->selectedPaths(), library());
}

void BrowserCommands::star() const {
    library()->toggleStar(m_browser->selectedPaths());
}

void BrowserCommands::rename() const {
    if (m_browser->selectedCount() == 1)
        m_browser->rename(m_browser->firstSelected().url);
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

void BrowserCommands::follow() {
    const bool hasSelection = m_browser->selectedCount() > 0;
    if (std::exchange(m_hasSelection, hasSelection) != hasSelection)
        Q_EMIT hasSelectionChanged();
    const bool hasFolder = library()->place().is(Place::Case::folder);
    if (std::exchange(m_hasFolder, hasFolder) != hasFolder)
        Q_EMIT hasFolderChanged();
}

} // namespace lumbra

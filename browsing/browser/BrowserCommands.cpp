// SPDX-License-Identifier: GPL-3.0-or-later
#include "BrowserCommands.h"

#include "core/Clipboard.h"
#include "platform/Desktop.h"

namespace lumbra {

BrowserCommands::BrowserCommands(Browser* browser, QObject* parent) : QObject(parent), m_browser(browser) {
    connect(browser, &Browser::selectedChanged, this, &BrowserCommands::follow);
    follow();
}

void BrowserCommands::open() const {
    Desktop::open(selectedPaths());
}

void BrowserCommands::reveal() const {
    QList<Location> locations = selectedPaths();
    if (locations.isEmpty())
        if (const auto folder = m_browser->library()->place().folderUrl())
            locations.append(*folder);
    Desktop::reveal(locations);
}

void BrowserCommands::copyPaths() const {
    QStringList lines;
    for (const Location& path : selectedPaths())
        lines.append(path.toString());
    Clipboard::copyText(lines.join(u'\n'));
}

QList<Location> BrowserCommands::selectedPaths() const {
    QList<Location> paths;
    const Assets selected = m_browser->selected();
    for (const Asset& asset : selected)
        paths.append(asset.url);
    return paths;
}

void BrowserCommands::follow() {
    const bool hasSelection = !m_browser->selected().isEmpty();
    if (std::exchange(m_hasSelection, hasSelection) != hasSelection)
        Q_EMIT hasSelectionChanged();
}

} // namespace lumbra

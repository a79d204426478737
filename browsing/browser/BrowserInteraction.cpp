// What the user does on the page: pointer, keys, and the menus of tiles.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Browser.h"
#include "browsing/DroppedFiles.h"
#include "browsing/tiles/TileMenus.h"
#include "library/Actions.h"

namespace lumbra {

void Browser::click(const PageCell& cell, Qt::KeyboardModifiers modifiers) {
    m_gridFocused = true;
    const PageList list = listsAssets(m_library->place()) ? m_loader->assets()
                          : cell.onShelf                  ? PageList(shelf())
                                                          : m_order.value();
    select(selectionValue().clicked(cell.url, list, modifiers));
}

void Browser::clickBackground() {
    m_selection = PathSet();
    m_gridFocused = true;
}

void Browser::play(const Asset& asset) {
    select(Selection::just(asset.url));
    m_library->setPlaying(PlayRequest{asset, m_order.value().assets()});
}

void Browser::toggleStar(const PageCell& cell) {
    m_library->toggleStar(targets(cell.url).paths());
}

bool Browser::press(int key, Qt::KeyboardModifiers modifiers, bool repeated) {
    // The order of a page without tiles is the feed's: all of it, selected and trashed by two keys, unseen.
    if (!drawsTiles(m_library->place()))
        return false;
    if (key == Qt::Key_A && modifiers == Qt::ControlModifier) {
        selectAll();
        return true;
    }
    if (key == Qt::Key_C && modifiers == Qt::ControlModifier) {
        // A turn later, when whoever asks the pasteboard during this one is done.
        QMetaObject::invokeMethod(
            this, [this, urls = selectedPaths()] { Actions::copy(urls, m_library); }, Qt::QueuedConnection);
        return true;
    }
    if (modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return false;
    switch (key) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_selected.isEmpty())
            return false;
        play(firstSelected());
        return true;
    case Qt::Key_S:
        if (m_selected.isEmpty())
            return false;
        m_library->toggleStar(selectedPaths());
        return true;
    case Qt::Key_Delete:
        trashSelected();
        return true;
    case Qt::Key_Left:
    case Qt::Key_Up:
        step(-1);
        return true;
    case Qt::Key_Right:
    case Qt::Key_Down:
        step(1);
        return true;
    case Qt::Key_Escape:
        if (repeated)
            return false;
        m_selection = PathSet();
        return true;
    default:
        return false;
    }
}

void Browser::step(int step) {
    const PageList order = m_order;
    if (order.isEmpty())
        return;
    const Selection next = selectionValue().stepped(step, order);
    select(next);
    Q_EMIT scrollRequested(m_rows->rowOf(*next.anchor), false);
}

int Browser::selectedRow() const {
    return m_selected.isEmpty() ? -1 : m_rows->rowOf(firstSelected().url);
}

void Browser::selectAll() {
    m_selection = PathSet::all(m_order);
}

void Browser::ask(const NamePrompt& prompt) const {
    if (m_ask)
        m_ask(prompt);
}

void Browser::rename(const Location& url) {
    ask(NamePrompt::request(QStringLiteral("Rename"), url.name(), [this, url](const QString& name) {
        if (const auto renamed = m_library->rename(url, name))
            select(Selection::just(*renamed));
    }));
}

void Browser::newFolder() const {
    const auto folder = m_library->place().folderUrl();
    if (!folder)
        return;
    ask(NamePrompt::request(
        QStringLiteral("New Folder"), QStringLiteral("untitled folder"),
        [library = m_library, folder](const QString& name) { library->newFolderIn(*folder, name); }));
}

bool Browser::drop(const QList<QUrl>& urls) {
    const auto folder = m_library->place().folderUrl();
    if (!folder)
        return false;
    m_library->bring(droppedFiles(urls), *folder);
    return true;
}

void Browser::dropInto(const Location& folder, const QList<QUrl>& urls) {
    m_library->bring(droppedFiles(urls), folder);
}

void Browser::trash(const QList<Location>& urls) {
    m_library->trash(urls);
    PathSet kept = m_selection;
    kept.remove(urls);
    m_selection = kept;
}

void Browser::trashSelected() {
    trash(selectedPaths());
    m_selection = PathSet();
}

QVariantList Browser::menu(const PageCell& cell) {
    const TileMenus::Page page{
        .play = [this, asset = cell.asset] { play(asset); },
        .rename = [this](const Location& url) { rename(url); },
        .trash = [this](const QList<Location>& urls) { trash(urls); },
        .ask = [this](const NamePrompt& prompt) { ask(prompt); },
    };
    if (cell.isAsset())
        return MenuEntry::toVariants(TileMenus::asset(m_library, page, cell.url, targets(cell.url)));
    if (cell.isFolder())
        return MenuEntry::toVariants(TileMenus::folder(m_library, cell.url));
    return {};
}

void Browser::select(const Selection& selection) {
    m_anchor = selection.anchor;
    m_selection = selection.paths;
}

} // namespace lumbra

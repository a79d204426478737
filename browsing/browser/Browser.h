// The main pane of the window: turns the library's place and a handful of filters into a page, keeps it in step, and
// takes what the user does on it.
//
// A page loads whenever its LoadKey differs from the last one; a change of the library's revision is how it follows the
// files. Until a load's results are there, the page shows what it showed.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "BrowserSettings.h"
#include "PageContent.h"
#include "PageLoader.h"
#include "PageRows.h"
#include "PageText.h"
#include "Selection.h"
#include "browsing/NamePrompt.h"
#include "browsing/chrome/GroupCards.h"
#include "browsing/chrome/PathBar.h"
#include "library/Library.h"

#include <QObject>
#include <QProperty>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class Browser : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window makes its one browser.")

    Q_PROPERTY(lumbra::BrowserSettings* settings READ settings CONSTANT)
    Q_PROPERTY(lumbra::PageRows* rows READ rows CONSTANT)
    Q_PROPERTY(lumbra::GroupCards* cards READ cards CONSTANT)
    Q_PROPERTY(lumbra::PathBar* path READ path CONSTANT)
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY searchChanged)
    Q_PROPERTY(bool gridFocused READ gridFocused WRITE setGridFocused NOTIFY gridFocusedChanged)
    Q_PROPERTY(qint64 selectedCount READ selectedCount NOTIFY selectedChanged)
    Q_PROPERTY(lumbra::Asset firstSelected READ firstSelected NOTIFY selectedChanged)
    Q_PROPERTY(QString firstName READ firstName NOTIFY selectedChanged)
    Q_PROPERTY(bool loaded READ loaded NOTIFY loadedChanged)
    Q_PROPERTY(QList<qint64> kindCounts READ kindCountList NOTIFY kindCountsChanged)

    // "group", "folder", "starred", "recent" or "tidy".
    Q_PROPERTY(QString page READ page NOTIFY pageChanged)
    Q_PROPERTY(QString symbol READ symbol NOTIFY pageChanged)
    Q_PROPERTY(QString title READ title NOTIFY titleChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY subtitleChanged)
    Q_PROPERTY(QString status READ status NOTIFY statusChanged)
    Q_PROPERTY(lumbra::EmptyState emptyState READ emptyState NOTIFY emptyStateChanged)
    Q_PROPERTY(QVariantMap headers READ headers NOTIFY headersChanged)

public:
    // The library and the preferences must outlive it.
    explicit Browser(Library* library, QObject* parent = nullptr, Preferences& preferences = Preferences::shared());

    Library* library() const { return m_library; }

    BrowserSettings* settings() const { return m_settings; }
    PageRows* rows() const { return m_rows; }
    GroupCards* cards() const { return m_cards; }
    PathBar* path() const { return m_path; }
    void setContentSearch(PageLoader::ContentSearch search) { m_loader->setContentSearch(std::move(search)); }

    QString search() const { return m_search; }
    void setSearch(const QString& search) { m_search = search; }

    // The row of the first selected tile that the page shows, or -1.
    Q_INVOKABLE int selectedRow() const;

    // What the page holds. A page reads only its own lists; those of other pages may be out of date.
    QList<Location> folders() const { return m_loader->folders(); }
    Assets assets() const { return m_loader->assets().assets(); }
    Assets shelf() const { return m_loader->shelf(); }
    QList<RecentSection> sections() const { return m_loader->sections(); }
    KindCounts kindCounts() const { return m_loader->kindCounts(); }
    bool loaded() const { return m_loader->loaded(); }

    // How many entries of a section are revealed.
    const SectionLimits& sectionLimits() const { return m_sectionLimits; }
    QList<RecentEntry> visibleEntries(const RecentSection& section) const { return m_sectionLimits.visible(section); }

    // All selectable tiles in page order. Stacks are none.
    PageList order() const { return m_order; }

    PathSet selection() const { return m_selection; }
    std::optional<Location> anchor() const { return m_anchor; }

    // The selected assets that the page still shows, in page order: what the inspector tells of.
    Assets selected() const { return m_selected.assets(); }
    QList<Location> selectedPaths() const { return m_selected.paths(); }

    qint64 selectedCount() const { return m_selected.size(); }
    Asset firstSelected() const { return m_selected.first().value_or(Asset()); } // an empty one if there is none
    QString firstName() const { return firstSelected().url.name(); }

    bool gridFocused() const { return m_gridFocused; }
    void setGridFocused(bool focused) { m_gridFocused = focused; }

    QString page() const { return m_page; }
    QString symbol() const { return PageText::symbol(m_library->place()); }
    QString title() const { return m_title; }
    QString subtitle() const { return m_subtitle; }
    QString status() const { return m_status; }
    EmptyState emptyState() const { return m_emptyState; }

    // By section: "starred" for the shelf, otherwise the raw name of the kind.
    QVariantMap headers() const { return m_headers; }

    // Loads the page, and from then on follows the library. A page that will be on screen in a moment is loaded by
    // then.
    void prepare();

    // The page came on screen.
    Q_INVOKABLE void appear();

    // Takes away all that could hide a file.
    Q_INVOKABLE void showEverything();
    Q_INVOKABLE void showMore(const QString& section);
    Q_INVOKABLE void showStarred() { m_library->setPlace(Place::starred()); }
    Q_INVOKABLE void openFolder(const lumbra::Location& url) { m_library->setPlace(Place::folder(url)); }

    // Pointer and keys. `press` answers whether the key was handled.
    Q_INVOKABLE void click(const lumbra::PageCell& cell, Qt::KeyboardModifiers modifiers);
    Q_INVOKABLE void clickBackground();
    Q_INVOKABLE void play(const lumbra::Asset& asset);
    Q_INVOKABLE void toggleStar(const lumbra::PageCell& cell); // with all that is selected along with it
    Q_INVOKABLE bool press(int key, Qt::KeyboardModifiers modifiers, bool repeated);
    Q_INVOKABLE void selectAll();

    // Files that were dropped: on the page, which takes them only if it is a folder's and tells whether it does, or on
    // the tile of a folder.
    Q_INVOKABLE bool drop(const QList<QUrl>& urls);
    Q_INVOKABLE void dropInto(const lumbra::Location& folder, const QList<QUrl>& urls);

    // Asks for the name of a new folder in the one that is shown; nothing without one.
    Q_INVOKABLE void newFolder() const;

    // Asks for another name, and selects the file under it.
    void rename(const Location& url);

    // The files leave the selection, whatever comes of it.
    void trash(const QList<Location>& urls);
    void trashSelected();

    // Who shows the sheet that asks for a name. Without one nothing is renamed.
    void setNamePrompt(std::function<void(const NamePrompt&)> ask) { m_ask = std::move(ask); }
    void ask(const NamePrompt& prompt) const;

    // What stands in the context menu of a tile: a list of MenuEntry, empty for a tile without a menu.
    Q_INVOKABLE QVariantList menu(const lumbra::PageCell& cell);

    // What a menu over a tile of this path applies to.
    PathSet targets(const Location& url) const { return selectionValue().targets(url, m_order); }

Q_SIGNALS:
    void searchChanged();
    void kindCountsChanged();
    void loadedChanged();
    void selectionChanged();
    void gridFocusedChanged();
    void orderChanged();
    void selectedChanged();
    void pageChanged();
    void titleChanged();
    void subtitleChanged();
    void statusChanged();
    void emptyStateChanged();
    void headersChanged();

    // The rows are those of another place now: show them from the top.
    void pageTurned();

    // Scroll, animated, until the row is visible, or to the centre of the view.
    void scrollRequested(int row, bool centred);

private:
    void followLibrary();
    void followSettings();
    void followLoader();
    void placeChanged();
    void pendingRevealChanged();
    void playingChanged();
    void derivedChanged();
    void revealIfPending();
    LoadKey loadKey() const;
    void scheduleLoad();
    void loadFinished(const LoadKey& key);
    void turnTo(const Place& place);
    void drawRows();
    PageContent content() const;
    void reorder();
    void reselect();
    void describe();
    Selection selectionValue() const { return {m_selection.value(), m_anchor}; }
    void select(const Selection& selection);
    void step(int step);
    QList<qint64> kindCountList() const;

    Library* const m_library;
    BrowserSettings* const m_settings;
    PageLoader* const m_loader;
    PageRows* const m_rows;
    GroupCards* const m_cards;
    PathBar* const m_path;

    Q_OBJECT_BINDABLE_PROPERTY(Browser, QString, m_search, &Browser::searchChanged)

    SectionLimits m_sectionLimits;
    Q_OBJECT_BINDABLE_PROPERTY(Browser, PathSet, m_selection, &Browser::selectionChanged)
    std::optional<Location> m_anchor;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(Browser, bool, m_gridFocused, false, &Browser::gridFocusedChanged)

    // Computed from the above and the library, by `reorder`, `reselect` and `describe`. They are no bindings: those of
    // Qt 6.4 crash when they depend on as much as these do.
    Q_OBJECT_BINDABLE_PROPERTY(Browser, PageList, m_order, &Browser::orderChanged)
    PathSet m_selected; // of the selection, what `m_order` holds
    Q_OBJECT_BINDABLE_PROPERTY(Browser, QString, m_page, &Browser::pageChanged)
    Q_OBJECT_BINDABLE_PROPERTY(Browser, QString, m_title, &Browser::titleChanged)
    Q_OBJECT_BINDABLE_PROPERTY(Browser, QString, m_subtitle, &Browser::subtitleChanged)
    Q_OBJECT_BINDABLE_PROPERTY(Browser, QString, m_status, &Browser::statusChanged)
    Q_OBJECT_BINDABLE_PROPERTY(Browser, EmptyState, m_emptyState, &Browser::emptyStateChanged)
    Q_OBJECT_BINDABLE_PROPERTY(Browser, QVariantMap, m_headers, &Browser::headersChanged)

    std::function<void(const NamePrompt&)> m_ask;
    bool m_prepared = false;
    bool m_appeared = false;
    bool m_loadScheduled = false;
    int m_loads = 0; // under way
    std::optional<LoadKey> m_lastKey;
    Place m_drawnPlace; // whose rows the page shows: the former place until the first list of the new one is there
};

} // namespace lumbra

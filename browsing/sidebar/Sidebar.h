// The left pane: which rows it shows, and what is done when one is chosen, opened, dragged or dropped on.
//
// It holds nothing of its own but the filter, the open rows and the order of the projects; choosing a row assigns the
// library's place, from which every page follows. Changes of the library are taken in once the present turn of the
// event loop is over, however many there were.
//
// Rows are named by their position in `rows`; one that does not exist, or has no use for an operation, does nothing.
// Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FolderListings.h"
#include "SidebarMenus.h"
#include "SidebarModel.h"
#include "SidebarRules.h"
#include "library/Library.h"
#include "understanding/InsightEngine.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class Sidebar : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window makes its one sidebar.")

    Q_PROPERTY(lumbra::SidebarModel* rows READ rows CONSTANT)
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)
    Q_PROPERTY(bool byActivity READ byActivity WRITE setByActivity NOTIFY byActivityChanged)
    Q_PROPERTY(lumbra::SidebarFooter footer READ footer NOTIFY footerChanged)

public:
    // The library must outlive it.
    explicit Sidebar(Library* library, QObject* parent = nullptr);

    SidebarModel* rows() { return &m_rows; }

    QString filter() const { return m_filter; }
    void setFilter(const QString& filter);

    // Kept over launches: projects by their newest activity, or by name.
    bool byActivity() const { return m_byActivity; }
    void setByActivity(bool byActivity);

    SidebarFooter footer() const { return m_footer; }

    // Whose work the foot tells of, and whose switch stands in the options. Without one neither does.
    void setInsights(InsightEngine* insights);

    // How many suggestions "Tidy" has; none while it looks for them.
    void setTidySuggestions(qsizetype count);

    // Who shows the sheet that asks for a name. Without one no menu asks.
    void setNamePrompt(SidebarMenus::Ask ask) { m_ask = std::move(ask); }

    // Who shows the alert before a project is trashed. Without one nothing is.
    void setConfirmation(Confirmation::Ask ask) { m_confirm = std::move(ask); }

    // A row came on screen: whether a folder has subfolders is found out only then.
    Q_INVOKABLE void appeared(int row);

    // Pointer and keys. Those that yield a row tell where the keyboard goes on.
    Q_INVOKABLE void choose(int row);
    Q_INVOKABLE void toggle(int row);
    Q_INVOKABLE int collapse(int row);           // closes the row; a closed one yields the row that it stands below
    Q_INVOKABLE int expand(int row);             // opens the row; an open one yields the first below it
    Q_INVOKABLE int step(int row, int by) const; // the next row up or down that stands for a place
    Q_INVOKABLE int selectedRow() const;         // -1 if none is selected; a row of the project list before a pin
    Q_INVOKABLE int firstResult() const;         // the first row of the project list; -1 if it is empty

    // Lists of MenuEntry; empty for a row without a menu.
    Q_INVOKABLE QVariantList menu(int row) const;
    Q_INVOKABLE QVariantList newMenu() const;
    Q_INVOKABLE QVariantList optionsMenu();

    // Dragging projects. The payload is empty for a row that can't be dragged.
    Q_INVOKABLE QString dragPayload(int row) const;
    Q_INVOKABLE bool accepts(int row, const QString& payload) const;
    Q_INVOKABLE void drop(int row, const QString& payload);

    // Files that are dropped on a row that takes them. What is no file of this machine is left out.
    Q_INVOKABLE void dropFiles(int row, const QList<QUrl>& urls);

    Q_INVOKABLE void unpin(int row);
    Q_INVOKABLE void acceptSuggestion();
    Q_INVOKABLE void dismissSuggestion();

    // Opens the palette.
    Q_INVOKABLE void jump() { m_library->setPaletteOpen(true); }

Q_SIGNALS:
    void filterChanged();
    void byActivityChanged();
    void footerChanged();

private:
    const SidebarRow* rowAt(int row) const;
    std::optional<Project> projectOf(const SidebarRow& row) const;
    std::optional<Project> draggedProject(const QString& payload) const;
    SidebarMenus menus() const;
    void setOpen(const SidebarRow& row, bool open);
    void dropOnProject(const QString& dropped, const SidebarRow& target);
    void followPlace();
    void takeInLibrary();
    void refreshLater();
    void refresh();
    void gather();
    void refreshFooter();
    void listNewlyOpen();
    void wakeWhenSomethingAges();

    Library* const m_library;
    QPointer<InsightEngine> m_insights;
    SidebarModel m_rows;
    FolderListings m_listings;
    SidebarMenus::Ask m_ask;
    Confirmation::Ask m_confirm;
    QString m_filter;
    bool m_byActivity = true;
    QSet<Location> m_open;   // projects and folders whose rows are open, whether they are shown or not
    QSet<Location> m_listed; // those of them that the present rows show
    QList<Project> m_visible;
    SidebarRows::Facts m_facts; // what the rows were last made from
    bool m_outdated = true;     // what the library holds, the filter or the order differ from that
    SidebarFooter m_footer;
    QTimer m_refresh; // joins the changes of one turn of the event loop
    QTimer m_aging;   // until the next project's dot goes out
};

} // namespace lumbra

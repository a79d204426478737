// The page as rows for one list view, whatever the page: blocks of tiles, each under the header of its section, some
// followed by a button that reveals more.
//
// A new content changes the model by the smallest difference: rows come and go at the end of their block, and only rows
// whose cells differ are told of, so that a reload makes no tile anew.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AdaptiveColumns.h"
#include "ColumnSlots.h"
#include "PageRow.h"
#include "PathSet.h"
#include "RecentSections.h"
#include "library/DerivedIndex.h"

#include <QAbstractListModel>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <chrono>

namespace lumbra {

// One grid of the page: folder tiles, then asset tiles, then entries of a feed.
struct PageBlock {
    QString section = {}; // tells blocks apart; a page's blocks always stand in the same order
    QList<Location> folders = {};
    PageList assets = {};
    QList<RecentEntry> entries = {};
    bool captioned = false; // assets carry the name of their project
    bool onShelf = false;   // its tiles are a list of their own for ranges of clicks
    QString more = {};      // the label of the button below the grid, or empty
    int gap = 16;           // below the block

    using Item = std::variant<Location, Asset, RecentStack>; // a folder, a file or a stack

    qsizetype size() const { return folders.size() + assets.size() + entries.size(); }
    Item item(qsizetype position) const;

    friend bool operator==(const PageBlock&, const PageBlock&) = default;
};

class PageRows : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The browser holds the rows of its page.")
    // One notification for all measures, so that a tile is placed once for each step of the zoom.
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY measuresChanged)
    Q_PROPERTY(double zoom READ zoom WRITE setZoom NOTIFY measuresChanged)
    Q_PROPERTY(double tileSize READ tileSize NOTIFY measuresChanged)
    Q_PROPERTY(int columns READ columns NOTIFY measuresChanged)
    Q_PROPERTY(double firstTile READ firstTile NOTIFY measuresChanged)
    Q_PROPERTY(double tileStep READ tileStep NOTIFY measuresChanged)
    Q_PROPERTY(QAbstractItemModel* slots READ slotModel CONSTANT)
    Q_PROPERTY(bool resizing READ isResizing NOTIFY resizingChanged)

public:
    enum Role { rowRole = Qt::UserRole, sectionRole };

    // Points between tiles, between rows, and around the page.
    static constexpr int spacing = 14;
    static constexpr int rowGap = 16;
    static constexpr int margin = 16;
    static constexpr int tileMargin = 3; // of a tile around its picture

    // After the last step of the zoom its slider counts as at rest.
    static constexpr std::chrono::milliseconds zoomRest{250};

    // What tiles say about the library, asked for when a row comes into view.
    struct Facts {
        std::function<QString(const Location& file)> projectName;
        std::function<QString(const Location& folder)> displayPath;
        std::function<FolderStats(const Location& folder)> stats;
    };

    explicit PageRows(Facts facts, QObject* parent = nullptr);

    // The width of the view, margins included, and the least width of a tile.
    double width() const { return m_width; }
    void setWidth(double width);
    double zoom() const { return m_zoom; }
    void setZoom(double zoom);

    // Of a picture: the zoom, but in a view that is narrower no more than there is room for.
    double tileSize() const { return m_columns.width > 0 ? std::min(m_zoom, m_columns.width) : m_zoom; }

    // The zoom is on its way: each step lays out every tile that there is, so there should be few beyond those in
    // sight. It says so before the first step.
    bool isResizing() const { return m_resting.isActive(); }

    int columns() const { return m_columns.count; }
    double cellWidth() const { return m_columns.width; }

    // From the view's edge to the first column: the columns stand in the middle of what is left over.
    double inset() const;

    // From the view's edge to the first tile, which stands in the middle of its column, and from each to the next.
    double firstTile() const;
    double tileStep() const { return m_columns.width + spacing; }

    QAbstractItemModel* slotModel() { return &m_slots; }

    void setBlocks(const QList<PageBlock>& blocks);
    void setSelection(const PathSet& selection);

    // The counts and newest files of folders are others now.
    void refreshFolders();

    // The first row that holds the asset's tile, or -1.
    Q_INVOKABLE int rowOf(const lumbra::Location& asset) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void measuresChanged();
    void resizingChanged();

private:
    // A block as the view knows it; in the midst of a change its rows lag behind its content.
    struct Shown {
        PageBlock block;
        int tileRows = 0;
        bool more = false;
        int rows() const { return tileRows + (more ? 1 : 0); }
    };

    void layOut();
    void insertBlock(qsizetype position, const PageBlock& block);
    void removeBlock(qsizetype position);
    void updateBlock(qsizetype position, const PageBlock& next, bool moved);
    void tell(int first, const std::vector<bool>& differs);
    int tileRows(const PageBlock& block) const;
    int firstRow(qsizetype block) const;
    PageRow row(const Shown& shown, int row) const;
    PageCell cell(const PageBlock& block, qsizetype position) const;

    const Facts m_facts;
    double m_width = 0;
    double m_zoom = 170;
    QTimer m_resting;
    AdaptiveColumns m_columns;
    ColumnSlots m_slots;
    QList<Shown> m_shown;
    PathSet m_selection;
};

} // namespace lumbra

// The pages of a document for the view that scrolls them: only those near what is seen are rows, so that a view with an
// item for each row draws a document of any length.
//
// A view sets its width, says what it sees, and scrolls over `extent`. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PageLayout.h"
#include "platform/Location.h"

#include <QAbstractListModel>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class DocumentPages : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A document has one.")

    Q_PROPERTY(int pageCount READ pageCount NOTIFY layoutChanged)
    Q_PROPERTY(QSizeF extent READ extent NOTIFY layoutChanged)
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY layoutChanged)
    Q_PROPERTY(double zoom READ zoom WRITE setZoom NOTIFY layoutChanged)
    Q_PROPERTY(int currentPage READ currentPage NOTIFY currentPageChanged)
    Q_PROPERTY(lumbra::Location file READ file NOTIFY contentChanged)
    Q_PROPERTY(QString edition READ edition NOTIFY contentChanged)

public:
    enum Role { page = Qt::UserRole + 1, place };

    using QAbstractListModel::QAbstractListModel;

    // What is shown from now on: the pages' sizes in points of print. Another edition of the same file keeps the zoom.
    void setPages(const Location& file, const QString& edition, const QList<QSizeF>& sizes);
    void clear() { setPages({}, {}, {}); }

    int pageCount() const { return m_layout.count(); }

    // What there is to scroll over, in points of the screen.
    QSizeF extent() const { return m_layout.extent(); }

    double width() const { return m_width; }
    void setWidth(double width);

    double zoom() const { return m_zoom; }
    void setZoom(double zoom);

    // From 1, the page that most of the view shows; 0 without pages.
    int currentPage() const { return m_currentPage; }

    const Location& file() const { return m_file; }

    // Tells one content of the file from another: with another one its pages must be drawn anew.
    const QString& edition() const { return m_edition; }

    // The part of the extent that the view sees. Pages up to one view away are rows too.
    Q_INVOKABLE void look(double top, double height);

    // The spot of the pages at a point, opaque, and the point of a spot: to stay at it while the layout changes.
    Q_INVOKABLE QVariantMap spotAt(QPointF point) const;
    Q_INVOKABLE QPointF pointOf(const QVariantMap& spot) const;
    static PageLayout::Spot spotFrom(const QVariantMap& spot);

    // In points of print; from 0.
    QSizeF sizeOf(int number) const { return m_sizes.value(number, QSizeF(1, 1)); }

    // The first and the last page that are rows; the first is behind the last when there are none.
    std::pair<int, int> nearPages() const { return {m_first, m_last}; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override { return {{page, "page"}, {place, "place"}}; }

Q_SIGNALS:
    void layoutChanged();
    void currentPageChanged();
    void contentChanged();

private:
    void layOut();
    void follow();
    void setRange(int first, int last);

    Location m_file;
    QString m_edition;
    QList<QSizeF> m_sizes;
    double m_width = 0;
    double m_zoom = 1;
    double m_top = 0;
    double m_height = 0;
    PageLayout m_layout;
    int m_first = 0; // the rows, from here
    int m_last = -1; // to here
    int m_currentPage = 0;
};

} // namespace lumbra

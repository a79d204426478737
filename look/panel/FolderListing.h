// The entries that a typed path may mean: those inside of it, or those beside whose names begin like its last part.
// Disk is read in the background, and each folder once; a slow one never holds up typing.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FolderContents.h"

#include <QAbstractListModel>
#include <QFutureWatcher>
#include <QThreadPool>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <stop_token>

namespace lumbra {

class FolderListing : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Part of a PathChoice.")

    // What is typed. A leading "~" is the home folder; what ends with "/" means the entries inside.
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY pathChanged)
    Q_PROPERTY(QString parentPath READ parentPath NOTIFY pathChanged) // to type, with "/"; empty at the top
    Q_PROPERTY(QString folder READ folder NOTIFY listed)              // whose entries are listed, absolute
    Q_PROPERTY(bool reading READ reading NOTIFY readingChanged)       // what is listed is not yet that of the path
    Q_PROPERTY(bool cut READ isCut NOTIFY listed)                     // there is more that fits than is listed
    Q_PROPERTY(Target target READ target NOTIFY listed)

public:
    enum Role { NameRole = Qt::UserRole, PathRole, IsFolderRole };

    // What the path leads to: nothing that could be, something to be made in a folder that is there, or what it is.
    enum Target { Nothing, New, File, Folder };
    Q_ENUM(Target)

    // More than these are not listed.
    static constexpr int most = 2000;

    // Threads for whatever asks the disk for a panel: one that hangs in a dead network folder takes no place of others.
    static QThreadPool& pool();

    explicit FolderListing(QObject* parent = nullptr);
    ~FolderListing() override;

    // Whether files are listed too.
    void setListsFiles(bool lists);

    QString path() const { return m_path; }
    void setPath(const QString& path);

    // Reads the folder anew.
    void refresh();

    QString parentPath() const;
    bool reading() const { return m_reading; }
    bool isCut() const { return m_found.isCut; }
    Target target() const { return m_found.target; }

    // The longest text that all entries begin with that fit the path; the path if they add nothing to it. With a slash
    // where only a folder fits.
    QString completion() const { return m_found.completion; }

    // What the path stands for: absolute, without a trailing slash; empty for a relative path.
    QString resolved() const;

    // The folder whose entries are listed, absolute. It lags behind the path while `reading`.
    QString folder() const { return m_found.contents->folder; }
    bool isThere() const { return m_found.contents->isThere; }
    const FolderContents::Entry& entryAt(int row) const { return m_found.rows.at(row); }

    // To type: of a folder with "/".
    QString pathOf(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void pathChanged();
    void readingChanged();
    void listed(); // what is listed is that of the present path

private:
    struct Query {
        QString typed;     // up to the last slash
        QString folder;    // what that means, absolute
        QString beginning; // the rest
        bool listsFiles = false;
    };
    struct Found {
        std::shared_ptr<const FolderContents> contents = std::make_shared<const FolderContents>();
        QList<FolderContents::Entry> rows = {};
        QString typed = {};
        QString completion = {};
        Target target = Nothing;
        bool isCut = false;
    };

    static Found look(const Query& query, std::shared_ptr<const FolderContents> contents, const std::stop_token& stop);
    static QString completionOf(const Query& query, const QList<const FolderContents::Entry*>& fitting);
    void ask(std::shared_ptr<const FolderContents> known);
    void take();
    QString expanded() const;

    QFutureWatcher<Found> m_work;
    std::stop_source m_stop;
    QString m_path;
    bool m_listsFiles = false;
    bool m_reading = false;
    Found m_found;
};

} // namespace lumbra

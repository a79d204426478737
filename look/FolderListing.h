// The folders that a typed path may mean: those inside of it, or those beside whose names begin like its last part.
// Disk is read in the background; a slow one never holds up typing.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractListModel>
#include <QFutureWatcher>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class FolderListing : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT

    // What is typed. A leading "~" is the home folder; what ends with "/" means the folders inside.
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY pathChanged)
    Q_PROPERTY(QString folder READ folder NOTIFY pathChanged)         // the folder that is listed, absolute
    Q_PROPERTY(QString parentPath READ parentPath NOTIFY pathChanged) // to type, with "/"; empty at the top
    Q_PROPERTY(QString completion READ completion NOTIFY listed) // the longest text that all listed folders begin with
    Q_PROPERTY(bool choosable READ choosable NOTIFY listed)      // the path is a folder, or could be made in one
    Q_PROPERTY(bool isNew READ isNew NOTIFY listed)              // it would have to be made

public:
    enum Role { NameRole = Qt::UserRole, PathRole };

    // More than these are not listed.
    static constexpr int most = 2000;

    explicit FolderListing(QObject* parent = nullptr);

    QString path() const { return m_path; }
    void setPath(const QString& path);

    QString folder() const;
    QString parentPath() const;
    QString completion() const { return m_completion; }
    bool choosable() const { return m_choosable; }
    bool isNew() const { return m_isNew; }

    // The chosen folder: absolute, without a trailing slash.
    Q_INVOKABLE QString chosen() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void pathChanged();
    void listed(); // the list is that of the present path

private:
    struct Found {
        QStringList names;
        bool choosable = false;
        bool isNew = false;
    };

    static Found look(const QString& folder, const QString& beginning);
    void take(const Found& found);
    QString expanded() const;
    QString beginning() const;

    QFutureWatcher<Found> m_work;
    QString m_path;
    QStringList m_names;
    QString m_completion;
    bool m_choosable = false;
    bool m_isNew = false;
};

} // namespace lumbra

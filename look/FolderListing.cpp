// SPDX-License-Identifier: GPL-3.0-or-later
#include "FolderListing.h"

#include <QCollator>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QtConcurrentRun>

#include <algorithm>

namespace lumbra {
namespace {

// Where the last part of a path begins.
qsizetype lastPart(const QString& path) {
    return path.lastIndexOf(u'/') + 1;
}

} // namespace

FolderListing::FolderListing(QObject* parent) : QAbstractListModel(parent) {
    connect(&m_work, &QFutureWatcherBase::finished, this, [this] { take(m_work.result()); });
}

QString FolderListing::expanded() const {
    if (m_path == QLatin1String("~") || m_path.startsWith(QLatin1String("~/")))
        return QDir::homePath() + m_path.mid(1);
    return m_path;
}

QString FolderListing::beginning() const {
    const QString path = expanded();
    return path.mid(lastPart(path));
}

QString FolderListing::folder() const {
    const QString path = expanded();
    const QString folder = path.left(lastPart(path));
    return folder.startsWith(u'/') ? QDir::cleanPath(folder) : QString();
}

QString FolderListing::parentPath() const {
    const QString here = folder();
    if (here.isEmpty() || here == QLatin1String("/"))
        return {};
    const QString above = here.left(lastPart(here));
    return above;
}

QString FolderListing::chosen() const {
    const QString path = QDir::cleanPath(expanded());
    return path.startsWith(u'/') ? path : QString();
}

void FolderListing::setPath(const QString& path) {
    if (m_path == path)
        return;
    m_path = path;
    Q_EMIT pathChanged();
    m_work.setFuture(QtConcurrent::run(&FolderListing::look, folder(), beginning())); // forgets what was under way
}

FolderListing::Found FolderListing::look(const QString& folder, const QString& beginning) {
    Found found;
    if (folder.isEmpty() || !QFileInfo(folder).isDir())
        return found;
    // Hidden folders show only to who asks for them.
    const auto hidden = beginning.startsWith(u'.') ? QDir::Hidden : QDir::Filters();
    QDirIterator folders(folder, QDir::Dirs | QDir::NoDotAndDotDot | hidden);
    while (folders.hasNext() && found.names.size() < most) {
        folders.next();
        if (folders.fileName().startsWith(beginning, Qt::CaseInsensitive))
            found.names.append(folders.fileName());
    }
    QCollator collator(QLocale::English); // which knows numbers whatever the locale
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::ranges::sort(found.names,
                      [&collator](const QString& a, const QString& b) { return collator.compare(a, b) < 0; });
    const QFileInfo named(folder + u'/' + beginning);
    found.isNew = !beginning.isEmpty() && !named.exists() && !named.isSymLink();
    found.choosable = found.isNew ? QFileInfo(folder).isWritable() : named.isDir();
    return found;
}

void FolderListing::take(const Found& found) {
    beginResetModel();
    m_names = found.names;
    endResetModel();
    m_choosable = found.choosable;
    m_isNew = found.isNew;

    const QString typed = m_path.left(lastPart(m_path));
    QString common = m_names.value(0);
    for (const QString& name : std::as_const(m_names)) {
        const auto [end, other] = std::ranges::mismatch(common, name);
        common.truncate(end - common.begin());
    }
    m_completion = m_names.size() == 1 ? typed + common + u'/' : typed + common;
    if (m_names.isEmpty() || m_completion.size() <= m_path.size())
        m_completion = m_path;
    Q_EMIT listed();
}

int FolderListing::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_names.size());
}

QVariant FolderListing::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const QString& name = m_names.at(index.row());
    if (role == PathRole)
        return QString(m_path.left(lastPart(m_path)) + name + u'/');
    return role == NameRole || role == Qt::DisplayRole ? QVariant(name) : QVariant();
}

QHash<int, QByteArray> FolderListing::roleNames() const {
    return {{NameRole, "name"}, {PathRole, "path"}};
}

} // namespace lumbra

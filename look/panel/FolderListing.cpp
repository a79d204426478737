// SPDX-License-Identifier: GPL-3.0-or-later
#include "FolderListing.h"

#include <QDir>
#include <QFileInfo>
#include <QtConcurrentRun>

#include <algorithm>
#include <utility>

namespace lumbra {

namespace {

// Where the last part of a path begins.
qsizetype lastPart(const QString& path) {
    return path.lastIndexOf(u'/') + 1;
}

} // namespace

QThreadPool& FolderListing::pool() {
    static auto* const made = [] {
        auto* const threads = new QThreadPool; // never destroyed: that would wait for the hanging ones
        threads->setMaxThreadCount(8);
        return threads;
    }();
    return *made;
}

FolderListing::FolderListing(QObject* parent) : QAbstractListModel(parent) {
    connect(&m_work, &QFutureWatcherBase::finished, this, &FolderListing::take);
}

FolderListing::~FolderListing() {
    m_stop.request_stop();
}

void FolderListing::setListsFiles(bool lists) {
    if (m_listsFiles == lists)
        return;
    m_listsFiles = lists;
    if (!m_path.isEmpty())
        ask(m_found.contents);
}

QString FolderListing::expanded() const {
    if (m_path == QLatin1String("~") || m_path.startsWith(QLatin1String("~/")))
        return QDir::homePath() + m_path.mid(1);
    return m_path;
}

QString FolderListing::parentPath() const {
    const QString path = expanded();
    const QString here = QDir::cleanPath(path.left(lastPart(path)));
    if (!here.startsWith(u'/') || here == QLatin1String("/"))
        return {};
    return here.left(lastPart(here));
}

QString FolderListing::resolved() const {
    const QString path = QDir::cleanPath(expanded());
    return path.startsWith(u'/') ? path : QString();
}

QString FolderListing::pathOf(int row) const {
    const FolderContents::Entry& entry = entryAt(row);
    return m_found.typed + entry.name + (entry.isFolder ? QStringLiteral("/") : QString());
}

void FolderListing::setPath(const QString& path) {
    if (m_path == path)
        return;
    m_path = path;
    Q_EMIT pathChanged();
    ask(m_found.contents);
}

void FolderListing::refresh() {
    ask(std::make_shared<const FolderContents>());
}

void FolderListing::ask(std::shared_ptr<const FolderContents> known) {
    m_stop.request_stop();
    m_stop = {};
    const QString path = expanded();
    const QString folder = path.left(lastPart(path));
    const Query query{.typed = m_path.left(lastPart(m_path)),
                      .folder = folder.startsWith(u'/') ? QDir::cleanPath(folder) : QString(),
                      .beginning = path.mid(lastPart(path)),
                      .listsFiles = m_listsFiles};
    m_work.setFuture(QtConcurrent::run(&pool(), &FolderListing::look, query, std::move(known), m_stop.get_token()));
    if (!std::exchange(m_reading, true))
        Q_EMIT readingChanged();
}

FolderListing::Found FolderListing::look(const Query& query, std::shared_ptr<const FolderContents> contents,
                                         const std::stop_token& stop) {
    if (contents->folder != query.folder || !contents->isThere)
        contents = std::make_shared<const FolderContents>(FolderContents::read(query.folder, stop));
    Found found;
    found.contents = contents;
    found.typed = query.typed;
    if (!contents->isThere) {
        found.completion = query.typed + query.beginning;
        return found;
    }

    // Hidden entries show only to who asks for them.
    const bool showsHidden = query.beginning.startsWith(u'.');
    QList<const FolderContents::Entry*> fitting;
    for (const FolderContents::Entry& entry : contents->entries) {
        if ((entry.isFolder || query.listsFiles) && (showsHidden || !entry.name.startsWith(u'.'))
            && entry.name.startsWith(query.beginning, Qt::CaseInsensitive))
            fitting.append(&entry);
    }
    const qsizetype shown = std::min<qsizetype>(fitting.size(), most);
    std::transform(fitting.cbegin(), fitting.cbegin() + shown, std::back_inserter(found.rows),
                   [](const FolderContents::Entry* entry) { return *entry; });
    found.isCut = contents->isCut || shown < fitting.size();
    found.completion = completionOf(query, fitting);

    // Asked anew, since it decides what will be done.
    const QFileInfo named(query.folder + u'/' + query.beginning);
    if (named.isDir())
        found.target = Folder;
    else if (named.isFile())
        found.target = File;
    else if (!named.exists() && !named.isSymLink() && QFileInfo(query.folder).isWritable())
        found.target = New;
    return found;
}

QString FolderListing::completionOf(const Query& query, const QList<const FolderContents::Entry*>& fitting) {
    const QString path = query.typed + query.beginning;
    if (fitting.isEmpty())
        return path;
    QString common = fitting.first()->name;
    for (const FolderContents::Entry* entry : fitting) {
        const auto [end, other] = std::ranges::mismatch(common, entry->name);
        common.truncate(end - common.begin());
    }
    if (!common.isEmpty() && common.back().isHighSurrogate())
        common.chop(1); // two characters that share their first half
    const bool isOneFolder = fitting.size() == 1 && fitting.first()->isFolder;
    QString completion = query.typed + common + (isOneFolder ? QStringLiteral("/") : QString());
    return completion.size() > path.size() ? completion : path;
}

void FolderListing::take() {
    beginResetModel();
    m_found = m_work.result();
    endResetModel();
    m_reading = false;
    Q_EMIT readingChanged();
    Q_EMIT listed();
}

int FolderListing::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_found.rows.size());
}

QVariant FolderListing::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const FolderContents::Entry& entry = entryAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return entry.name;
    case PathRole:
        return pathOf(index.row());
    case IsFolderRole:
        return entry.isFolder;
    default:
        return {};
    }
}

QHash<int, QByteArray> FolderListing::roleNames() const {
    return {{NameRole, "name"}, {PathRole, "path"}, {IsFolderRole, "isFolder"}};
}

} // namespace lumbra

// SPDX-License-Identifier: GPL-3.0-or-later
#include "PathChoice.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QtConcurrentRun>

#include <algorithm>
#include <filesystem>

namespace lumbra {

namespace {

constexpr qsizetype longestName = 255; // bytes; what file systems hold

QString lastPart(const QString& path) {
    return path.mid(path.lastIndexOf(u'/') + 1);
}

QString abbreviated(const QString& path) {
    const QString home = QDir::homePath();
    if (path == home || path.startsWith(home + u'/'))
        return u'~' + path.mid(home.size());
    return path;
}

bool isName(const QString& name) {
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..") && !name.contains(QChar::Null)
           && name.toUtf8().size() <= longestName;
}

// Empty when the folder was made.
QString problemOfMaking(const QString& folder) {
    std::error_code error;
    if (std::filesystem::create_directory(folder.toStdString(), error))
        return {};
    if (!error)
        return QStringLiteral("There is already something called “%1” here.").arg(lastPart(folder));
    return QStringLiteral("“%1” can’t be made here: %2.")
        .arg(lastPart(folder), QString::fromStdString(error.message()).toLower());
}

} // namespace

PathChoice::PathChoice(QObject* parent) : QObject(parent) {
    m_listing.setListsFiles(true);
    connect(&m_listing, &FolderListing::pathChanged, this, [this] {
        m_choosesWhenRead = false;
        setProblem({});
    });
    connect(&m_listing, &FolderListing::listed, this, &PathChoice::follow);
    connect(this, &PathChoice::selectionChanged, this, &PathChoice::changed);
    connect(this, &PathChoice::nameChanged, this, &PathChoice::changed);
    connect(&m_work, &QFutureWatcherBase::finished, this, [this] {
        if (m_work.future().resultCount() == 0)
            return;
        const Outcome outcome = m_work.result();
        setProblem(outcome.problem);
        if (outcome.problem.isEmpty())
            outcome.next();
    });
}

void PathChoice::setKind(Kind kind) {
    if (m_kind == kind)
        return;
    m_kind = kind;
    m_listing.setListsFiles(kind != Folder);
    Q_EMIT kindChanged();
    Q_EMIT changed();
}

void PathChoice::setName(const QString& name) {
    if (m_name == name)
        return;
    m_name = name;
    setProblem({});
    Q_EMIT nameChanged();
}

void PathChoice::setProblem(const QString& problem) {
    if (m_problem == problem)
        return;
    m_problem = problem;
    Q_EMIT problemChanged();
}

QVariantList PathChoice::places() {
    QVariantList found;
    const auto add = [&found](const QString& text, const QString& path, const QString& symbol) {
        if (!path.isEmpty() && QFileInfo(path).isDir())
            found.append(QVariantMap{
                {QStringLiteral("text"), text}, {QStringLiteral("path"), path}, {QStringLiteral("symbol"), symbol}});
    };
    add(QStringLiteral("Home"), QDir::homePath(), QStringLiteral("house"));
    add(QStringLiteral("Downloads"), QStandardPaths::writableLocation(QStandardPaths::DownloadLocation),
        QStringLiteral("square.and.arrow.down"));
    return found;
}

void PathChoice::start(const QString& folder, const QString& name) {
    stop();
    setName(name);
    m_listing.setPath(folder.endsWith(u'/') ? folder : folder + u'/');
    m_listing.refresh(); // it may have changed since it was listed last
}

void PathChoice::stop() {
    m_choosesWhenRead = false;
    m_work.setFuture({});
    m_selected.clear();
    m_currentRow = m_anchor = -1;
    setProblem({});
    Q_EMIT selectionChanged();
}

void PathChoice::follow() {
    m_selected.clear();
    m_currentRow = m_anchor = -1;
    Q_EMIT selectionChanged();
    if (std::exchange(m_choosesWhenRead, false))
        choose();
}

void PathChoice::visit(const QString& folder) {
    const QString path = abbreviated(folder);
    go(path.endsWith(u'/') ? path : path + u'/');
}

void PathChoice::goUp() {
    if (const QString parent = m_listing.parentPath(); !parent.isEmpty())
        visit(parent);
}

bool PathChoice::complete() {
    if (m_listing.reading() || m_listing.completion() == m_listing.path())
        return false;
    m_listing.setPath(m_listing.completion());
    return true;
}

bool PathChoice::isRow(int row) const {
    return row >= 0 && row < m_listing.rowCount() && !m_listing.reading();
}

void PathChoice::select(int row, Qt::KeyboardModifiers held) {
    if (m_kind == Open && held.testFlag(Qt::ShiftModifier) && m_anchor >= 0) {
        m_selected.clear();
        for (int passed = std::min(m_anchor, row); passed <= std::max(m_anchor, row); ++passed)
            m_selected.insert(passed);
        m_currentRow = row;
    } else {
        const bool toggles = m_kind == Open && held.testFlag(Qt::ControlModifier);
        if (!toggles)
            m_selected.clear();
        if (m_selected.erase(row) == 0)
            m_selected.insert(row);
        m_currentRow = m_anchor = row;
    }
    Q_EMIT selectionChanged();
}

void PathChoice::press(int row, int modifiers) {
    if (!isRow(row))
        return;
    select(row, Qt::KeyboardModifiers::fromInt(modifiers));
    if (m_kind == Save && !m_listing.entryAt(row).isFolder)
        setName(m_listing.entryAt(row).name);
}

void PathChoice::move(int by, int modifiers) {
    const int row = std::clamp(m_currentRow + by, 0, std::max(0, m_listing.rowCount() - 1));
    if (isRow(row))
        select(row, Qt::KeyboardModifiers::fromInt(modifiers) & Qt::ShiftModifier);
}

void PathChoice::selectAll() {
    if (m_kind != Open || !isRow(0))
        return;
    for (int row = 0; row < m_listing.rowCount(); ++row)
        m_selected.insert(row);
    m_currentRow = std::max(0, m_currentRow);
    Q_EMIT selectionChanged();
}

void PathChoice::activate(int row) {
    if (!isRow(row))
        return;
    if (m_listing.entryAt(row).isFolder)
        return go(m_listing.pathOf(row));
    press(row);
    choose();
}

QStringList PathChoice::targets() const {
    QStringList paths;
    if (m_kind == Save) {
        if (const QString target = saveTarget(); !target.isEmpty())
            paths.append(target);
        return paths;
    }
    for (const int row : m_selected)
        paths.append(pathOf(row));
    const FolderListing::Target typed = m_listing.target();
    const FolderListing::Target other = m_kind == Open ? FolderListing::File : FolderListing::New;
    if (paths.isEmpty() && (typed == FolderListing::Folder || typed == other))
        paths.append(m_listing.resolved());
    return paths;
}

// In the folder that is selected, else in the one that is typed; unless what stands for the name is a path itself.
QString PathChoice::saveTarget() const {
    if (!isName(lastPart(m_name)))
        return {};
    if (m_name.startsWith(u'/'))
        return m_name;
    if (m_name.startsWith(QLatin1String("~/")))
        return QDir::homePath() + m_name.mid(1);
    const int selected = m_selected.empty() ? -1 : *m_selected.begin();
    if (selected >= 0 && m_listing.entryAt(selected).isFolder)
        return QDir(pathOf(selected)).filePath(m_name);
    return m_listing.target() == FolderListing::Folder ? QDir(m_listing.resolved()).filePath(m_name) : QString();
}

QString PathChoice::pathOf(int row) const {
    return QDir(m_listing.folder()).filePath(m_listing.entryAt(row).name);
}

bool PathChoice::choosable() const {
    return !targets().isEmpty();
}

QString PathChoice::summary() const {
    const QStringList paths = targets();
    if (paths.isEmpty())
        return {};
    if (paths.size() > 1)
        return QStringLiteral("%1 items").arg(paths.size());
    return abbreviated(QDir::cleanPath(paths.first()));
}

void PathChoice::choose() {
    if (m_listing.reading()) {
        m_choosesWhenRead = true;
        return;
    }
    const QStringList paths = targets();
    if (paths.isEmpty())
        return;
    const QString path = QDir::cleanPath(paths.first());
    if (m_kind == Save) {
        inBackground([this, path] {
            const QFileInfo there(path);
            const QString folder = there.path();
            if (!QFileInfo(folder).isDir())
                return Outcome{.problem = QStringLiteral("There is no folder “%1”.").arg(abbreviated(folder))};
            if (!there.exists() && !there.isSymLink())
                return Outcome{.next = [this, path] { Q_EMIT chosen({path}); }};
            return Outcome{.next = [this, path, isFolder = there.isDir() && !there.isSymLink()] {
                m_toReplace = path;
                Q_EMIT replaceAsked(lastPart(path), isFolder);
            }};
        });
    } else if (m_kind == Folder && m_selected.empty() && m_listing.target() == FolderListing::New) {
        inBackground([this, path] {
            return Outcome{.problem = problemOfMaking(path), .next = [this, path] { Q_EMIT chosen({path}); }};
        });
    } else {
        Q_EMIT chosen(paths);
    }
}

void PathChoice::replace() {
    if (!m_toReplace.isEmpty())
        Q_EMIT chosen({std::exchange(m_toReplace, {})});
}

void PathChoice::makeFolder(const QString& name) {
    const QString trimmed = name.trimmed();
    if (!isName(trimmed) || trimmed.contains(u'/')) {
        setProblem(trimmed.isEmpty() ? QString() : QStringLiteral("A folder can’t be called so."));
        return;
    }
    const QString path = QDir(m_listing.folder()).filePath(trimmed);
    inBackground([this, path] {
        return Outcome{.problem = problemOfMaking(path), .next = [this, path] {
                           Q_EMIT folderMade();
                           visit(path);
                       }};
    });
}

void PathChoice::inBackground(std::function<Outcome()> work) {
    m_work.setFuture(QtConcurrent::run(&FolderListing::pool(), std::move(work)));
}

int PathChoice::stemLength(const QString& name) {
    const qsizetype dot = name.lastIndexOf(u'.');
    return int(dot > 0 ? dot : name.size());
}

} // namespace lumbra

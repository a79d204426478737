// SPDX-License-Identifier: GPL-3.0-or-later
#include "ProjectLinks.h"

#include "JsonFile.h"
#include "platform/Processes.h"

#include <QDateTime>
#include <QDir>

#include <unistd.h>

#include <array>

namespace lumbra::ProjectLinks {

namespace {

// The current names first. The former ones are read, never written, and go when a link is made or undone.
constexpr std::string_view legacyManifest = ".folia.json";
constexpr std::array<std::string_view, 2> manifests{manifest, legacyManifest};
constexpr std::string_view legacyGitKey = "folia.folder";
constexpr std::array<std::string_view, 2> gitKeys{gitKey, legacyGitKey};

QByteArray bytes(std::string_view text) {
    return QByteArray(text.data(), qsizetype(text.size()));
}

// What git printed, trimmed, which may be nothing; absent when it failed.
std::optional<QString> git(const Location& repo, const QList<QByteArray>& arguments) {
    // To git, no path at all is the working directory, which may be a repository of somebody's.
    if (repo.isEmpty())
        return std::nullopt;
    Processes::Options options;
    // Started from a git hook, we inherit variables that name the hook's repository and outweigh -C.
    options.unset = {"GIT_DIR", "GIT_WORK_TREE", "GIT_COMMON_DIR", "GIT_CONFIG", "GIT_INDEX_FILE", "GIT_PREFIX"};
    const auto result = Processes::run("/usr/bin/git", QList<QByteArray>{"-C", repo.path()} + arguments, options);
    if (!result.succeeded() || !QByteArrayView(result.output).isValidUtf8())
        return std::nullopt;
    return QString::fromUtf8(result.output).trimmed();
}

std::optional<QString> gitValue(const Location& repo, std::string_view key) {
    return git(repo, {"config", "--get", bytes(key)});
}

void unsetGitKey(const Location& repo, std::string_view key) {
    git(repo, {"config", "--local", "--unset", bytes(key)});
}

bool pointAt(const Location& repo, const Location& folder) {
    return git(repo, {"config", "--local", bytes(gitKey), folder.path()}).has_value();
}

QJsonObject readManifest(const Location& folder) {
    for (const std::string_view name : manifests) {
        if (auto object = JsonFile::read(folder.child(name)))
            return *object;
    }
    return {};
}

void removeFile(const Location& file) {
    ::unlink(file.path().constData());
}

} // namespace

std::optional<Location> repoOf(const Location& folder) {
    for (const std::string_view name : manifests) {
        const QJsonObject object = JsonFile::read(folder.child(name)).value_or(QJsonObject());
        const auto repo = Location::expandingTilde(object.value(QLatin1String("repo")).toString());
        if (!repo.isEmpty())
            return repo;
    }
    return std::nullopt;
}

bool isRepository(const Location& folder) {
    return folder.child(".git").exists();
}

void link(const Location& folder, const Location& repo) {
    JsonFile::makeFolder(folder);
    QJsonObject object = readManifest(folder);
    object.insert(QLatin1String("repo"), repo.toString());
    object.insert(QLatin1String("remote"), git(repo, {"remote", "get-url", "origin"}).value_or(QString()));
    if (!object.contains(QLatin1String("linked")))
        object.insert(QLatin1String("linked"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
    JsonFile::write(folder.child(manifest), object);
    removeFile(folder.child(legacyManifest));
    if (!pointAt(repo, folder))
        throw LinkError(QStringLiteral("Couldn't write lumbra.folder into %1's git config.").arg(repo.name()));
    unsetGitKey(repo, legacyGitKey);
}

void repoint(const Location& repo, const Location& folder) {
    pointAt(repo, folder);
    unsetGitKey(repo, legacyGitKey);
}

void unlink(const Location& folder) {
    if (const auto repo = repoOf(folder)) {
        for (const std::string_view key : gitKeys) {
            const auto value = gitValue(*repo, key);
            // A repository that has since been pointed at another folder keeps its key.
            if (value && Location(QStringView(*value)).canonical() == folder.canonical())
                unsetGitKey(*repo, key);
        }
    }
    for (const std::string_view name : manifests)
        removeFile(folder.child(name));
}

std::optional<Location> mainRepositoryContaining(const Location& inside) {
    const auto top = git(inside, {"rev-parse", "--show-toplevel"});
    if (!top)
        return std::nullopt;
    const auto common = git(inside, {"rev-parse", "--path-format=absolute", "--git-common-dir"});
    if (common) {
        const Location directory{QStringView(*common)};
        if (directory.lastComponent() == ".git")
            return directory.parent();
    }
    return Location(QStringView(*top));
}

std::optional<Location> findFolderForRepository(const Location& repo, const Location& library) {
    const Location wanted = repo.canonical();
    // By the plain comparison of names, which Qt does when no flag asks for more; hidden folders are left out.
    const QStringList names = QDir(library.toString()).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& name : names) {
        const Location folder = library.child(QStringView(name));
        const auto named = repoOf(folder);
        if (named && named->canonical() == wanted)
            return folder;
    }
    return std::nullopt;
}

Location folderForRepository(const Location& repo, const Location& library) {
    for (const std::string_view key : gitKeys) {
        const auto value = gitValue(repo, key);
        if (!value)
            continue;
        const Location folder = Location::expandingTilde(*value);
        if (!folder.isFolder())
            continue;
        // A link under the former name, or one that has lost its manifest, is made anew.
        if (key != gitKey || !repoOf(folder))
            link(folder, repo);
        return folder;
    }
    const Location folder = findFolderForRepository(repo, library).value_or(library.child(repo.lastComponent()));
    link(folder, repo);
    return folder;
}

} // namespace lumbra::ProjectLinks

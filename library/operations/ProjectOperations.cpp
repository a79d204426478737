// The operations of Library that make, rename, link and trash projects. git is asked and the trash filled in the
// background; the steps of one operation keep their order.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ProjectLinks.h"
#include "library/Library.h"
#include "platform/Tasks.h"

#include <algorithm>

namespace lumbra {

namespace {

using Done = OperationQueue::Done;
using Problem = std::optional<QString>; // in words for the user

Problem link(const Location& folder, const Location& repository) {
    try {
        ProjectLinks::link(folder, repository);
    } catch (const CoreError& error) {
        return error.message;
    }
    return std::nullopt;
}

struct Linking {
    bool tried = false;
    Problem problem;
};

Linking linkInstead(const Project& project, const Location& repository) {
    if (!ProjectLinks::isRepository(repository))
        return {false, repository.name() + QStringLiteral(" isn't a git repository.")};
    if (project.repo && project.repo->canonical() != repository.canonical())
        ProjectLinks::unlink(project.url);
    return {true, link(project.url, repository)};
}

Problem trashEntry(const Location& entry) {
    const auto failure = Files::trash(entry);
    return failure ? Problem(failure->description) : std::nullopt;
}

QString nameIsTaken(const QString& name) {
    return QStringLiteral("There is already a project called ") + name + u'.';
}

// Runs one blocking step; `then` follows on the main thread while the library lives.
template <typename Step, typename Then>
void inBackground(Library* library, Step step, Then then) {
    Tasks::run(Tasks::Pool::lasting, std::move(step)).then(library, std::move(then));
}

} // namespace

// What a menu was opened with may be out of date when the operation's turn comes.
Project Library::upToDate(const Project& project) const {
    const auto& known = m_projects.value();
    const auto found = std::ranges::find(known, project.name, &Project::name);
    return found == known.end() ? project : *found;
}

void Library::releaseEvents() {
    if (--m_eventHolders == 0)
        handleQueuedEvents();
}

void Library::newProjectNamed(const QString& name, const std::optional<Location>& repository) {
    const Location folder = m_root.child(name);
    m_projectWork.add({folder}, [this, name, folder, repository](const Done& done) {
        if (Files::isTaken(folder)) {
            setLastError(nameIsTaken(name));
            return done();
        }
        const auto finish = [this, folder, done](const Problem& problem) {
            if (problem)
                setLastError(problem);
            reloadProjects();
            setPlace(Place::folder(folder.canonical()));
            done();
        };
        for (const char* part : {"images", "videos", "files"})
            if (const auto failure = Files::makeFolders(folder.child(part)))
                return finish(failure->description);
        if (!repository)
            return finish({});
        inBackground(
            this, [folder, repository] { return link(folder, *repository); }, finish);
    });
}

void Library::renameProject(const Project& given, const QString& name) {
    const Location target = m_root.child(name);
    m_projectWork.add({m_root.child(given.name), target}, [this, given, name, target](const Done& done) {
        if (Files::isTaken(target)) {
            setLastError(nameIsTaken(name));
            return done();
        }
        const Project project = upToDate(given);
        // The entry under the root: of a project that is a link, the link.
        if (const auto failure = Files::rename(m_root.child(project.name), target)) {
            setLastError(failure->description);
            return done();
        }
        const auto finish = [this, project, name, target, done] {
            renameInState(project.name, name);
            const auto folder = place().folderUrl();
            const bool wasInside = folder && folder->isInside(project.url);
            reloadProjects();
            if (wasInside)
                setPlace(Place::folder(target.canonical()));
            contentChanged();
            done();
        };
        if (!project.repo)
            return finish();
        // Seen before its pins, group and colour have followed, it would jump about in the sidebar.
        holdEvents();
        inBackground(
            this, [repo = *project.repo, target] { ProjectLinks::repoint(repo, target); },
            [this, finish] {
                finish();
                releaseEvents();
            });
    });
}

void Library::linkProject(const Project& given, const Location& repository) {
    m_projectWork.add({m_root.child(given.name)}, [this, given, repository](const Done& done) {
        const Project project = upToDate(given);
        const auto finish = [this, name = project.name, repository, done](const Linking& linking) {
            if (linking.problem)
                setLastError(linking.problem);
            else
                setToast(Toast{.text = name + QStringLiteral(" is linked to ") + repository.name()});
            if (linking.tried)
                reloadProjects();
            done();
        };
        inBackground(
            this, [project, repository] { return linkInstead(project, repository); }, finish);
    });
}

void Library::unlinkProject(const Project& given) {
    m_projectWork.add({m_root.child(given.name)}, [this, given](const Done& done) {
        inBackground(
            this, [folder = upToDate(given).url] { ProjectLinks::unlink(folder); },
            [this, done] {
                reloadProjects();
                done();
            });
    });
}

void Library::trashProject(const Project& given) {
    m_projectWork.add({m_root.child(given.name)}, [this, given](const Done& done) {
        const Project project = upToDate(given);
        const Location entry = m_root.child(project.name);
        const auto forget = [this, name = project.name, done](const Problem& problem) {
            if (problem)
                setLastError(problem);
            // Whatever came of it: a project whose trashing failed stays listed, without its pins, group and colour.
            forgetInState(name);
            reloadProjects();
            done();
        };
        const auto discard = [this, project, entry, forget] {
            const auto folder = place().folderUrl();
            if (folder && folder->isInside(project.url))
                setPlace(Place::recent());
            inBackground(
                this, [entry] { return trashEntry(entry); }, forget);
        };
        if (!project.repo)
            return discard();
        inBackground(
            this, [folder = project.url] { ProjectLinks::unlink(folder); }, discard);
    });
}

} // namespace lumbra

// SPDX-License-Identifier: GPL-3.0-or-later
#include "Files.h"

#include "files/CarryOut.h"
#include "files/Failure.h"
#include "files/FreeName.h"
#include "files/Journal.h"
#include "files/Load.h"
#include "files/Rename.h"
#include "files/Trash.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace lumbra::Files {

Location freeName(const QString& name, const Location& folder) {
    return freeName(name, folder, isTaken);
}

Location freeName(const QString& name, const Location& folder, const std::function<bool(const Location&)>& taken) {
    Location candidate = folder.child(name);
    for (int counter = 2; taken(candidate); ++counter)
        candidate = folder.child(files::numbered(name, counter));
    return candidate;
}

bool isTaken(const Location& location) {
    struct stat facts;
    return ::lstat(location.path().constData(), &facts) == 0;
}

std::optional<Error> rename(const Location& from, const Location& to) {
    const QString verb = from.parent() == to.parent() ? QStringLiteral("rename") : QStringLiteral("move");
    if (files::isImpossibleName(to) || files::isImpossibleName(from))
        return files::sentence(verb, {EINVAL, from.view()});
    const int code = files::renameNoReplace(AT_FDCWD, from.path().constData(), AT_FDCWD, to.path().constData());
    if (!code)
        return std::nullopt;
    if (code == EEXIST)
        return Error{QStringLiteral("Couldn't %1 %2: there is already something called %3.")
                         .arg(verb, files::readable(from.view()), files::readable(to.view())),
                     code};
    return files::sentence(verb, {code, from.view()});
}

std::optional<Error> makeFolder(const Location& folder) {
    int code = EINVAL;
    if (!files::isImpossibleName(folder))
        code = ::mkdir(folder.path().constData(), 0777) == 0 ? 0 : errno;
    if (!code)
        return std::nullopt;
    return files::sentence(QStringLiteral("make the folder"), {code, folder.view()});
}

std::optional<Error> makeFolders(const Location& folder) {
    QList<Location> missing;
    for (Location at = folder; !at.isEmpty() && !at.isFolder(); at = at.parent())
        missing.prepend(at);
    for (const Location& one : missing) {
        const auto error = makeFolder(one);
        // Somebody else may make the same.
        if (error && !(error->code == EEXIST && one.isFolder()))
            return error;
    }
    return std::nullopt;
}

std::optional<Error> trash(const Location& location) {
    const auto failure = files::moveToTrash(location);
    if (!failure)
        return std::nullopt;
    return files::sentence(QStringLiteral("trash"), *failure);
}

QList<Arrival> carryOut(const QList<Transfer>& transfers, const Location& journal, std::stop_token stop,
                        const std::function<void(const Progress&)>& report) {
    files::ProgressMeter meter(std::move(stop), report);
    const QList<Arrival> arrivals = files::CarryOut(transfers, journal, meter).run();
    meter.reportEnd();
    return arrivals;
}

void cleanLeftovers(const Location& journal) {
    files::Journal(journal).clean();
}

} // namespace lumbra::Files

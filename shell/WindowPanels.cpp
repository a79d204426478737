// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowPanels.h"

#include "library/Library.h"

#include <QStandardPaths>

#include <utility>

namespace lumbra {

namespace {

Location folderOrHome(const Location& folder) {
    return folder.isFolder() ? folder : Location::home();
}

Location downloads() {
    return Location(QStringView(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation)));
}

} // namespace

WindowPanels::WindowPanels(const Library* library, QObject* parent) : QObject(parent), m_library(library) {}

QString WindowPanels::libraryFolder() const {
    return m_library->root().toString();
}

void WindowPanels::openFiles(const QString& prompt, std::function<void(QList<Location>)> chosen) {
    ask({.kind = PathChoice::Open,
         .prompt = prompt,
         .folder = folderOrHome(m_lastOpened.value_or(downloads())),
         .chosen = [this, chosen = std::move(chosen)](const QList<Location>& locations) {
             m_lastOpened = locations.first().parent();
             chosen(locations);
         }});
}

void WindowPanels::chooseFolder(const QString& prompt, const QString& message, const std::optional<Location>& start,
                                std::function<void(std::optional<Location>)> chosen) {
    ask({.kind = PathChoice::Folder,
         .prompt = prompt,
         .message = message,
         .folder = folderOrHome(start.value_or(Location::home())),
         .chosen = [chosen](const QList<Location>& locations) { chosen(locations.first()); },
         .cancelled = [chosen] { chosen(std::nullopt); }});
}

void WindowPanels::save(const QString& name, const Location& start, std::function<void(Location)> chosen) {
    ask({.kind = PathChoice::Save,
         .folder = folderOrHome(start),
         .name = name,
         .chosen = [chosen = std::move(chosen)](const QList<Location>& locations) { chosen(locations.first()); }});
}

void WindowPanels::ask(Request request) {
    const Request former = std::exchange(m_request, std::move(request));
    Q_EMIT asked();
    if (former.cancelled)
        former.cancelled();
}

void WindowPanels::answer(const QStringList& paths) {
    QList<Location> locations;
    for (const QString& path : paths)
        locations.append(Location(QStringView(path)));
    // Let go first: the answer may ask for the next.
    m_request.cancelled = {};
    const auto chosen = std::exchange(m_request.chosen, {});
    if (chosen && !locations.isEmpty())
        chosen(locations);
}

void WindowPanels::cancel() {
    m_request.chosen = {};
    if (const auto cancelled = std::exchange(m_request.cancelled, {}))
        cancelled();
}

} // namespace lumbra

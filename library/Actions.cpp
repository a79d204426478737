// SPDX-License-Identifier: GPL-3.0-or-later
#include "Actions.h"

#include "Library.h"
#include "Panels.h"
#include "core/Clipboard.h"
#include "platform/Desktop.h"

#include <QPointer>
#include <QStandardPaths>

namespace lumbra::Actions {

namespace {

Panels* windowPanels = nullptr;

Location downloads() {
    return Location(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
}

} // namespace

void usePanels(Panels* panels) {
    windowPanels = panels;
}

void open(const QList<Location>& urls) {
    Desktop::open(urls);
}

void copy(const QList<Location>& urls, Library* library) {
    if (urls.isEmpty())
        return;
    const QString what =
        urls.size() == 1 ? urls.first().name() : QString::number(urls.size()) + QStringLiteral(" files");
    Clipboard::write(urls, Pasteboard::general(), Reader::shared(), [what, library = QPointer(library)] {
        if (library)
            library->setToast(Toast{.text = QStringLiteral("Copied ") + what + QStringLiteral(". Paste it anywhere."),
                                    .symbol = QStringLiteral("doc.on.doc.fill")});
    });
}

void copyPaths(const QList<Location>& urls) {
    Clipboard::writePaths(urls);
}

void importFiles(const Location& folder, Library* library) {
    if (!windowPanels)
        return;
    windowPanels->openFiles(QStringLiteral("Add"),
                            [folder, library = QPointer(library)](const QList<Location>& chosen) {
                                if (library)
                                    library->bring(chosen, folder);
                            });
}

void chooseFolder(const QString& prompt, const std::optional<Location>& start,
                  std::function<void(std::optional<Location>)> chosen, const QString& message) {
    if (windowPanels)
        windowPanels->chooseFolder(prompt, message, start, std::move(chosen));
}

void exportFiles(const QList<Location>& urls, Library* library) {
    if (urls.isEmpty() || !windowPanels)
        return;
    if (urls.size() == 1) {
        const Location& url = urls.first();
        windowPanels->save(url.name(), downloads(), [url, library = QPointer(library)](const Location& target) {
            if (library)
                library->exportAs(url, target);
        });
        return;
    }
    chooseFolder(QStringLiteral("Export Here"), downloads(),
                 [urls, library = QPointer(library)](const std::optional<Location>& folder) {
                     if (folder && library)
                         library->exportTo(urls, *folder);
                 });
}

} // namespace lumbra::Actions

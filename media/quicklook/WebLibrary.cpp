// SPDX-License-Identifier: GPL-3.0-or-later
#include "WebLibrary.h"

#include "WebRights.h"
#include "platform/Tasks.h"

#include <QLibrary>

namespace lumbra {

void WebLibrary::loadAhead() {
    static bool isAsked = false;
    if (isAsked || !WebRights::mayStart())
        return;
    isAsked = true;
    // By the name that the views' plugin asks for. Where it is missing they say so when they are made.
    Tasks::run(Tasks::Pool::utility, [] {
        QLibrary library(QStringLiteral("Qt6WebEngineQuick"), 6);
        library.setLoadHints(QLibrary::PreventUnloadHint);
        return library.load();
    });
}

} // namespace lumbra

// SPDX-License-Identifier: GPL-3.0-or-later
#include "Relaunch.h"

#include <QCoreApplication>
#include <QProcess>

namespace lumbra::Relaunch {

bool startAfter(qint64 process, const QString& program) {
    // An ended process that nobody has collected yet still has a number, but no program any more: its "exe" leads
    // nowhere, where a signal to it would still succeed.
    const QString helper = QStringLiteral("while [ -e \"/proc/$1/exe\" ]; do sleep 0.05; done; exec \"$2\"");
    return QProcess::startDetached(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), helper, QStringLiteral("sh"),
                                                               QString::number(process), program});
}

void application() {
    startAfter(QCoreApplication::applicationPid(), QCoreApplication::applicationFilePath());
    QCoreApplication::quit();
}

} // namespace lumbra::Relaunch

// Starts the application anew. A helper outside of this process waits until it has ended, so that the new one finds the
// place of the single instance free.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace lumbra::Relaunch {

// Starts `program` once the process has ended, however it ends. False if the helper can't be started.
bool startAfter(qint64 process, const QString& program);

// Ends this application and starts it again. It ends even if nothing will start it again.
void application();

} // namespace lumbra::Relaunch

// Names a process so that another one can tell, also after a restart of the machine, whether it still runs: numbers of
// processes are given out again.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <optional>

namespace lumbra::files {

struct Owner {
    QByteArray boot;      // one start of the machine
    QByteArray numbering; // where the number counts: containers number their processes anew
    qint64 process = 0;
    quint64 started = 0; // clock ticks since the machine's start

    // The calling process.
    static Owner self();

    // As four words.
    QByteArray toText() const;
    static std::optional<Owner> fromText(const QByteArray& text);

    // In doubt it may.
    bool mayRun() const;
};

} // namespace lumbra::files

// The reader processes that a test has started, as the system tells of them.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QList>

#include <sys/types.h>

namespace lumbra {

// The living children of a process, by default of this one, whatever they run.
inline QList<pid_t> childProcesses(qint64 parent = QCoreApplication::applicationPid()) {
    QList<pid_t> children;
    for (const QString& name : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        bool isNumber = false;
        const int process = name.toInt(&isNumber);
        QFile status(QStringLiteral("/proc/%1/stat").arg(name));
        if (!isNumber || !status.open(QIODevice::ReadOnly))
            continue;
        const QByteArray text = status.readAll();
        const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
        if (fields.value(0) != "Z" && fields.value(1).toInt() == parent)
            children.append(process);
    }
    return children;
}

// Bytes of memory of its own that the process has now; 0 if it has gone. What it shares, such as the programs' code and
// the arena, is not counted.
inline qint64 ownMemory(pid_t process) {
    QFile facts(QStringLiteral("/proc/%1/status").arg(process));
    if (!facts.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = facts.readAll();
    const qsizetype at = text.indexOf("RssAnon:");
    return at < 0 ? 0 : text.mid(at + 8, 40).simplified().split(' ').value(0).toLongLong() * 1024;
}

} // namespace lumbra

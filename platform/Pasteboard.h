// Where programs leave for each other what the user copies: one thing at a time, in every form that somebody may ask
// for. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>

namespace lumbra {

class Pasteboard : public QObject {
    Q_OBJECT

public:
    // One form of the thing.
    struct Flavour {
        QString type; // as MIME has it
        QByteArray bytes;

        bool operator==(const Flavour&) const = default;
    };
    using Contents = QList<Flavour>;

    using QObject::QObject;

    // The desktop's clipboard. Needs a QGuiApplication. It lives until the process ends.
    static Pasteboard& general();

    // Replaces everything that was there. The number is what `add` knows these contents by.
    virtual quint64 set(const Contents& contents) = 0;

    // Says that contents follow which take time to make, and `supply` brings them. What is there stays until then.
    virtual quint64 announce() = 0;

    // Replaces what was there by the contents that were announced under the number, which `add` then knows them by.
    // Whatever was copied since they were announced, here or in another program, stays; true if nothing was.
    virtual bool supply(quint64 number, const Contents& contents) = 0;

    // Adds flavours that took time to make. Whatever was copied since, here or in another program, stays alone.
    virtual void add(quint64 number, const Contents& flavours) = 0;
};

} // namespace lumbra

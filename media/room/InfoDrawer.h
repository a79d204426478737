// The controller of the drawer that tells what is known of the file on show and offers what can be done with it.
//
// Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "InfoFacts.h"
#include "ScreeningRoom.h"

#include <QObject>
#include <QPointer>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace lumbra {

// One entry of the drawer's list of actions.
class InfoAction {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(bool destructive MEMBER destructive)

public:
    Q_INVOKABLE void run() const {
        if (action)
            action();
    }

    QString title;
    QString symbol;
    std::function<void()> action;
    bool destructive = false;
};

class InfoDrawer : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(lumbra::ScreeningRoom* room READ room WRITE setRoom NOTIFY roomChanged)
    Q_PROPERTY(QVariantList facts READ factList NOTIFY factsChanged)
    Q_PROPERTY(QVariantList actions READ actionList CONSTANT)

public:
    explicit InfoDrawer(QObject* parent = nullptr) : QObject(parent) {}

    // May go at any time; without one there are no facts, and the actions do nothing.
    ScreeningRoom* room() const { return m_room; }
    void setRoom(ScreeningRoom* room);

    const QList<InfoFact>& facts() const { return m_facts; }

    // Each acts on the file that is on show when it is chosen, as long as the drawer lives.
    QList<InfoAction> actions();

    // Asks for a folder. The room stays on the file, wherever it goes.
    void move();

    // The room goes on to the next file, or closes if there is none.
    void trash();

    Q_INVOKABLE void toggleStar();
    Q_INVOKABLE void close();

Q_SIGNALS:
    void roomChanged();
    void factsChanged();

private:
    QVariantList factList() const;
    QVariantList actionList();
    void refresh();

    QPointer<ScreeningRoom> m_room;
    QList<InfoFact> m_facts;
};

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::InfoAction)

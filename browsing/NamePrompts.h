// What the sheet that asks for a name does: it holds the one request there may be, checks the name at each keystroke,
// and hands it on once the sheet has gone. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "NamePrompt.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace lumbra {

class NamePrompts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window makes its one.")

    Q_PROPERTY(bool asking READ asking NOTIFY promptChanged)
    Q_PROPERTY(QString title READ title NOTIFY promptChanged)
    Q_PROPERTY(QString confirm READ confirm NOTIFY promptChanged)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged) // what stands in the field
    Q_PROPERTY(QString problem READ problem NOTIFY nameChanged)         // why it is refused; empty if it is not
    Q_PROPERTY(bool canCommit READ canCommit NOTIFY nameChanged)

public:
    explicit NamePrompts(QObject* parent = nullptr) : QObject(parent) {}

    // What is wrong with a name, surrounding blanks aside; empty if nothing is, or if there is no name yet.
    static QString problemOf(const QString& name);

    // Asks anew; a request that is still open is dropped.
    void ask(const NamePrompt& prompt);

    bool asking() const { return m_prompt.has_value(); }

    // Those of the last request, so that a sheet on its way out keeps its words.
    QString title() const { return m_title; }
    QString confirm() const { return m_confirm; }

    QString name() const { return m_name; }
    void setName(const QString& name);

    QString problem() const { return problemOf(m_name); }
    bool canCommit() const { return !m_name.trimmed().isEmpty() && problem().isEmpty(); }

    // Ends the request, and on the next turn of the event loop runs its action with the trimmed name: it may open a
    // panel, which must not lie under the sheet. Nothing happens while the name is refused.
    Q_INVOKABLE void commit();

    // Ends the request and does nothing else.
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void promptChanged(); // with each request, even one with the same words, and with its end
    void nameChanged();

private:
    std::optional<NamePrompt> m_prompt;
    QString m_title;
    QString m_confirm;
    QString m_name;
};

} // namespace lumbra

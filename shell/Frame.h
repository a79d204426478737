// What lies over the window for a moment, whatever page shows: the request for a name, the question before something is
// destroyed, the toast and the alert. It only gathers their controllers; each decides for itself. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Toasts.h"
#include "browsing/Confirmations.h"
#include "browsing/NamePrompts.h"
#include "library/Library.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class Frame : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes its one.")

    Q_PROPERTY(lumbra::NamePrompts* prompts READ prompts CONSTANT)
    Q_PROPERTY(lumbra::Confirmations* confirmations READ confirmations CONSTANT)
    Q_PROPERTY(lumbra::Toasts* toasts READ toasts CONSTANT)
    Q_PROPERTY(QString error READ error NOTIFY errorChanged) // what the alert says; empty while there is none

public:
    // The library must outlive it.
    explicit Frame(Library* library, QObject* parent = nullptr);

    NamePrompts* prompts() { return &m_prompts; }
    Confirmations* confirmations() { return &m_confirmations; }
    Toasts* toasts() { return &m_toasts; }
    QString error() const { return m_library->lastError().value_or(QString()); }

    // The way in for every menu that needs a name.
    void ask(const NamePrompt& prompt) { m_prompts.ask(prompt); }

    // The way in for what is asked before it destroys.
    void confirm(const Confirmation& question) { m_confirmations.ask(question); }

    // The user has read the alert.
    Q_INVOKABLE void acknowledgeError() { m_library->setLastError(std::nullopt); }

Q_SIGNALS:
    void errorChanged();

private:
    Library* m_library;
    NamePrompts m_prompts;
    Confirmations m_confirmations;
    Toasts m_toasts;
};

} // namespace lumbra

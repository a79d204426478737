// What the alert does that asks before something is destroyed: it holds the one question there may be. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Confirmation.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class Confirmations : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window makes its one.")

    Q_PROPERTY(bool asking READ asking NOTIFY questionChanged)
    Q_PROPERTY(QString title READ title NOTIFY questionChanged)
    Q_PROPERTY(QString text READ text NOTIFY questionChanged)
    Q_PROPERTY(QString confirm READ confirm NOTIFY questionChanged)

public:
    explicit Confirmations(QObject* parent = nullptr) : QObject(parent) {}

    // Asks anew; a question that is still open is dropped.
    void ask(const Confirmation& question);

    bool asking() const { return m_asking; }

    // Those of the last question, so that an alert on its way out keeps its words.
    QString title() const { return m_question.title; }
    QString text() const { return m_question.text; }
    QString confirm() const { return m_question.confirm; }

    // Ends the question: does what was asked about, or nothing.
    Q_INVOKABLE void agree();
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void questionChanged(); // with each question, even one with the same words, and with its end

private:
    bool end();

    Confirmation m_question;
    bool m_asking = false;
};

} // namespace lumbra

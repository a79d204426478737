// A request for a name: what a menu hands to the window, which shows one sheet for all of them.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMetaType>
#include <QString>
#include <QUuid>

#include <functional>

namespace lumbra {

struct NamePrompt {
    using Action = std::function<void(const QString& name)>;

    QUuid id = QUuid::createUuid(); // new for each request, so that a repeated one shows a new sheet
    QString title = {};
    QString initial = {}; // the text that the field starts with
    QString confirm = {}; // the label of the button
    Action action = {};   // takes the entered name, trimmed and valid, once the sheet has gone

    static NamePrompt request(const QString& heading, const QString& text, Action then) {
        const bool renames = heading.startsWith(QLatin1String("Rename"));
        return {.title = heading,
                .initial = text,
                .confirm = renames ? QStringLiteral("Rename") : QStringLiteral("Create"),
                .action = std::move(then)};
    }

    friend bool operator==(const NamePrompt& a, const NamePrompt& b) { return a.id == b.id; }
};

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::NamePrompt)

// SPDX-License-Identifier: GPL-3.0-or-later
#include "NamePrompts.h"

#include <utility>

namespace lumbra {

QString NamePrompts::problemOf(const QString& name) {
    const QString trimmed = name.trimmed();
    if (trimmed.contains(u'/') || trimmed.contains(u':'))
        return QStringLiteral("Names can't contain / or :.");
    if (trimmed.startsWith(u'.'))
        return QStringLiteral("Names starting with a dot are hidden.");
    return {};
}

void NamePrompts::ask(const NamePrompt& prompt) {
    m_prompt = prompt;
    m_title = prompt.title;
    m_confirm = prompt.confirm;
    m_name = prompt.initial;
    Q_EMIT nameChanged();
    Q_EMIT promptChanged();
}

void NamePrompts::setName(const QString& name) {
    if (m_name == name)
        return;
    m_name = name;
    Q_EMIT nameChanged();
}

void NamePrompts::commit() {
    if (!m_prompt || !canCommit())
        return;
    const NamePrompt::Action action = std::exchange(m_prompt, std::nullopt)->action;
    Q_EMIT promptChanged();
    if (action)
        QMetaObject::invokeMethod(
            this, [action, name = m_name.trimmed()] { action(name); }, Qt::QueuedConnection);
}

void NamePrompts::dismiss() {
    if (!m_prompt)
        return;
    m_prompt.reset();
    Q_EMIT promptChanged();
}

} // namespace lumbra

// SPDX-License-Identifier: GPL-3.0-or-later
#include "Confirmations.h"

#include <utility>

namespace lumbra {

void Confirmations::ask(const Confirmation& question) {
    m_question = question;
    m_asking = true;
    Q_EMIT questionChanged();
}

void Confirmations::agree() {
    if (!end())
        return;
    // Taken out first: it may ask the next question.
    if (const auto action = std::exchange(m_question.action, nullptr))
        action();
}

void Confirmations::dismiss() {
    end();
}

bool Confirmations::end() {
    const bool wasAsking = std::exchange(m_asking, false);
    if (wasAsking)
        Q_EMIT questionChanged();
    return wasAsking;
}

} // namespace lumbra

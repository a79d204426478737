// What the core's operations throw: an error whose one field is its description, in words for the user.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

namespace lumbra {

class CoreError : public std::exception {
public:
    explicit CoreError(const QString& description) : message(description), m_what(description.toUtf8()) {}

    const char* what() const noexcept override { return m_what.constData(); }

    QString message;

private:
    QByteArray m_what;
};

} // namespace lumbra

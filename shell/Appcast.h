// The list of versions that a feed offers, and the newest of them.
//
// Pure functions over bytes from the network, which are hostile: nonsense is no version.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <QVersionNumber>

#include <optional>

namespace lumbra::Appcast {

struct Version {
    QVersionNumber number;
    QString notes; // what is new, as plain text
    QUrl page;     // where it can be had; HTTPS

    friend bool operator==(const Version&, const Version&) = default;
};

// Absent when the feed is none. A version without a number or a page does not count.
std::optional<Version> newest(const QByteArray& feed);

} // namespace lumbra::Appcast

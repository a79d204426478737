// What the info drawer tells of a file, as a list in its order: only what is known.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"

#include <QList>
#include <QMetaType>
#include <QSize>
#include <QString>

namespace lumbra {

struct InfoFact {
    Q_GADGET
    Q_PROPERTY(QString label MEMBER label)
    Q_PROPERTY(QString value MEMBER value)
    Q_PROPERTY(bool isPath MEMBER isPath)

public:
    QString label;
    QString value;
    bool isPath = false; // may be long, and its two ends count most

    friend bool operator==(const InfoFact&, const InfoFact&) = default;
};

namespace InfoFacts {

// What the player knows of the file that it has loaded.
struct Playback {
    QSize videoSize = {};
    double duration = 0; // seconds
    QString codec = {};
};

// `playback` is absent for a file that the player does not play: what it says then is of the file before. `pixels` is
// the size of a picture, empty while not known.
QList<InfoFact> of(const Asset& asset, const std::optional<Playback>& playback, const QSize& pixels);

} // namespace InfoFacts

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::InfoFact)

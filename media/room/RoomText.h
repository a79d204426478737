// What the screening room says of the file on show, and how it shows it. Pure; safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"

#include <QSize>
#include <QString>

#include <optional>

namespace lumbra {

// The player plays it: films and sounds, but for the containers that are left to the web stage.
bool usesEngine(const Asset& asset);

// "image", "video", "web", "audio" or "document".
QString stageOf(const Asset& asset);

// A web view shows it: a film in one of its containers, or a page.
bool usesWebView(const Asset& asset);

namespace RoomText {

// "Site / renders / day 2" for a file in that folder of that project; "Library" without one. `file` lies below the
// project as its path says.
QString breadcrumb(const std::optional<Project>& project, const Location& file);

struct Facts {
    QSize size;          // in pixels; empty while not known
    double duration = 0; // seconds; 0 while not known
    qint64 bytes = 0;
    Date modified = Date::distantPast(); // which is not known
    qsizetype index = -1;                // in the order, from 0; below 0 outside it
    qsizetype count = 0;
};

// "1920 × 1080 · 0:12 · 3.2 MB · saved 2 hours ago · 3 of 24", each part only when it is known.
QString meta(const Facts& facts, Date now);

// "1920 × 1080"; empty for an empty size.
QString dimensions(const QSize& size);

} // namespace RoomText

} // namespace lumbra

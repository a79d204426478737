// SPDX-License-Identifier: GPL-3.0-or-later
#include "Badges.h"

#include "library/Model.h"

#include <QTextBoundaryFinder>

namespace lumbra {

namespace {

const Hue::Row& row(int hue) {
    return Hue::all[hue >= 0 && hue < int(Hue::all.size()) ? size_t(hue) : 0];
}

QColor color(const Hue::Colour& colour) {
    return QColor::fromRgbF(colour.red, colour.green, colour.blue);
}

} // namespace

QColor Badges::background(int hue) {
    return color(row(hue).background);
}

QColor Badges::foreground(int hue) {
    return color(row(hue).foreground);
}

QString Badges::mark(const QString& name) {
    return monogram(name);
}

double Badges::letterShare(const QString& mark) {
    // Counted in characters as people see them: an emoji is several code units and one character.
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, mark);
    finder.toNextBoundary();
    return finder.position() < mark.size() ? 0.45 : 0.52;
}

} // namespace lumbra

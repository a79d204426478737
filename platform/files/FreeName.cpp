// SPDX-License-Identifier: GPL-3.0-or-later
#include "FreeName.h"

#include <QTextBoundaryFinder>

namespace lumbra::files {

namespace {

constexpr qsizetype longestName = 255; // bytes, on nearly every file system

// Cuts between characters as people perceive them: half an emoji of several code points would be another one.
QString shortened(const QString& base, qsizetype bytes) {
    QString text = base;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, base);
    finder.toEnd();
    while (!text.isEmpty() && text.toUtf8().size() > bytes)
        text.truncate(std::max<qsizetype>(finder.toPreviousBoundary(), 0));
    return text;
}

} // namespace

QString numbered(const QString& name, int counter) {
    const qsizetype dot = name.lastIndexOf(u'.');
    const bool hasExtension = dot > 0 && dot < name.size() - 1;
    const QString base = hasExtension ? name.left(dot) : name;
    const QString end = u' ' + QString::number(counter) + (hasExtension ? name.mid(dot) : QString());
    const QString kept = shortened(base, longestName - end.toUtf8().size());
    if (!kept.isEmpty())
        return kept + end;
    const QString count = u' ' + QString::number(counter);
    return shortened(name, longestName - count.size()) + count;
}

} // namespace lumbra::files

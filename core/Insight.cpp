// SPDX-License-Identifier: GPL-3.0-or-later
#include "Insight.h"

#include "platform/Date.h"

namespace lumbra {

Insight::Insight(const QString& file, qint64 bytes, double changed)
    : path(file), size(bytes), modified(changed), analyzed(Date::now().seconds) {}

QString Insight::nameOf(const QString& file) {
    QStringView rest = file;
    while (rest.size() > 1 && rest.endsWith(u'/'))
        rest.chop(1);
    // The root is called by its slash.
    return (rest == u"/" ? rest : rest.mid(rest.lastIndexOf(u'/') + 1)).toString();
}

} // namespace lumbra

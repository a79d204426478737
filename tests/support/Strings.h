// Lists of texts as tests state them.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include <initializer_list>

namespace lumbra {

inline QStringList strings(std::initializer_list<const char*> texts) {
    QStringList list;
    for (const char* text : texts)
        list.append(QString::fromUtf8(text));
    return list;
}

} // namespace lumbra

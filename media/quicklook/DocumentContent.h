// What is read of a document that is shown as text or as a table: everything that views need, made off the main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DocumentKind.h"
#include "DocumentRow.h"
#include "platform/FileFacts.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace lumbra {

struct DocumentContent {
    DocumentRows rows = {};
    QList<QStringList> cells = {}; // of a table
    QString notice = {};           // a line for the reader, such as that this is not all; empty if there is nothing

    bool isEmpty() const { return rows.isEmpty() && cells.isEmpty(); }

    // Bytes that are read of a file. The rest of it is not shown.
    static constexpr qint64 limit = 4 * 1024 * 1024;

    // Absent when the file can't be read. Of kinds that are not read as text there is nothing. Blocks for the disk.
    static std::optional<DocumentContent> read(const Location& file, DocumentKind kind);
};

} // namespace lumbra

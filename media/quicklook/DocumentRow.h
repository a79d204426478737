// One row of a document that is shown as text: a line, a paragraph, a heading, a piece of code. Rows are what a view
// makes items for, so none is longer than an item can lay out within a frame.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>

namespace lumbra {

struct DocumentRow {
    Q_GADGET

public:
    enum class Style : quint8 {
        body,
        line, // of a text whose columns matter
        title,
        heading,
        subheading,
        quote,
        code, // several lines on a bed of their own
        rule,
        picture,  // `picture`, with `text` for what it shows
        tableRow, // `cells`
        tableHead,
        cue, // of subtitles: `mark` is its time
    };
    Q_ENUM(Style)

    Style style = Style::body;
    QString text = {};     // rich: HTML of a few inline elements, all else escaped
    QString withTabs = {}; // the text before its tabs became blanks; may be empty if it had none
    bool isRich = false;   // the cells too
    int indent = 0;        // levels of lists and quotes around it
    QString mark = {};     // what stands before the text of an item: a bullet, a number, a box, a time
    bool isTight = false;  // belongs to the row before, with no space between
    QStringList cells = {};
    QList<int> alignments = {}; // of the cells, as Qt::AlignmentFlag
    Location picture = {};

    friend bool operator==(const DocumentRow&, const DocumentRow&) = default;
};

using DocumentRows = QList<DocumentRow>;

// Characters of one row at most.
inline constexpr qsizetype longestRow = 2000;

// Rows of one document at most; what follows is not shown.
inline constexpr qsizetype mostRows = 100'000;

} // namespace lumbra

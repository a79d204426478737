// A text as the upper part of a printed page: what the texts' makers put into lines is laid out and drawn here.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QList>
#include <QSize>
#include <QString>
#include <QStringList>

namespace lumbra::reader {

struct Paragraph {
    enum class Style { body, title, heading, item, quote, small, code, rule };

    QString text;
    Style style = Style::body;
};

using Paragraphs = QList<Paragraph>;

// White paper of three by four, in the box, with as many paragraphs as it holds. Null if none has a letter.
QImage textPage(const Paragraphs& paragraphs, QSize box);

// The same for a table, whose first row is its head.
QImage tablePage(const QList<QStringList>& rows, QSize box);

} // namespace lumbra::reader

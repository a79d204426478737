// What the user has marked of a text that is shown in rows, and its way to the clipboard.
//
// It goes when the rows that it touches change; a text that is written on keeps it. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DocumentText.h"
#include "RowWords.h"

#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class TextSelection : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(lumbra::DocumentText* text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
    Q_PROPERTY(int version READ version NOTIFY changed)

public:
    using QObject::QObject;

    DocumentText* text() const { return m_text; }
    void setText(DocumentText* text);

    bool isEmpty() const { return m_from == m_to; }

    // Rises whenever something else is marked.
    int version() const { return m_version; }

    // The button goes down at a spot: with the first click nothing is marked there, with the second the word, with the
    // third the row.
    Q_INVOKABLE void begin(int row, int at, int clicks = 1);

    // The pointer is there with the button still down: all from where it went down, by words or rows if it began so.
    Q_INVOKABLE void extend(int row, int at);

    Q_INVOKABLE void selectAll();
    Q_INVOKABLE void clear();

    // The characters of the row that are marked, from x to before y.
    Q_INVOKABLE QPointF rangeIn(int row) const;

    QString words() const;
    Q_INVOKABLE void copy() const;

Q_SIGNALS:
    void textChanged();
    void changed();

private:
    enum class Grain { character, word, row };

    void mark(TextSpot from, TextSpot to);
    std::pair<TextSpot, TextSpot> grainAt(TextSpot spot) const;

    QPointer<DocumentText> m_text;
    Grain m_grain = Grain::character;
    TextSpot m_firstFrom, m_firstTo; // what the first press marked
    TextSpot m_from, m_to;
    int m_version = 0;
};

} // namespace lumbra

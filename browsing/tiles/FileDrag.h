// A file on its way out of the window under the pointer, to another program or to a place of our own that takes files.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"

#include <QColor>
#include <QFont>
#include <QObject>
#include <QPixmap>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

#include <memory>

class QMimeData;

namespace lumbra {

class FileDrag : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    // The one file, as other programs take it.
    static std::unique_ptr<QMimeData> dataOf(const Location& url);

    // Of what the name is written with, and on.
    struct Style {
        QFont font;
        QColor text;
        QColor bed;
    };

    // What moves with the pointer: a card with the file's picture if there is one, and its name. `scale` is pixels a
    // point.
    static QPixmap pictureOf(const QString& name, const QImage& thumbnail, const Style& style, double scale);

    // Takes the file up from the item that the pointer pressed; `theme` is the one of the views. It begins with the
    // next turn of the event loop, and lasts until the button is released; the item may be gone by then.
    Q_INVOKABLE void start(const lumbra::Asset& asset, QQuickItem* from, QObject* theme);
};

} // namespace lumbra

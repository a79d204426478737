// How long a film or sound is, as its tile says it: asked for when the tile appears, taken back when it goes.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"
#include "media/MediaRequest.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class TileDuration : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(lumbra::Asset asset READ asset WRITE setAsset NOTIFY assetChanged)
    Q_PROPERTY(QString text READ text NOTIFY textChanged)

public:
    using QObject::QObject;

    // Of a film or a sound; another file's length is forgotten at once.
    Asset asset() const { return m_asset; }
    void setAsset(const Asset& asset);

    // "1:05"; empty until it is known, and where there is none.
    QString text() const { return m_text; }

Q_SIGNALS:
    void assetChanged();
    void textChanged();

private:
    void setText(const QString& text);

    Asset m_asset;
    QString m_text;
    MediaRequest m_request;
};

} // namespace lumbra

// How long a film or a sound is, for a label: read once it is wanted, and taken back with the label.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MediaRequest.h"
#include "library/Model.h"

#include <QObject>
#include <QQmlParserStatus>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class DurationText : public QObject, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT

    Q_PROPERTY(lumbra::Asset asset READ asset WRITE setAsset NOTIFY assetChanged)
    Q_PROPERTY(bool wanted READ isWanted WRITE setWanted NOTIFY wantedChanged)
    Q_PROPERTY(QString text READ text NOTIFY textChanged)

public:
    using QObject::QObject;

    Asset asset() const { return m_asset; }
    void setAsset(const Asset& asset);

    // Whether to read it now.
    bool isWanted() const { return m_isWanted; }
    void setWanted(bool wanted);

    // "1:05"; empty while not known, and for kinds that take no time.
    QString text() const { return m_text; }

Q_SIGNALS:
    void assetChanged();
    void wantedChanged();
    void textChanged();

private:
    void classBegin() override { m_isComplete = false; }
    void componentComplete() override;
    void load();
    void setText(const QString& text);

    Asset m_asset;
    bool m_isWanted = true;
    bool m_isComplete = true; // QML has not set everything yet
    QString m_text;
    MediaRequest m_request;
};

} // namespace lumbra

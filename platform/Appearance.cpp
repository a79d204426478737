// SPDX-License-Identifier: GPL-3.0-or-later
#include "Appearance.h"

#include "SessionBus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QMap>
#include <QVariant>

#include <gio/gio.h>

#include <memory>
#include <optional>

namespace lumbra {

namespace {

using Groups = QMap<QString, QVariantMap>;

constexpr QLatin1String portalService("org.freedesktop.portal.Desktop");
constexpr QLatin1String portalPath("/org/freedesktop/portal/desktop");
constexpr QLatin1String portalInterface("org.freedesktop.portal.Settings");

constexpr QLatin1String commonGroup("org.freedesktop.appearance");
constexpr QLatin1String gnomeGroup("org.gnome.desktop.interface");
constexpr QLatin1String gnomeAccessGroup("org.gnome.desktop.a11y.interface");
constexpr QLatin1String animationsKey("enable-animations");
constexpr QLatin1String contrastKey("high-contrast");

struct Release {
    void operator()(GSettings* settings) const { g_object_unref(settings); }
    void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
};

// Asked step by step, since GIO ends the program over a schema or a key that is not installed.
std::optional<bool> gnomeSetting(QLatin1String group, QLatin1String key) {
    GSettingsSchemaSource* const source = g_settings_schema_source_get_default();
    if (!source)
        return std::nullopt;
    const std::unique_ptr<GSettingsSchema, Release> schema(g_settings_schema_source_lookup(source, group.data(), TRUE));
    if (!schema || !g_settings_schema_has_key(schema.get(), key.data()))
        return std::nullopt;
    const std::unique_ptr<GSettings, Release> settings(g_settings_new_full(schema.get(), nullptr, nullptr));
    return g_settings_get_boolean(settings.get(), key.data()) != FALSE;
}

} // namespace

Appearance::Appearance(QObject* parent) : QObject(parent) {
    if (const auto animations = gnomeSetting(gnomeGroup, animationsKey))
        m_reducedMotion = !*animations;
    if (const auto contrast = gnomeSetting(gnomeAccessGroup, contrastKey))
        m_highContrast = *contrast;
    askPortal();
}

void Appearance::askPortal() {
    auto bus = sessionBus();
    if (!bus)
        return;
    bus->connect(portalService, portalPath, portalInterface, QLatin1String("SettingChanged"), this,
                 SLOT(portalChanged(QString, QString, QDBusVariant)));
    QDBusMessage message =
        QDBusMessage::createMethodCall(portalService, portalPath, portalInterface, QLatin1String("ReadAll"));
    message << QStringList{QString(commonGroup), QString(gnomeGroup), QString(gnomeAccessGroup)};
    auto* const watcher = new QDBusPendingCallWatcher(bus->asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusMessage reply = watcher->reply();
        if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1String("a{sa{sv}}"))
            return;
        const auto groups = qdbus_cast<Groups>(reply.arguments().constFirst());
        // What is common to all desktops has the last word.
        for (const QLatin1String group : {gnomeGroup, gnomeAccessGroup, commonGroup}) {
            const QVariantMap settings = groups.value(group);
            for (auto setting = settings.begin(); setting != settings.end(); ++setting)
                take(group, setting.key(), *setting);
        }
    });
}

void Appearance::portalChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    take(group, key, value.variant());
}

void Appearance::take(const QString& group, const QString& key, const QVariant& value) {
    if (group == commonGroup && key == u"reduced-motion")
        set(m_reducedMotion, value.toUInt() == 1);
    else if (group == commonGroup && key == u"contrast")
        set(m_highContrast, value.toUInt() == 1);
    else if (group == gnomeGroup && key == animationsKey)
        set(m_reducedMotion, !value.toBool());
    else if (group == gnomeAccessGroup && key == contrastKey)
        set(m_highContrast, value.toBool());
}

void Appearance::set(bool& field, bool value) {
    if (std::exchange(field, value) != value)
        Q_EMIT changed();
}

} // namespace lumbra

// SPDX-License-Identifier: GPL-3.0-or-later
#include "Durations.h"

#include "AssetKey.h"

#include <QPointer>

#include <cmath>

namespace lumbra {

Durations::Durations(Reader& reader, QObject* parent) : QObject(parent), m_reader(reader) {}

Durations& Durations::shared() {
    static auto* const one = new Durations(Reader::shared()); // static objects may outlive the application's
    return *one;
}

QString Durations::text(double seconds) {
    const qint64 whole = std::llround(seconds);
    const auto twoDigits = [](qint64 number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); };
    if (whole < 3600)
        return QStringLiteral("%1:%2").arg(whole / 60).arg(twoDigits(whole % 60));
    return QStringLiteral("%1:%2:%3").arg(whole / 3600).arg(twoDigits(whole / 60 % 60), twoDigits(whole % 60));
}

MediaRequest Durations::duration(const Asset& asset, QObject* context, Ready ready, Reader::Urgency urgency) {
    const QString key = assetKey(asset);
    if (const auto known = m_cache.constFind(key); known != m_cache.constEnd()) {
        ready(*known);
        return {};
    }
    const std::stop_source stop;
    m_reader.mediaFacts(asset.url, urgency, stop.get_token())
        .then(this, [this, key, receiver = QPointer<QObject>(context), ready = std::move(ready),
                     token = stop.get_token()](const std::optional<Reader::MediaFacts>& facts) {
            std::optional<QString> label;
            if (facts && facts->duration > 0) {
                m_exact.insert(key, facts->duration);
                label = *m_cache.insert(key, text(facts->duration));
            }
            if (receiver && !token.stop_requested())
                ready(label);
        });
    return MediaRequest(stop);
}

std::optional<double> Durations::seconds(const Asset& asset) const {
    const auto known = m_exact.constFind(assetKey(asset));
    return known == m_exact.constEnd() ? std::nullopt : std::optional(*known);
}

} // namespace lumbra

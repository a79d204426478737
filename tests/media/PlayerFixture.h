// A player in a home of its own, without a sound device, and what tests ask of it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "media/player/MpvLibrary.h"
#include "media/player/PlayerEngine.h"
#include "support/Clips.h"
#include "support/TestHome.h"

#include <QTest>

namespace lumbra {

struct Player {
    explicit Player(MpvHandle::Options options = {}) : engine(preferences, withoutSound(options)) {
        engine.setOnEnd([this] { ++ends; });
    }

    // Loads a clip and waits until it stands there with its facts known.
    void open(const Location& file) {
        engine.load(file, false);
        if (!QTest::qWaitFor([this] { return engine.duration() > 0 && stands(); }, patience))
            qFatal("%s does not load", file.path().constData());
    }
    void open(const char* clip) { open(Clips::clip(clip)); }

    // Nothing is under way, as the player itself sees it.
    bool stands() const { return value("seeking") == "no" && value("time-pos") != ""; }

    // Of mpv's own; empty while it starts.
    QByteArray value(const char* property) const {
        mpv_handle* const mpv = engine.mpv()->raw();
        if (!mpv)
            return {};
        char* const text = MpvLibrary::shared()->get_property_string(mpv, property);
        const QByteArray copied(text);
        MpvLibrary::shared()->free(text);
        return copied;
    }

    // Waits until the position has settled there; false if it does not.
    bool settlesAt(double seconds, double tolerance = 0.021) {
        return QTest::qWaitFor(
            [&] {
                return stands() && std::abs(value("time-pos").toDouble() - seconds) <= tolerance
                       && std::abs(engine.time() - seconds) <= tolerance;
            },
            patience);
    }

    static MpvHandle::Options withoutSound(MpvHandle::Options options) {
        options.prepend({"ao", "null"});
        return options;
    }

    TestHome home;
    Preferences preferences{home.path().child("settings.ini")};
    int ends = 0;
    PlayerEngine engine;
};

} // namespace lumbra

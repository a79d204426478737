// A library in a home of its own with real files, a screening room over it, and a clock that stands until it is told.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "media/room/ScreeningRoom.h"
#include "support/Clips.h"
#include "support/TestHome.h"

#include <QFile>
#include <QImage>
#include <QTest>

#include <memory>

namespace lumbra {

inline QString named(const char* name) {
    return QString::fromUtf8(name);
}

struct Room {
    Location path(const char* relative) const { return home.path().child("Library").child(std::string_view(relative)); }

    // Files of the library, made before it is opened or while it is.
    Location picture(const char* relative, const QColor& colour = Qt::red, const QSize& size = {64, 48}) const {
        const Location made = home.file("Library/" + std::string(relative));
        QImage image(size, QImage::Format_RGB32);
        image.fill(colour);
        if (!image.save(made.toString()))
            qFatal("cannot save %s", relative);
        return made;
    }
    Location clip(const char* relative, const char* which = "long.mp4") const {
        const Location made = home.file("Library/" + std::string(relative));
        QFile::remove(made.toString());
        if (!QFile::copy(Clips::clip(which).toString(), made.toString()))
            qFatal("cannot copy %s", which);
        return made;
    }
    Location text(const char* relative) const { return home.file("Library/" + std::string(relative), "words"); }

    void openLibrary() {
        home.folder("Library");
        library = std::make_unique<Library>(home.path().child("Library"), true);
        if (!QTest::qWaitFor([this] { return !library->indexing(); }, patience))
            qFatal("the library is not read");
    }

    Asset asset(const char* relative) const {
        const Location file = path(relative);
        Asset outside;
        outside.url = file;
        outside.kind = assetKindOf(file).value_or(AssetKind::document);
        return library ? library->index().find(file).value_or(outside) : outside;
    }

    static RoomOptions optionsFor(Room& room) {
        RoomOptions options;
        options.preferences = &room.preferences;
        options.player = {{"ao", "null"}};
        options.clock = [&room] { return room.now; };
        return options;
    }

    // What the user sees: this file of an order.
    void play(const char* relative, const QList<const char*>& order) {
        if (!library)
            openLibrary();
        Assets assets;
        for (const char* entry : order)
            assets.append(asset(entry));
        library->setPlaying(PlayRequest{asset(relative), assets});
    }
    ScreeningRoom& open(const char* relative, const QList<const char*>& order, QSize stage = {320, 200}) {
        play(relative, order);
        room = std::make_unique<ScreeningRoom>(library.get(), optionsFor(*this));
        room->setStagePixels(stage);
        return *room;
    }

    // The player stands at this time of the file on show, in no motion.
    void standAt(double seconds) const {
        PlayerEngine& engine = *room->engine();
        const bool isThere = QTest::qWaitFor([&] { return engine.duration() > 0; }, patience) && [&] {
            engine.pause();
            engine.seek(seconds, true);
            return QTest::qWaitFor([&] { return engine.isStanding(); }, patience);
        }();
        if (!isThere)
            qFatal("the player does not come to stand");
    }

    TestHome home;
    Preferences preferences{home.path().child("settings.ini")};
    Date now{1'000'000};
    std::unique_ptr<Library> library;
    std::unique_ptr<ScreeningRoom> room;
};

} // namespace lumbra

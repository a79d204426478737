// A screening room for tests of what floats in it: over a library in the program's one home, since the desktop's trash
// keeps to the home that it saw first, and without a sound device.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/OpenLibrary.h"
#include "media/room/ScreeningRoom.h"
#include "support/Clips.h"
#include "support/TestHome.h"

#include <memory>

namespace lumbra {

// Name the files, then open the room on one of them. The order is that in which they were named.
class OpenRoom {
public:
    explicit OpenRoom(const TestHome& home) : m_home(home), m_library(home) {}

    // In the project "site".
    Location file(const char* name, const QByteArray& bytes = "x") {
        m_files.append(m_library.file(std::string("site/") + name, bytes));
        return m_files.last();
    }

    // A copy of a clip, under its name.
    Location clip(const char* name) { return file(name, bytesOf(Clips::clip(name))); }

    void open(const Location& shown) {
        Assets order;
        for (const Location& made : std::as_const(m_files))
            order.append(assetAt(made));
        open(shown, order);
    }
    void open(const Location& shown, const Assets& order) {
        m_library.open();
        m_preferences = std::make_unique<Preferences>(m_library.root().parent().child("settings.ini"));
        m_library->setPlaying(PlayRequest{assetAt(shown), order});
        RoomOptions options;
        options.preferences = m_preferences.get();
        options.player = {{"ao", "null"}};
        m_room = std::make_unique<ScreeningRoom>(&*m_library, options);
    }

    // Waits until the player stands on the file on show with its facts known.
    void settle() {
        engine().pause();
        const auto stands = [this] { return engine().duration() > 0 && engine().isStanding(); };
        if (!QTest::qWaitFor(stands, patience))
            qFatal("%s does not load", qPrintable(m_room->name()));
        engine().seek(0, true);
        if (!QTest::qWaitFor(stands, patience))
            qFatal("%s does not stand", qPrintable(m_room->name()));
    }

    void closeRoom() { m_room.reset(); }

    const TestHome& home() const { return m_home; }
    Location folder(const char* name) const { return m_library.folder(name); }
    Library& library() { return *m_library; }
    ScreeningRoom& room() { return *m_room; }
    PlayerEngine& engine() { return *m_room->engine(); }

    // Empty once the room has closed.
    Location shown() const { return m_library->playing() ? m_library->playing()->asset.url : Location(); }

private:
    static Asset assetAt(const Location& file) {
        const std::optional<Asset> read = Asset::read(file);
        if (!read)
            qFatal("no asset at %s", file.path().constData());
        return *read;
    }

    const TestHome& m_home;
    OpenLibrary m_library;
    QList<Location> m_files;
    std::unique_ptr<Preferences> m_preferences;
    std::unique_ptr<ScreeningRoom> m_room;
};

} // namespace lumbra

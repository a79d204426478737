// What the tests of the browser share: a window without views over a library in a home of its own, and words for what
// it holds.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browsing/browser/Browser.h"
#include "core/Stars.h"
#include "support/TestHome.h"

#include <memory>

namespace lumbra {

// A library in a home of its own, and the browser over it.
struct Window {
    TestHome home;
    std::unique_ptr<Preferences> preferences;
    std::unique_ptr<Library> library;
    std::unique_ptr<Browser> browser;

    Location root() const { return home.path().child("Library"); }

    Location file(std::string_view relative, double age = 60) const {
        const Location made = home.file("Library/" + std::string(relative));
        TestHome::touch(made, Date::now().seconds - age);
        return made;
    }

    void open(const Place& place = Place::recent()) {
        home.folder("Library");
        library = std::make_unique<Library>(root(), true);
        library->setPlace(place);
        preferences = std::make_unique<Preferences>(home.path().child("settings.ini"));
        browser = std::make_unique<Browser>(library.get(), nullptr, *preferences);
        browser->appear();
    }

    Location folder(std::string_view relative) const { return root().child(relative); }
};

inline void star(const Location& file, double when) {
    ExtendedAttributes::write(file, Stars::attribute, QByteArray::number(when));
}

inline QStringList names(const Assets& assets) {
    QStringList names;
    for (const Asset& asset : assets)
        names << asset.url.name();
    names.sort();
    return names;
}

inline qsizetype totalOf(const Browser& browser) {
    qsizetype total = 0;
    for (const RecentSection& section : browser.sections())
        total += section.total;
    return total;
}

inline PageCell cellOf(const Location& url, bool onShelf = false) {
    PageCell cell;
    cell.kind = PageCell::Kind::asset;
    cell.url = url;
    cell.asset.url = url;
    cell.onShelf = onShelf;
    return cell;
}

} // namespace lumbra

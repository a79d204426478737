// A temporary home for one test: HOME and the XDG folders point into it, the product's variables are unset, and all is
// removed at the end. Make it before anything reads the environment, one for each test function or program.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QByteArray>
#include <QTemporaryDir>

#include <string_view>

namespace lumbra {

class TestHome {
public:
    TestHome();

    Location path() const;

    // Makes the folder `relative` below the home, with its parents.
    Location folder(std::string_view relative) const;

    // Writes a file below the home, making its folder; returns where it is.
    Location file(std::string_view relative, const QByteArray& bytes = "x") const;

    // Sets the modification time of anything.
    static void touch(const Location& location, double secondsSince1970);

private:
    QTemporaryDir m_dir;
};

} // namespace lumbra

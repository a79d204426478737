// The programs that the desktop knows to make small pictures of files, as other programs register them: `*.thumbnailer`
// files in the folders of shared data, the user's own first. The last resort for what no reader of ours reads.
//
// Where none is registered for a document of older formats, the words in it are written by a program that knows them.
//
// Such a program is run for a few seconds at most and with bounded means, and writes into a folder that is made for it
// alone and deleted at once. What it wrote is foreign too, so it is handed on as bytes, undecoded.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Location.h"

#include <QByteArray>

#include <functional>
#include <optional>
#include <vector>

namespace lumbra {

class Thumbnailers {
public:
    // Reads what is registered now, which takes a millisecond or two. A value for one thread.
    Thumbnailers();

    // True if some program is registered for the type that the file's name gives it. Cheap.
    bool knows(const Location& file) const { return commandFor(file) != nullptr; }

    // Lets `use` see the file that the program wrote, a picture or a text, at most `side` pixels in size as far as the
    // program obeys, and deletes it when that returns. Not called if there is no picture. Blocks for the program's
    // time.
    void make(const Location& file, int side, const std::function<void(const Location& picture)>& use) const;

private:
    struct Program {
        QByteArray command; // with %u, %i, %o and %s for the address, the path, the picture and its size
        std::vector<QByteArray> types;
    };

    const QByteArray* commandFor(const Location& file) const;
    static void write(const Location& file, const std::function<void(const Location& words)>& use);

    std::vector<Program> m_programs;
};

} // namespace lumbra

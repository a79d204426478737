// What ends the work on a transfer: a failure, or the user's wish; and failures as sentences for the user.
//
// Both are thrown inside this folder and caught where a transfer is looked after, since they come up from deep inside
// trees. None leaves `Files`.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Files.h"

#include <string>
#include <string_view>

namespace lumbra::files {

struct Cancelled {};

struct Failure {
    // For what the system refused: the reason follows from its error number.
    Failure(int code, std::string_view path);
    // For what is refused here.
    Failure(int code, std::string_view path, QString why);

    int code;
    std::string name; // as on disk
    QString reason;   // the end of a sentence, without a full stop
};

// "Couldn't copy clip.mp4: the disk is full." The verb is in the infinitive.
Files::Error sentence(const QString& verb, const Failure& failure);

// The last component of a path as people may read it: in one line, and without the bytes that are no text.
QString readable(std::string_view path);

// The end of a sentence, in English.
QString reasonOf(int code);

} // namespace lumbra::files

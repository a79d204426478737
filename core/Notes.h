// What an agent says about a file that it has made. The note rides on the file in an extended attribute, so it moves,
// copies and renames with its file and needs no database.
//
// Reading and writing keep no state, take no lock and are safe on any thread; of two writers racing on one file, one
// may lose what it added.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Date.h"
#include "platform/ExtendedAttributes.h"
#include "platform/Location.h"

#include <QString>

#include <optional>

namespace lumbra {

// Every field may be absent; an empty text is not absent.
struct AgentNote {
    std::optional<QString> prompt = {}; // that produced the file
    std::optional<QString> model = {};  // that generated it
    std::optional<QString> tool = {};   // that generated it
    std::optional<QString> task = {};   // what the file was made for
    std::optional<QString> agent = {};  // which one made it
    std::optional<QString> source = {}; // where it came from
    std::optional<QString> repo = {};
    std::optional<QString> commit = {};
    std::optional<Date> created = {};

    // True without any words of the first six fields: a repository, a commit and a date alone tell nothing.
    bool isEmpty() const;

    // The texts of the other note where it has them, even empty ones, else this note's; but this note's date before the
    // other's. So a later note adds and corrects, and never loses the first date.
    AgentNote mergedWith(const AgentNote& other) const;

    // One line: "Made by {agent} with {tool, else model} for {task}", as far as these are known.
    QString summary() const;

    friend bool operator==(const AgentNote&, const AgentNote&) = default;
};

namespace Notes {

inline constexpr AttributeName attribute{"com.lumbra.note"};

// Absent when there is no note, it can't be read, or it is not what `write` writes: one JSON object whose known keys
// hold texts, `created` an ISO 8601 moment.
std::optional<AgentNote> read(const Location& file);

// Merges the note into what the file has and stores the result. False on failure, such as a note that is longer than
// the file system takes; the older note is then still there. Fractions of a second are not kept.
bool write(const AgentNote& note, const Location& file);

} // namespace Notes

} // namespace lumbra

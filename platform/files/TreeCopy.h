// Copies a file, a link or a whole folder under another name with all that it carries: bytes, attributes, modes, times,
// names that are no text. Trees may be of any depth; no path is ever put together.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Attributes.h"
#include "ByteCopy.h"
#include "FolderCursor.h"
#include "Manifest.h"
#include "ProgressMeter.h"

namespace lumbra::files {

class TreeCopy {
public:
    explicit TreeCopy(ProgressMeter& meter) : m_meter(meter), m_bytes(meter) {}

    struct Result {
        Manifest manifest; // empty when it was not asked for
        bool hasAllAttributes = true;
    };

    enum class Record { no, manifest };

    // Makes `copy` in `targetFolder` from an entry of `sourceFolder`. Throws Failure, and Cancelled; what was made
    // until then is left to the caller.
    Result copy(int sourceFolder, const Entry& entry, int targetFolder, const char* copy, Record record);

private:
    struct Level {
        std::string name;
        struct stat facts; // before it was listed
        std::vector<Entry> entries;
        size_t next = 0;
    };

    enum class Attempt { done, changed, gone };

    void copyEntry(const Entry& entry, const std::string& copyName);
    void copyFile(const char* name, const char* copyName);
    void copyLink(const char* name, const char* copyName);
    Attempt copyFileOnce(const char* name, const char* copyName);
    void enterFolder(const std::string& name, const std::string& copyName);
    void leaveFolder();
    bool mayBeGone(int code) const;
    void copyFacts(int from, int to, const struct stat& facts, const char* name);
    void note(Copied::Kind kind, const char* name, const struct stat& facts);

    ProgressMeter& m_meter;
    ByteCopy m_bytes;
    AttributeCopy m_attributes;

    // Of the copy under way.
    FolderCursor m_source{AT_FDCWD};
    FolderCursor m_target{AT_FDCWD};
    std::vector<Level> m_levels;
    Stamp m_top; // the copy of the top folder
    Record m_record = Record::no;
    Result m_result;
};

} // namespace lumbra::files

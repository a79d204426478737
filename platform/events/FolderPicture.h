// What a folder without a watch looked like when it was last looked at, and what is different now.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <string>
#include <string_view>
#include <vector>

namespace lumbra::events {

class FolderPicture {
public:
    struct Difference {
        enum class Kind : quint8 { appeared, changed, vanished };

        std::string name;
        Kind kind;
        bool wasFolder; // false for what appeared
        bool isFolder;  // false for what vanished

        friend bool operator==(const Difference&, const Difference&) = default;
    };

    // Looks at every entry's type, size and times; empty for a folder that cannot be read.
    static FolderPicture take(const std::string& folder);

    // By name. A folder differs only when it was replaced by another; what happens inside is not its own affair.
    std::vector<Difference> differencesTo(const FolderPicture& now) const;

    std::vector<std::string> folders() const;

private:
    struct Entry {
        quint32 nameOffset;
        quint16 nameLength;
        bool isFolder;
        quint64 stamp; // of all that is compared, in one number: a large folder is held in little memory
    };

    std::string_view nameOf(const Entry& entry) const {
        return std::string_view(m_names).substr(entry.nameOffset, entry.nameLength);
    }

    std::string m_names;
    std::vector<Entry> m_entries; // by name
};

} // namespace lumbra::events

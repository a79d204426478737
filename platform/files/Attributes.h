// Carries the attributes that users and programs have set from one file or folder to another.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace lumbra::files {

class AttributeCopy {
public:
    AttributeCopy();

    enum class Result {
        all,
        some, // the target's file system holds no attributes, or not as long ones
    };

    // Every `user.` attribute, its value byte for byte. Throws Failure, with the name for people, when the source can't
    // be read or the target's disk is full.
    Result copy(int from, int to, const char* name);

private:
    std::vector<char> m_names;
    std::vector<char> m_value;
};

} // namespace lumbra::files

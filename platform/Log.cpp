// SPDX-License-Identifier: GPL-3.0-or-later
#include "Log.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace lumbra::Log {

bool isOn() {
    static const bool on = std::getenv("LUMBRA_HANGLOG") != nullptr;
    return on;
}

void line(const char* format, ...) {
    if (!isOn())
        return;
    char text[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    // One write, so that lines of several threads do not mingle.
    const std::string whole = std::string(text) + '\n';
    std::fwrite(whole.data(), 1, whole.size(), stderr);
}

} // namespace lumbra::Log

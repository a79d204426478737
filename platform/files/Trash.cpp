// SPDX-License-Identifier: GPL-3.0-or-later
#include "Trash.h"

#include <gio/gio.h>

#include <cerrno>
#include <memory>

namespace lumbra::files {

namespace {

struct Release {
    void operator()(GFile* file) const { g_object_unref(file); }
    void operator()(GError* error) const { g_error_free(error); }
};

// GIO's own messages speak the language of the locale.
Failure failure(const GError& error, const Location& location) {
    const std::string_view name = location.lastComponent();
    if (error.domain == G_IO_ERROR) {
        switch (error.code) {
        case G_IO_ERROR_NOT_FOUND:
            return {ENOENT, name};
        case G_IO_ERROR_PERMISSION_DENIED:
            return {EACCES, name};
        case G_IO_ERROR_READ_ONLY:
            return {EROFS, name};
        case G_IO_ERROR_NO_SPACE:
            return {ENOSPC, name};
        case G_IO_ERROR_FILENAME_TOO_LONG:
            return {ENAMETOOLONG, name};
        case G_IO_ERROR_NOT_SUPPORTED:
            return {EOPNOTSUPP, name, QStringLiteral("its disk has no Trash")};
        default:
            break;
        }
    }
    return {EIO, name, QStringLiteral("the Trash doesn't take it")};
}

} // namespace

std::optional<Failure> moveToTrash(const Location& location) {
    const std::unique_ptr<GFile, Release> file(g_file_new_for_path(location.path().constData()));
    GError* error = nullptr;
    if (g_file_trash(file.get(), nullptr, &error))
        return std::nullopt;
    const std::unique_ptr<GError, Release> owned(error);
    return failure(*owned, location);
}

} // namespace lumbra::files

// The functions of libmpv, found when a player is first wanted.
//
// libmpv brings some two hundred libraries along. Linked, they would be loaded at every launch, which would take half
// as long again, for films that most launches never show.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <mpv/client.h>
#include <mpv/render_gl.h>
#include <mpv/stream_cb.h>

#include <memory>

namespace lumbra {

// Those that are used, without the mpv_ of their names.
#define LUMBRA_MPV_FUNCTIONS(entry)                                                                                    \
    entry(create) entry(initialize) entry(destroy) entry(terminate_destroy) entry(set_option_string)                   \
        entry(set_wakeup_callback) entry(wait_event) entry(command_async) entry(set_property_async)                    \
            entry(get_property_async) entry(get_property_string) entry(free) entry(observe_property)                   \
                entry(stream_cb_add_ro) entry(render_context_create) entry(render_context_set_update_callback)         \
                    entry(render_context_update) entry(render_context_render) entry(render_context_free)

struct MpvLibrary {
#define LUMBRA_MPV_FUNCTION(name) decltype(&mpv_##name) name = nullptr; // NOLINT(bugprone-macro-parentheses): a name
    LUMBRA_MPV_FUNCTIONS(LUMBRA_MPV_FUNCTION)
#undef LUMBRA_MPV_FUNCTION

    // Loads the library once in the life of the process, which takes some 100 ms; null where it is not installed. Safe
    // on any thread, and best called on none that draws.
    static const MpvLibrary* shared();

    // Loads a library of that name; null if there is none or it lacks one of the functions. It stays loaded.
    static std::unique_ptr<const MpvLibrary> load(const char* name);
};

} // namespace lumbra

// Something that a view has asked for and that is still under way; takes the request back when it goes.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stop_token>
#include <utility>

namespace lumbra {

class MediaRequest {
public:
    MediaRequest() = default;
    explicit MediaRequest(std::stop_source stop) : m_stop(std::move(stop)) {}
    ~MediaRequest() { m_stop.request_stop(); }
    MediaRequest(MediaRequest&& other) noexcept { std::swap(m_stop, other.m_stop); }
    MediaRequest& operator=(MediaRequest&& other) noexcept {
        MediaRequest taken(std::move(other));
        std::swap(m_stop, taken.m_stop);
        return *this;
    }

private:
    std::stop_source m_stop{std::nostopstate};
};

} // namespace lumbra

// What waits for a reader: the most urgent first, and among equals what came last, since that is what scrolled in last.
// A plain value; its owner guards it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Protocol.h"

#include <array>
#include <functional>
#include <optional>
#include <vector>

namespace lumbra::reader {

// What a reader found: the few facts, and the arena's share.
struct Found {
    QByteArray details = {};
    QByteArray bulk = {};
};

struct Job {
    Request request;
    size_t level = 0; // how urgent it is; 0 comes first

    // All are called on the pool's thread. `makesSense` is false for what no reader in its right mind answers to this
    // request; it only looks. `deliver` is called at most once, and with nothing when the file reads as nothing; a
    // cancelled job may be dropped without it.
    std::function<bool()> isCancelled;
    std::function<bool(const Found&)> makesSense;
    std::function<void(std::optional<Found>)> deliver;
};

class Queue {
public:
    static constexpr size_t levels = 3;

    void push(Job job) { m_levels[job.level].push_back(std::move(job)); }

    // The next job that somebody still waits for.
    std::optional<Job> pop() {
        for (std::vector<Job>& level : m_levels) {
            while (!level.empty()) {
                Job job = std::move(level.back());
                level.pop_back();
                if (!job.isCancelled())
                    return job;
            }
        }
        return std::nullopt;
    }

    // Lets go of what was cancelled deeper down, so that a long scroll does not pile up.
    void prune() {
        for (std::vector<Job>& level : m_levels)
            std::erase_if(level, [](const Job& job) { return job.isCancelled(); });
    }

    size_t size() const {
        size_t sum = 0;
        for (const std::vector<Job>& level : m_levels)
            sum += level.size();
        return sum;
    }

private:
    std::array<std::vector<Job>, levels> m_levels;
};

} // namespace lumbra::reader

// The memory that the application and one reader share: two arenas, which the answers take in turns, so that one can be
// copied while the next is made, and the words to stop.
//
// Both sides see the same words; what a reader gone wild writes there deceives nobody but itself.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Protocol.h"

#include <atomic>
#include <span>

namespace lumbra::reader {

class SharedBlock {
public:
    // Bytes, which the block has whatever is in it: pages cost nothing until they are touched.
    static constexpr qsizetype size = 2 * arenaSize + 4096;

    // Null for memory that is not there.
    explicit SharedBlock(uchar* memory = nullptr) : m_memory(memory) {}

    uchar* memory() const { return m_memory; }

    // Where in the block the answer to the request of this number lies.
    static qsizetype placeOf(quint32 number) { return number % 2 * arenaSize; }

    std::span<uchar> arenaOf(quint32 number) const { return {m_memory + placeOf(number), size_t(arenaSize)}; }

    // Nobody waits for the answer to this request any more. Of three in a row, the first is over.
    void stop(quint32 number) const { word(number).store(number, std::memory_order_relaxed); }

    bool isStopped(quint32 number) const { return word(number).load(std::memory_order_relaxed) == number; }

private:
    using Word = std::atomic<quint32>;
    static_assert(Word::is_always_lock_free && sizeof(Word) == sizeof(quint32));

    Word& word(quint32 number) const { return reinterpret_cast<Word*>(m_memory + 2 * arenaSize)[number % 2]; }

    uchar* m_memory;
};

} // namespace lumbra::reader

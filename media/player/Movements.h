// What moves the position of a player, one thing at a time.
//
// A player that is asked to move while it moves either drops one of the two or works off both; here the latest seek
// wins, and steps back, which would run into one, are counted and made one after the other. While something is under
// way the player's own reports of its position are of the past. A plain value that knows no player.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayList>

#include <optional>
#include <utility>

namespace lumbra {

class Movements {
public:
    // To a position in seconds: there exactly, or to the nearest picture that is cheap to show. What was asked for
    // before and has not begun is void.
    void seek(double seconds, bool exact) {
        m_seek = Seek{seconds, exact};
        m_steps = 0;
    }

    // By pictures, backward if negative.
    void step(int count) { m_steps += count; }

    // Something else is under way that ends with an arrival: a file is being loaded. Forgets what is waiting.
    void begin() {
        reset();
        m_isUnderWay = true;
    }

    // The player stands where it was to go, or will not get there.
    void arrived() { m_isUnderWay = false; }

    // Forgets what is waiting.
    void reset() { *this = Movements(); }

    bool isUnderWay() const { return m_isUnderWay; }

    // The command to send now, if any; to be asked until there is none.
    std::optional<QByteArrayList> next() {
        if (m_isUnderWay)
            return {};
        if (const auto seek = std::exchange(m_seek, {})) {
            m_isUnderWay = true;
            return QByteArrayList{"seek", QByteArray::number(seek->seconds, 'f', 6),
                                  seek->exact ? "absolute+exact" : "absolute+keyframes"};
        }
        if (m_steps < 0) {
            ++m_steps;
            m_isUnderWay = true;
            return QByteArrayList{"frame-back-step"};
        }
        if (m_steps > 0) { // these the player counts itself, and does not report as arrived
            --m_steps;
            return QByteArrayList{"frame-step"};
        }
        return {};
    }

private:
    struct Seek {
        double seconds;
        bool exact;
    };

    std::optional<Seek> m_seek;
    int m_steps = 0;
    bool m_isUnderWay = false;
};

} // namespace lumbra

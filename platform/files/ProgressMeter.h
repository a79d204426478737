// Counts what is carried, tells it now and then, and is where work under way learns that it is not wanted any more.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Files.h"

#include <chrono>
#include <functional>
#include <stop_token>
#include <string>

namespace lumbra::files {

class ProgressMeter {
public:
    using Report = std::function<void(const Files::Progress&)>;

    ProgressMeter(std::stop_token stop, const Report& report) : m_stop(std::move(stop)), m_report(report) {}

    bool isStopped() const { return m_stop.stop_requested(); }

    // Throws Cancelled.
    void stopIfAsked() const;

    void expect(qint64 files, qint64 bytes);

    // A file is under way, its name as on disk. Throws Cancelled.
    void begin(const char* name);
    // Throws Cancelled.
    void carried(qint64 bytes);
    // The bytes of the file under way count anew.
    void beginAgain();
    void finish();

    void reportEnd();

private:
    void reportIfDue();
    void report();

    std::stop_token m_stop;
    const Report& m_report;
    Files::Progress m_progress;
    qint64 m_bytesOfFile = 0;
    std::string m_name;
    std::chrono::steady_clock::time_point m_due;
};

} // namespace lumbra::files

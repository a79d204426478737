// SPDX-License-Identifier: GPL-3.0-or-later
#include "ProgressMeter.h"

#include "Failure.h"

namespace lumbra::files {

using namespace std::chrono_literals;

namespace {

constexpr auto pause = 50ms;

} // namespace

void ProgressMeter::stopIfAsked() const {
    if (isStopped())
        throw Cancelled();
}

void ProgressMeter::expect(qint64 files, qint64 bytes) {
    m_progress.fileCount += files;
    m_progress.byteCount += bytes;
}

void ProgressMeter::begin(const char* name) {
    m_name = name;
    m_bytesOfFile = 0;
    reportIfDue();
    stopIfAsked();
}

void ProgressMeter::carried(qint64 bytes) {
    m_progress.bytes += bytes;
    m_bytesOfFile += bytes;
    reportIfDue();
    stopIfAsked();
}

void ProgressMeter::beginAgain() {
    m_progress.bytes -= m_bytesOfFile;
    m_bytesOfFile = 0;
}

void ProgressMeter::finish() {
    ++m_progress.files;
}

void ProgressMeter::reportEnd() {
    report();
}

void ProgressMeter::reportIfDue() {
    const auto now = std::chrono::steady_clock::now();
    if (now < m_due)
        return;
    m_due = now + pause;
    report();
}

void ProgressMeter::report() {
    if (!m_report)
        return;
    m_progress.name = readable(m_name);
    m_report(m_progress);
}

} // namespace lumbra::files

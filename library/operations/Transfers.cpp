// SPDX-License-Identifier: GPL-3.0-or-later
#include "Transfers.h"

#include "platform/Tasks.h"

#include <QPointer>

namespace lumbra {

namespace {

// Remembers hidden copies under way, for whoever starts after a crash.
Location journal() {
    const QByteArray given = qgetenv("XDG_STATE_HOME");
    const Location state = given.startsWith('/') ? Location(given) : Location::home().child(".local").child("state");
    return state.child("lumbra").child("transfers");
}

void add(Files::Progress& all, const Files::Progress& one) {
    all.files += one.files;
    all.fileCount += one.fileCount;
    all.bytes += one.bytes;
    all.byteCount += one.byteCount;
}

} // namespace

Transfers::Transfers(QObject* parent) : QObject(parent) {
    Tasks::run(Tasks::Pool::lasting, [journal = journal()] { Files::cleanLeftovers(journal); });
}

Transfers::~Transfers() {
    for (auto& [number, job] : m_jobs)
        job.stop.request_stop();
}

void Transfers::start(const QList<Files::Transfer>& transfers, Done done) {
    const int number = ++m_lastJob;
    Job& job = m_jobs[number];
    job.transfers = transfers;
    job.progress.fileCount = transfers.size(); // until they are counted
    m_name = transfers.first().source.name();
    Q_EMIT progressChanged();

    const auto tell = [number, receiver = QPointer(this)](const Files::Progress& progress) {
        Tasks::postToMain([number, receiver, progress] {
            if (receiver)
                receiver->report(number, progress);
        });
    };
    Tasks::run(Tasks::Pool::lasting, [transfers, tell, journal = journal(), stop = job.stop.get_token()] {
        return Files::carryOut(transfers, journal, stop, tell);
    }).then(this, [this, number, done = std::move(done)](const QList<Files::Arrival>& arrivals) {
        end(number, arrivals, done);
    });
}

void Transfers::cancel() {
    for (auto& [number, job] : m_jobs)
        job.stop.request_stop();
}

std::optional<Files::Progress> Transfers::progress() const {
    if (m_jobs.empty())
        return std::nullopt;
    Files::Progress all = m_ended;
    for (const auto& [number, job] : m_jobs)
        add(all, job.progress);
    all.name = m_name;
    return all;
}

void Transfers::report(int job, const Files::Progress& progress) {
    const auto found = m_jobs.find(job);
    if (found == m_jobs.end())
        return;
    found->second.progress = progress;
    m_name = progress.name;
    Q_EMIT progressChanged();
}

void Transfers::end(int job, const QList<Files::Arrival>& arrivals, const Done& done) {
    const auto found = m_jobs.find(job);
    for (const Files::Transfer& transfer : std::as_const(found->second.transfers))
        if (transfer.ifTaken == Files::Transfer::IfTaken::nextFreeName)
            m_promised.remove(transfer.target);
    add(m_ended, found->second.progress);
    m_jobs.erase(found);
    if (m_jobs.empty())
        m_ended = {};
    Q_EMIT progressChanged();
    done(arrivals);
}

} // namespace lumbra

// The copies and moves that carry bytes: each goes on in the background beside the others, and all of them sum up to
// one progress. Ends with the object: what has not arrived then is taken back.
//
// Main thread only.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Files.h"

#include <QObject>
#include <QSet>

#include <functional>
#include <map>
#include <stop_token>

namespace lumbra {

class Transfers : public QObject {
    Q_OBJECT

public:
    using Done = std::function<void(const QList<Files::Arrival>&)>;

    // Removes in the background what earlier processes have left half-copied.
    explicit Transfers(QObject* parent = nullptr);
    ~Transfers() override;

    // Begins to carry them out, in order. `done` is called later, once, also after `cancel`.
    void start(const QList<Files::Transfer>& transfers, Done done);

    // Ends all that are under way. What has arrived stays.
    void cancel();

    // Keeps a name that a transfer is about to get: nothing stands there yet, but something will. Holds until a
    // transfer to this target ends.
    void promise(const Location& target) { m_promised.insert(target); }
    bool isPromised(const Location& target) const { return m_promised.contains(target); }

    // Of all since there was last nothing under way; absent while there is nothing.
    std::optional<Files::Progress> progress() const;

Q_SIGNALS:
    void progressChanged();

private:
    struct Job {
        QList<Files::Transfer> transfers;
        std::stop_source stop;
        Files::Progress progress;
    };

    void report(int job, const Files::Progress& progress);
    void end(int job, const QList<Files::Arrival>& arrivals, const Done& done);

    std::map<int, Job> m_jobs; // by number, under way
    int m_lastJob = 0;
    Files::Progress m_ended; // counts of those that have ended beside others
    QString m_name;          // reported last
    QSet<Location> m_promised;
};

} // namespace lumbra

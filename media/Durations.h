// How long films and sounds are, for the labels on tiles: read from the files on demand, and kept in memory.
//
// Main thread. What could not be read is not remembered: the next request tries again.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MediaRequest.h"
#include "library/Model.h"
#include "platform/Reader.h"

#include <QHash>
#include <QObject>

#include <functional>
#include <optional>

namespace lumbra {

class Durations : public QObject {
    Q_OBJECT

public:
    using Ready = std::function<void(const std::optional<QString>&)>;

    explicit Durations(Reader& reader, QObject* parent = nullptr);

    // The process-wide one, over Reader::shared().
    static Durations& shared();

    // The label for so many seconds: rounded to whole ones, "1:00" or "1:00:00".
    static QString text(double seconds);

    // Hands the file's label to `ready`, at once if it is known, unless the request or the context has gone by then;
    // nothing for a file that does not tell how long it is.
    [[nodiscard]] MediaRequest duration(const Asset& asset, QObject* context, Ready ready,
                                        Reader::Urgency urgency = Reader::Urgency::soon);

    // The file's length, not rounded, as far as `duration` has found it.
    std::optional<double> seconds(const Asset& asset) const;

private:
    Reader& m_reader;
    QHash<QString, QString> m_cache; // labels
    QHash<QString, double> m_exact;  // seconds
};

} // namespace lumbra

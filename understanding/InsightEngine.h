// The understanding of files, of which there is one in the process. It owns the one insight store, through which the
// views ask what is known.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/InsightStore.h"
#include "library/Library.h"

#include <QBindable>
#include <QObject>

#include <memory>
#include <optional>

namespace lumbra {

class InsightEngine : public QObject {
    Q_OBJECT

public:
    // Begins to open the library's store and returns at once; as long as the user has not chosen a library, there is
    // nothing to open, and nothing is made on disk. The library must outlive it.
    explicit InsightEngine(Library* library, QObject* parent = nullptr);

    // Absent until it is open, and for good when it can't be opened: nothing is known then, and nothing is found by its
    // content. Safe to use on any thread; ask off the main one.
    std::shared_ptr<InsightStore> store() const { return m_store; }

    // The user's switch, kept over launches.
    bool enabled() const { return m_enabled; }
    void setEnabled(bool enabled);

    // Files finished since the launch, and those together with what is still planned.
    int done() const { return m_done; }
    int planned() const { return m_planned; }

    // The name of the file that is being read, and why nothing is at the moment; absent where there is no such.
    std::optional<QString> current() const { return m_current; }
    std::optional<QString> paused() const { return m_paused; }

    // What can be expected of a language model, in a sentence.
    QString aiStatus() const;

Q_SIGNALS:
    void storeOpened();
    void enabledChanged();
    void doneChanged();
    void plannedChanged();
    void currentChanged();
    void pausedChanged();

private:
    void openStore();

    Q_OBJECT_BINDABLE_PROPERTY(InsightEngine, bool, m_enabled, &InsightEngine::enabledChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(InsightEngine, int, m_done, 0, &InsightEngine::doneChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(InsightEngine, int, m_planned, 0, &InsightEngine::plannedChanged)
    Q_OBJECT_BINDABLE_PROPERTY(InsightEngine, std::optional<QString>, m_current, &InsightEngine::currentChanged)
    Q_OBJECT_BINDABLE_PROPERTY(InsightEngine, std::optional<QString>, m_paused, &InsightEngine::pausedChanged)

    Library* const m_library;
    std::shared_ptr<InsightStore> m_store;
    bool m_opening = false;
};

} // namespace lumbra

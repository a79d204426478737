// The keyboard's way to anything: a field over the window, and below it the projects, folders, files and actions that
// answer what is typed.
//
// It is open while the library's `paletteOpen` is true, and starts anew each time. Names are searched at once, at each
// change of the query; what the insight store finds, and what it calls a file, comes a moment later from the background
// and is shown only if the query still stands. The files' names are prepared in the background when the palette opens
// and whenever the index changes, and let go when it closes; a query that comes before they are ready gets its files as
// soon as they are. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PaletteCatalog.h"
#include "PaletteQuery.h"
#include "PaletteRows.h"
#include "PaletteSearch.h"
#include "library/Library.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>

namespace lumbra {

class Palette : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes its one.")

    Q_PROPERTY(bool shown READ shown NOTIFY shownChanged)
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(int highlighted READ highlighted NOTIFY highlightedChanged)
    Q_PROPERTY(lumbra::PaletteRows* results READ results CONSTANT)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY emptyTextChanged)

public:
    // What is known of files beyond their names; called off the main thread, several at a time.
    struct Insights {
        std::function<QStringList(const QString& query, int limit)> search; // paths, best first
        std::function<QString(const Asset& asset)> title;                   // empty for none
    };

    // The library must outlive it.
    explicit Palette(Library* library, QObject* parent = nullptr);
    ~Palette() override;

    // From when there is a store to ask.
    void setInsights(Insights insights) { m_insights = std::move(insights); }

    bool shown() const { return m_library->paletteOpen(); }

    QString query() const { return m_typed; }
    void setQuery(const QString& typed);

    // The row that the keys act on.
    int highlighted() const { return m_highlighted; }

    PaletteRows* results() { return &m_rows; }

    // What stands in place of rows; empty while there are some, or some may still come.
    QString emptyText() const { return m_emptyText; }

    // A key pressed in the field. False for one that is the field's own.
    Q_INVOKABLE bool press(int key, Qt::KeyboardModifiers modifiers);

    // Closes the palette and goes where the highlighted row leads; with `play` a file opens in the screening room.
    // Nothing if there is no such row.
    Q_INVOKABLE void open(bool play);
    Q_INVOKABLE void openRow(int row);

    Q_INVOKABLE void close() { m_library->setPaletteOpen(false); }

Q_SIGNALS:
    void shownChanged();
    void queryChanged();
    void highlightedChanged();
    void emptyTextChanged();
    void arrived(); // on a page, for which the keys are now

private:
    struct Answer {
        Assets found; // by their content
        QHash<Location, QString> titles;
    };

    void follow();
    void search();
    void searchNames();
    void askInsights();
    void take(const Answer& answer);
    void prepare();
    void takeCatalog(const std::shared_ptr<const PaletteCatalog>& catalog);
    void dropCatalog();
    void show();
    void keepHighlight(const std::optional<PaletteResult>& before);
    void setHighlighted(int row);
    const PaletteSearch::Facts& facts();
    PaletteResult rowOf(const Asset& asset) const;
    void play(const Asset& asset);

    Library* const m_library;
    Insights m_insights;
    PaletteRows m_rows;
    QString m_typed;
    QString m_emptyText;
    int m_highlighted = 0;

    // Of the present query.
    PaletteQuery m_query;
    QList<PaletteResult> m_folders;
    Assets m_named;
    Answer m_answer;
    bool m_isAnswered = false;
    quint64 m_searches = 0; // how many there were: what was asked for an earlier one is dropped
    bool m_isAsking = false;

    std::optional<PaletteSearch::Facts> m_facts; // absent when something of them has changed
    std::shared_ptr<const PaletteCatalog> m_catalog;
    int m_turns = 0; // of opening and closing: what was prepared for an earlier one may show what is hidden by now
    bool m_isPreparing = false;
    bool m_isOutdated = false; // something of what is being prepared has changed
};

} // namespace lumbra

// What the user chooses in a panel: files and folders to open, one folder, or a name to save under. It decides what
// each key and click does and when there is something to choose; the panel only shows it.
//
// Main thread; the disk is asked in the background.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FolderListing.h"

#include <QFutureWatcher>
#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <set>

namespace lumbra {

class PathChoice : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(Kind kind READ kind WRITE setKind NOTIFY kindChanged)
    Q_PROPERTY(lumbra::FolderListing* listing READ listing CONSTANT)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged) // to save under; may be a path
    Q_PROPERTY(int currentRow READ currentRow NOTIFY selectionChanged)  // where the keys are; -1 for nowhere
    Q_PROPERTY(QList<int> selectedRows READ selectedRows NOTIFY selectionChanged)
    Q_PROPERTY(bool choosable READ choosable NOTIFY changed)
    Q_PROPERTY(bool canMakeFolder READ canMakeFolder NOTIFY changed)
    Q_PROPERTY(QString summary READ summary NOTIFY changed) // what would be chosen, or where it would be saved
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged)

    // Where people keep things, each with `text`, `path` and `symbol`; those that exist.
    Q_PROPERTY(QVariantList places READ places CONSTANT)

public:
    enum Kind { Open, Save, Folder };
    Q_ENUM(Kind)

    explicit PathChoice(QObject* parent = nullptr);

    Kind kind() const { return m_kind; }
    void setKind(Kind kind);
    FolderListing* listing() { return &m_listing; }
    QString name() const { return m_name; }
    void setName(const QString& name);
    int currentRow() const { return m_currentRow; }
    QList<int> selectedRows() const { return QList<int>(m_selected.begin(), m_selected.end()); }
    bool choosable() const;
    bool canMakeFolder() const { return m_listing.isThere(); }
    QString summary() const;
    QString problem() const { return m_problem; }
    static QVariantList places();

    // Begins anew in a folder, with a name to save under.
    Q_INVOKABLE void start(const QString& folder, const QString& name = {});

    // Lets go of whatever is under way: nothing is chosen any more until the next start.
    Q_INVOKABLE void stop();

    Q_INVOKABLE void go(const QString& path) { m_listing.setPath(path); }

    // To a folder that is not typed but pointed at.
    Q_INVOKABLE void visit(const QString& folder);
    Q_INVOKABLE void goUp();

    // Completes what is typed; false when there is nothing to complete.
    Q_INVOKABLE bool complete();

    // While a folder is read, the rows are still those of the one before: no click and no key means them then.

    // A click on a row, with Qt::KeyboardModifiers: selects it alone, with Ctrl as well or no longer, with Shift all up
    // to it. To save, it takes the name of a file over.
    Q_INVOKABLE void press(int row, int modifiers = Qt::NoModifier);

    // An arrow key; with Shift it selects what it passes.
    Q_INVOKABLE void move(int by, int modifiers = Qt::NoModifier);

    Q_INVOKABLE void selectAll();

    // A double click or Return: goes into a folder, chooses a file.
    Q_INVOKABLE void activate(int row);

    // Makes a folder in the one that is listed and goes there, or says why it can't.
    Q_INVOKABLE void makeFolder(const QString& name);

    // Answers with `chosen`, or with `replaceAsked`, or says what is in the way.
    Q_INVOKABLE void choose();

    // The user wants what is there replaced.
    Q_INVOKABLE void replace();

    // How much of a name is selected at first: all but its extension.
    Q_INVOKABLE static int stemLength(const QString& name);

Q_SIGNALS:
    void kindChanged();
    void nameChanged();
    void selectionChanged();
    void changed();
    void problemChanged();
    void folderMade();
    void chosen(const QStringList& paths); // absolute
    void replaceAsked(const QString& name, bool isFolder);

private:
    // What work in the background has found: a problem in words, or what to do next.
    struct Outcome {
        QString problem = {};
        std::function<void()> next = {};
    };

    QStringList targets() const;
    QString saveTarget() const;
    QString pathOf(int row) const;
    void follow();
    bool isRow(int row) const;
    void select(int row, Qt::KeyboardModifiers held);
    void setProblem(const QString& problem);
    void inBackground(std::function<Outcome()> work);

    Kind m_kind = Open;
    FolderListing m_listing;
    QFutureWatcher<Outcome> m_work;
    QString m_name;
    QString m_problem;
    QString m_toReplace;
    std::set<int> m_selected;
    int m_currentRow = -1;
    int m_anchor = -1; // where a range begins
    bool m_choosesWhenRead = false;
};

} // namespace lumbra

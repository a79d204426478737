// The path of the page: the steps to the place, and behind the last of them its sibling folders.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PathSteps.h"
#include "library/Library.h"

#include <QObject>
#include <QUrl>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class PathBar : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The browser holds the path of its page.")
    Q_PROPERTY(QVariantList steps READ stepList NOTIFY stepsChanged)

public:
    // The library must outlive it.
    explicit PathBar(Library* library, QObject* parent = nullptr);

    const QList<PathStep>& steps() const { return m_steps; }

    // Folders beside the place's, itself included; empty at a project's root, outside of projects, and until they are
    // listed.
    const QList<Location>& siblings() const { return m_siblings; }

    Q_INVOKABLE void go(int step);

    // Files that were dropped on a step; one that is no folder takes none.
    Q_INVOKABLE void drop(int step, const QList<QUrl>& urls);

    // What stands behind the last step: a list of MenuEntry.
    Q_INVOKABLE QVariantList menu() const;

Q_SIGNALS:
    void stepsChanged();
    void siblingsChanged();

private:
    QVariantList stepList() const;
    void refresh();
    void listSiblings();

    Library* const m_library;
    QList<PathStep> m_steps;
    QList<Location> m_siblings;
};

} // namespace lumbra

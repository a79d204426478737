// A window that shows one document the way the screening room does, and what tests ask of it. The keys that the view
// leaves alone arrive in `keys`.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"
#include "support/QmlWindow.h"

#include <QElapsedTimer>
#include <QWheelEvent>

namespace lumbra {

class QuickLookWindow : public QmlWindow {
public:
    explicit QuickLookWindow(const Location& file, const QSize& size = QSize(700, 500))
        : QmlWindow(R"(
            property var file
            property var keys: []
            property var stages: []
            Keys.onPressed: event => { keys = keys.concat([event.key]); event.accepted = true }
            Rectangle { anchors.fill: parent; color: Theme.pane; radius: Theme.radiusCard }
            QuickLookView {
                id: view
                objectName: "view"
                anchors.fill: parent
                path: parent.file
                onStageChanged: parent.stages = parent.stages.concat([stage])
            })",
                    "import Lumbra.Media\n", {{QStringLiteral("file"), QVariant::fromValue(file)}}, size) {}

    void show(const Location& file) { root()->setProperty("file", QVariant::fromValue(file)); }

    QString stage() { return value("view", "stage").toString(); }
    bool reaches(const char* stage) {
        return QTest::qWaitFor([&] { return this->stage() == QLatin1String(stage); }, 10'000);
    }

    // What the view of the kind is: its properties tell of its scrolling.
    QQuickItem* stageItem() { return find("documentStage")->property("item").value<QQuickItem*>(); }
    double contentY() { return stageItem()->property("contentY").toDouble(); }

    // The words of all texts that show, from top to bottom.
    QStringList words() {
        QStringList found;
        collect(window()->contentItem(), found);
        return found;
    }
    bool says(const QString& text) {
        return QTest::qWaitFor([&] { return words().join(u'\n').contains(text); }, 10'000);
    }

    void wheel(int notches, Qt::KeyboardModifiers modifiers = Qt::NoModifier, QPoint at = {350, 250}) {
        QWheelEvent event(at, window()->mapToGlobal(at), QPoint(), QPoint(0, notches * 120), Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        event.setTimestamp(quint64(m_time.elapsed()) + 1000); // how fast it turns counts
        QCoreApplication::sendEvent(window(), &event);
    }

    QColor at(int x, int y) { return window()->grabWindow().pixelColor(x, y); }

private:
    QElapsedTimer m_time = [] {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }();

    static void collect(QQuickItem* item, QStringList& found) {
        if (!item->isVisible() || item->opacity() == 0)
            return;
        const QString text = item->property("text").toString();
        if (!text.isEmpty() && item->inherits("QQuickText"))
            found.append(text);
        const QList<QQuickItem*> children = item->childItems();
        for (QQuickItem* child : children)
            collect(child, found);
    }
};

} // namespace lumbra

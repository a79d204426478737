// A window that shows one document the way the screening room does, and what tests ask of it. The keys that the view
// leaves alone arrive in `keys`.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"
#include "support/QmlWindow.h"

#include <QElapsedTimer>
#include <QWheelEvent>

#include <algorithm>
#include <functional>

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
        return QTest::qWaitFor([&] { return this->stage() == QLatin1String(stage); }, patience);
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
        return QTest::qWaitFor([&] { return words().join(u'\n').contains(text); }, patience);
    }

    void wheel(int notches, Qt::KeyboardModifiers modifiers = Qt::NoModifier, QPoint at = {350, 250}) {
        QWheelEvent event(at, window()->mapToGlobal(at), QPoint(), QPoint(0, notches * 120), Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        event.setTimestamp(quint64(m_time.elapsed()) + 1000); // how fast it turns counts
        QCoreApplication::sendEvent(window(), &event);
    }

    // Where characters of a text begin in the window: those of the first item that says `words`, from its first on.
    QPoint placeOf(const QString& words) {
        QPoint place;
        const auto isThere = [&] {
            return anyItem(window()->contentItem(), [&](QQuickItem* item) {
                const qsizetype at = item->inherits("QQuickTextEdit") ? wordsOf(item).indexOf(words) : -1;
                if (at < 0)
                    return false;
                QRectF character;
                QMetaObject::invokeMethod(item, "positionToRectangle", Q_RETURN_ARG(QRectF, character),
                                          Q_ARG(int, int(at)));
                place = item->mapToScene(character.center()).toPoint();
                return true;
            });
        };
        if (!QTest::qWaitFor(isThere, patience))
            qFatal("nothing says %s", qPrintable(words));
        return place;
    }

    void drag(QPoint from, QPoint to) {
        QTest::mousePress(window(), Qt::LeftButton, Qt::NoModifier, from);
        QTest::mouseMove(window(), (from + to) / 2);
        QTest::mouseMove(window(), to);
        QTest::mouseRelease(window(), Qt::LeftButton, Qt::NoModifier, to);
    }

    static bool anyItem(QQuickItem* item, const std::function<bool(QQuickItem*)>& isIt) {
        if (!item->isVisible())
            return false;
        if (isIt(item))
            return true;
        const QList<QQuickItem*> children = item->childItems();
        return std::any_of(children.begin(), children.end(), [&](QQuickItem* child) { return anyItem(child, isIt); });
    }

    // The first page on show, in the window.
    QRectF pageRect() {
        QRectF rect;
        anyItem(window()->contentItem(), [&rect](QQuickItem* item) {
            if (!item->inherits("lumbra::DocumentPage"))
                return false;
            rect = item->mapRectToScene(item->boundingRect());
            return true;
        });
        return rect;
    }

    QColor at(int x, int y) { return window()->grabWindow().pixelColor(x, y); }

private:
    QElapsedTimer m_time = [] {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }();

    // As they are read, without their looks.
    static QString wordsOf(QQuickItem* item) {
        QString words;
        if (item->inherits("QQuickTextEdit"))
            QMetaObject::invokeMethod(item, "getText", Q_RETURN_ARG(QString, words), Q_ARG(int, 0),
                                      Q_ARG(int, item->property("length").toInt()));
        else if (item->inherits("QQuickText"))
            words = item->property("text").toString();
        return words;
    }

    static void collect(QQuickItem* item, QStringList& found) {
        if (!item->isVisible() || item->opacity() == 0)
            return;
        if (const QString text = wordsOf(item); !text.isEmpty())
            found.append(text);
        const QList<QQuickItem*> children = item->childItems();
        for (QQuickItem* child : children)
            collect(child, found);
    }
};

} // namespace lumbra

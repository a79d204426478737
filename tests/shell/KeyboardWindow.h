// The whole window as a test of the keyboard needs it: it moves nothing by itself, and tells where the keys are and how
// it looks there.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Config.h"
#include "core/PreferenceKeys.h"
#include "look/Look.h"
#include "platform/Preferences.h"
#include "support/AppWindow.h"
#include "support/TestHome.h"

#include <QAccessible>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QtQml/QQmlExtensionPlugin>

#include <functional>
#include <tuple>

Q_IMPORT_QML_PLUGIN(Lumbra_LookPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_BrowsingPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_ShellPlugin)

namespace lumbra {

// Where the keys were, and how it looked there.
struct Stop {
    QQuickItem* item = nullptr;
    QString name;
    QAccessible::Role role = QAccessible::NoRole;
    QRectF rect;  // of the window
    QRectF place; // where one reads it: the rows of a tree are one place, whichever of them has the keys
    QImage picture;

    QString text() const {
        return QStringLiteral("%1 “%2” at %3,%4 %5x%6")
            .arg(QString::fromLatin1(item->metaObject()->className()).section(u'_', 0, 0), name)
            .arg(rect.x())
            .arg(rect.y())
            .arg(rect.width())
            .arg(rect.height());
    }
};

class KeyboardWindow {
public:
    // Once for all tests of a program.
    static void prepare() {
        Look::prepareApplication();
        QAccessible::setActive(true);
    }

    // A library of a few projects, with its window; the preferences are the program's, so it has one home.
    void open() {
        LumbraConfig::setLibrary(m_home.folder("library"));
        Preferences::shared().setValue(PreferenceKeys::inspector, true);
        QImage still(64, 48, QImage::Format_RGB32);
        still.fill(Qt::darkCyan);
        for (const char* path : {"site/drafts/old", "film", "empty"})
            m_home.folder("library/" + std::string(path));
        for (const char* path : {"site/hero.png", "site/logo.png", "site/drafts/first.png", "film/scene.png"})
            QVERIFY(still.save(at(path).toString()));
        m_app = std::make_unique<App>(QElapsedTimer());
        m_window = shownWindow(*m_app);
        QVERIFY(m_window);
        m_window->resize(1440, 900);
        QTRY_VERIFY(!library().indexing());
        Look::setAppearance(*qmlEngine(ofType("SidebarView")), false, true);
    }
    void close() {
        m_window = nullptr;
        m_app.reset();
    }

    App& app() { return *m_app; }
    Library& library() const { return m_app->library(); }
    QQuickWindow* window() { return m_window; }
    QQuickItem* focused() const { return m_window->activeFocusItem(); }
    Location at(const char* path) const { return m_home.path().child(std::string("library/") + path); }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(m_window, key, modifiers); }
    void type(const char* letters) {
        for (; *letters; ++letters)
            QTest::keyClick(m_window, *letters);
    }

    QQuickItem* named(const char* name) const {
        return first(m_window->contentItem(),
                     [name](const QQuickItem* item) { return item->objectName() == QLatin1String(name); });
    }
    QQuickItem* ofType(const char* type) const { return ofType(m_window->contentItem(), type); }
    static QQuickItem* ofType(QQuickItem* parent, const char* type) {
        return first(parent, [type](const QQuickItem* item) {
            return item->isVisible() && QByteArray(item->metaObject()->className()).startsWith(type);
        });
    }
    bool isAt(const char* type) const {
        return focused() && QByteArray(focused()->metaObject()->className()).startsWith(type);
    }
    static bool isBelow(const QQuickItem* item, const QQuickItem* ancestor) {
        while (item && item != ancestor)
            item = item->parentItem();
        return item != nullptr;
    }

    void openFolder(const char* path) {
        library().setPlace(Place::folder(at(path)));
        QTRY_VERIFY(ofType("PathBarView"));
        settle();
    }

    // Along the rows of the sidebar, by key.
    void goToProject(const QString& name) {
        QQuickItem* const rows = named("rows");
        rows->forceActiveFocus(Qt::TabFocusReason);
        press(Qt::Key_Home);
        const auto isThere = [&] {
            auto* const cell = rows->property("currentItem").value<QQuickItem*>();
            const QAccessibleInterface* const read = cell ? QAccessible::queryAccessibleInterface(cell) : nullptr;
            return read && read->text(QAccessible::Name) == name;
        };
        for (int step = 0; step < 20 && !isThere(); ++step)
            press(Qt::Key_Down);
        QVERIFY(isThere());
    }

    // Until two pictures in a row are the same: with reduced motion only what shows that work goes on still moves.
    void settle() {
        QImage before = picture();
        const auto isStill = [&] {
            QImage now = picture();
            const bool same = now == before;
            before = std::move(now);
            return same;
        };
        std::ignore = QTest::qWaitFor(isStill, 2'000);
    }

    QImage picture() { return m_window->grabWindow(); }

    Stop stop() {
        QQuickItem* const item = focused();
        if (!item)
            return {};
        const QAccessibleInterface* const read = QAccessible::queryAccessibleInterface(item);
        const QAccessible::Role role = read ? read->role() : QAccessible::NoRole;
        return {item,
                read ? read->text(QAccessible::Name) : QString(),
                role,
                onWindow(item),
                onWindow(role == QAccessible::TreeItem ? named("rows") : item),
                picture()};
    }

    // It says what it is, and looks otherwise than when the keys were elsewhere.
    void check(const Stop& stop, const Stop& other) {
        QVERIFY2(!stop.name.isEmpty(), qPrintable(stop.text()));
        QVERIFY2(stop.role != QAccessible::NoRole && stop.role != QAccessible::Client, qPrintable(stop.text()));
        const QRect around = stop.rect.toAlignedRect().adjusted(-4, -4, 4, 4) & QRect(QPoint(), m_window->size());
        QVERIFY2(!around.isEmpty(), qPrintable(stop.text()));
        QVERIFY2(stop.picture.copy(around) != other.picture.copy(around), qPrintable(stop.text()));
    }

private:
    static QQuickItem* first(QQuickItem* parent, const std::function<bool(const QQuickItem*)>& isIt) {
        const QList<QQuickItem*> children = parent->childItems();
        for (QQuickItem* child : children) {
            if (isIt(child))
                return child;
            if (QQuickItem* const found = first(child, isIt))
                return found;
        }
        return nullptr;
    }

    static QRectF onWindow(const QQuickItem* item) {
        return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
    }

    TestHome m_home;
    std::unique_ptr<App> m_app;
    QQuickWindow* m_window = nullptr;
};

} // namespace lumbra

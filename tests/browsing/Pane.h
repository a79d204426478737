// The browser's pane in a window over a library of its own, used as a person would: by what is seen on it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browsing/browser/Browser.h"
#include "look/Look.h"
#include "support/TestHome.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace lumbra {

struct Pane {
    bool inspecting = false; // the details beside the page are shown
    TestHome home;
    std::unique_ptr<Preferences> preferences;
    std::unique_ptr<Library> library;
    std::unique_ptr<Browser> browser;
    QQmlEngine engine;
    std::optional<NamePrompt> prompt;   // the last that was asked for
    std::unique_ptr<QQuickWindow> view; // its items hold what stands above, so it dies first

    Location folder(std::string_view relative = {}) const {
        const Location root = home.path().child("Library");
        return relative.empty() ? root : root.child(relative);
    }

    Location file(std::string_view relative, double age = 60) const {
        const Location made = home.file("Library/" + std::string(relative));
        TestHome::touch(made, Date::now().seconds - age);
        return made;
    }

    void open(const Place& place, int width = 1000) {
        home.folder("Library");
        preferences = std::make_unique<Preferences>(home.path().child("settings.ini"));
        library = std::make_unique<Library>(folder(), true);
        library->setPlace(place);
        browser = std::make_unique<Browser>(library.get(), nullptr, *preferences);
        browser->settings()->setShowInspector(inspecting);
        browser->setNamePrompt([this](const NamePrompt& asked) { prompt = asked; });
        Look::prepareEngine(engine);
        QQmlComponent component(&engine);
        component.setData("import QtQuick\n"
                          "import QtQuick.Controls.Basic\n"
                          "import Lumbra.Browsing\n"
                          "ApplicationWindow {\n"
                          "    property Browser browser\n"
                          "    BrowserView { anchors.fill: parent; browser: parent.Window.window.browser }\n"
                          "}",
                          QUrl(QStringLiteral("qrc:/test.qml")));
        QObject* const root =
            component.createWithInitialProperties({{QStringLiteral("browser"), QVariant::fromValue(browser.get())}});
        QVERIFY2(root, qPrintable(component.errorString()));
        view.reset(qobject_cast<QQuickWindow*>(root));
        view->resize(width, 700);
        view->show();
        view->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(view.get(), lumbra::patience));
        QTRY_VERIFY(browser->loaded() && !library->indexing());
    }

    // Items of a type of ours that are on screen, from the top left.
    QList<QQuickItem*> items(const char* type) const {
        QList<QQuickItem*> found;
        // With what floats above the pane.
        collect(view->contentItem(), QByteArray(type), found);
        std::sort(found.begin(), found.end(), [](const QQuickItem* a, const QQuickItem* b) {
            const QPointF left = a->mapToScene({});
            const QPointF right = b->mapToScene({});
            return left.y() != right.y() ? left.y() < right.y() : left.x() < right.x();
        });
        return found;
    }

    QQuickItem* tile(const char* type, const QString& name) const {
        for (QQuickItem* item : items(type))
            if (item->property("cell").value<PageCell>().name == name)
                return item;
        return nullptr;
    }

    // A control by the text that it shows.
    QQuickItem* control(const char* type, const QString& text) const {
        for (QQuickItem* item : items(type))
            if (item->property("text").toString() == text)
                return item;
        return nullptr;
    }

    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        QTest::keyClick(view.get(), Qt::Key(key), modifiers);
    }

    void click(const QQuickItem* item, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        QVERIFY(item);
        settle();
        QTest::mouseClick(view.get(), Qt::LeftButton, modifiers, centre(item));
    }

    // Items that have just come stand where they belong once they have been drawn.
    void settle() const {
        QSignalSpy frames(view.get(), &QQuickWindow::frameSwapped);
        view->update();
        QTRY_VERIFY(frames.size() >= 1);
    }

    static QPoint centre(const QQuickItem* item) {
        return item->mapToScene({item->width() / 2, item->height() / 2}).toPoint();
    }

    QStringList selected() const {
        QStringList names;
        for (const Asset& asset : browser->selected())
            names << asset.url.name();
        return names;
    }

private:
    static void collect(QQuickItem* item, const QByteArray& type, QList<QQuickItem*>& found) {
        if (!item->isVisible())
            return;
        const QByteArray name = item->metaObject()->className();
        if (name == type || name.startsWith(type + "_QML"))
            found.append(item);
        const auto live = liveRows(item);
        for (QQuickItem* child : item->childItems())
            if (!live || live->contains(child) || child->metaObject()->indexOfProperty("row") < 0)
                collect(child, type, found);
    }

    // A list keeps rows to use them again, and only it knows which of them stand for something.
    static std::optional<QSet<QQuickItem*>> liveRows(const QQuickItem* content) {
        QQuickItem* const list = content->parentItem();
        if (!list || !list->inherits("QQuickItemView"))
            return {};
        QSet<QQuickItem*> rows;
        for (int index = 0; index < list->property("count").toInt(); ++index) {
            QQuickItem* row = nullptr;
            QMetaObject::invokeMethod(list, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, row), Q_ARG(int, index));
            rows.insert(row);
        }
        return rows;
    }
};

} // namespace lumbra

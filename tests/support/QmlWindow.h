// A window that shows a piece of QML, for tests that use controls as a person would.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "look/Look.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QtQml/QQmlExtensionPlugin>

#include <memory>

Q_IMPORT_QML_PLUGIN(Lumbra_LookPlugin)

namespace lumbra {

class QmlWindow {
public:
    // `body` is what stands in an Item as large as the window; `imports` what it needs beside Lumbra.Look; `properties`
    // values of properties that the body declares.
    explicit QmlWindow(const char* body, const char* imports = "", const QVariantMap& properties = {},
                       const QSize& size = QSize(600, 400)) {
        Look::prepareEngine(m_engine);
        QQmlComponent component(&m_engine);
        component.setData(QByteArray("import QtQuick\nimport Lumbra.Look\n") + imports + "\nItem { focus: true\n" + body
                              + "\n}",
                          QUrl());
        if (component.isError())
            qFatal("%s", qPrintable(component.errorString()));
        m_root.reset(qobject_cast<QQuickItem*>(component.createWithInitialProperties(properties)));
        if (!m_root)
            qFatal("%s", qPrintable(component.errorString()));
        m_window.resize(size);
        m_root->setSize(size);
        m_root->setParentItem(m_window.contentItem());
        m_window.show();
        m_window.requestActivate();
        if (!QTest::qWaitForWindowActive(&m_window, lumbra::patience))
            qFatal("the window does not become active");
    }

    QQuickWindow* operator->() { return &m_window; }
    QQuickWindow* window() { return &m_window; }
    QQuickItem* root() { return m_root.get(); }
    QQmlEngine& engine() { return m_engine; }

    template <typename Type = QObject>
    Type* find(const char* name) {
        Type* found = nullptr;
        const auto isThere = [&] {
            found = m_root->findChild<Type*>(QLatin1String(name));
            if (!found) // what a view makes for its rows belongs to nobody
                found = qobject_cast<Type*>(itemBelow(m_window.contentItem(), QString::fromLatin1(name)));
            return found != nullptr;
        };
        if (!QTest::qWaitFor(isThere, patience)) // the rows of a list come with its next frame
            qFatal("there is no %s", name);
        return found;
    }

    QVariant value(const char* name, const char* property) { return find(name)->property(property); }

    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&m_window, Qt::Key(key), modifiers);
    }

    QPoint centreOf(const char* name) {
        auto* item = find<QQuickItem>(name);
        return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    }

    void click(const char* name, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(&m_window, button, Qt::NoModifier, centreOf(name));
    }

    // The first item with the name below the parent, in the order of the scene; null if there is none.
    static QQuickItem* itemBelow(const QQuickItem* parent, const QString& name) {
        const QList<QQuickItem*> children = parent->childItems();
        for (QQuickItem* child : children) {
            if (child->objectName() == name)
                return child;
            if (QQuickItem* found = itemBelow(child, name))
                return found;
        }
        return nullptr;
    }

private:
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<QQuickItem> m_root;
};

} // namespace lumbra

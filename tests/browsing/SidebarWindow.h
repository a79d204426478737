// The sidebar's pane in a window over a library of its own, used as a person would: by what is seen on it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browsing/sidebar/Sidebar.h"
#include "library/Library.h"
#include "support/QmlWindow.h"
#include "support/TestHome.h"

#include <QtQuickTest/quicktest.h>

Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_BrowsingPlugin)

namespace lumbra {

inline QString text(const char* latin) {
    return QString::fromLatin1(latin);
}

// To be inherited by a test, whose `init` and `cleanup` call those of this.
class SidebarWindow {
protected:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<Library> m_library;
    std::unique_ptr<Sidebar> m_sidebar;
    std::unique_ptr<QmlWindow> m_window;

    Location at(const char* relative) const { return m_library->root().child(std::string_view(relative)); }

    void folder(const std::string& relative) { m_home->folder("Library/" + relative); }

    void open(int height = 600) {
        m_library = std::make_unique<Library>(m_home->path().child("Library"), true);
        m_sidebar = std::make_unique<Sidebar>(m_library.get());
        m_window = std::make_unique<QmlWindow>(
            "property var controller\nSidebarView { anchors.fill: parent; sidebar: parent.controller }",
            "import Lumbra.Browsing", QVariantMap{{text("controller"), QVariant::fromValue(m_sidebar.get())}},
            QSize(264, height));
        if (!QTest::qWaitFor([this] { return !m_library->indexing(); }, patience))
            qFatal("the first walk does not end");
    }

    QQuickItem* list() { return m_window->find<QQuickItem>("rows"); }

    int row(const char* title) const {
        const QList<SidebarRow>& rows = m_sidebar->rows()->rows();
        for (int row = int(rows.size()) - 1; row >= 0; --row) {
            if (rows[row].title == text(title))
                return row;
        }
        return -1;
    }

    QQuickItem* cell(const char* title) {
        QQuickItem* found = nullptr;
        const auto shown = [&] {
            QMetaObject::invokeMethod(list(), "itemAtIndex", Q_RETURN_ARG(QQuickItem*, found), Q_ARG(int, row(title)));
            return found != nullptr;
        };
        if (!QTest::qWaitFor(shown, patience))
            qFatal("no row %s", title);
        return found;
    }

    // In a row, from its left end, halfway up.
    QPoint in(const char* title, qreal x = 120) {
        // Rows that have just come or gone take their places with the next frame.
        if (QQuickTest::qIsPolishScheduled(list()) && !QQuickTest::qWaitForPolish(list()))
            qFatal("the rows do not take their places");
        const QQuickItem* item = cell(title);
        return item->mapToScene(QPointF(x, item->height() / 2)).toPoint();
    }

    void press(Qt::Key key) { m_window->press(key); }

    void click(const QPoint& point, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseMove(m_window->window(), point);
        QTest::mouseClick(m_window->window(), button, {}, point);
    }

    void startDrag(const QPoint& from, const QPoint& to) {
        QTest::mouseMove(m_window->window(), from);
        QTest::mousePress(m_window->window(), Qt::LeftButton, {}, from);
        for (int part = 1; part <= 8; ++part)
            QTest::mouseMove(m_window->window(), from + (to - from) * part / 8);
    }

    void drag(const QPoint& from, const QPoint& to) {
        startDrag(from, to);
        QTest::mouseRelease(m_window->window(), Qt::LeftButton, {}, to);
    }

    QString groups() const {
        QStringList all;
        const QList<ProjectGroup> stored = m_library->state().groups;
        for (const ProjectGroup& group : stored)
            all.append(group.name + u'(' + group.projects.join(u' ') + u')');
        return all.join(QStringLiteral(", "));
    }

    void make() {
        m_home = std::make_unique<TestHome>();
        m_home->folder("Library");
    }

    void takeDown() {
        m_window.reset();
        m_sidebar.reset();
        m_library.reset();
    }
};

} // namespace lumbra

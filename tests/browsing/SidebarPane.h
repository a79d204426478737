// What the tests of the sidebar share: a library in a home of its own with the pane over it, and words for what it
// shows.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browsing/sidebar/Sidebar.h"
#include "platform/Preferences.h"
#include "support/TestHome.h"

#include <QAbstractItemModelTester>
#include <QTest>

#include <memory>
#include <optional>

namespace lumbra {

inline QString text(const char* latin) {
    return QString::fromLatin1(latin);
}

inline QStringList texts(const char* latin) {
    return text(latin).split(QStringLiteral(", "), Qt::SkipEmptyParts);
}

// To be inherited by a test, whose `init` and `cleanup` call those of this.
class SidebarPane {
protected:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<Library> m_library;
    std::unique_ptr<Sidebar> m_sidebar;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
    std::optional<NamePrompt> m_prompt; // the last that a menu asked for

    void make() {
        m_home = std::make_unique<TestHome>();
        m_home->folder("Library");
        m_prompt.reset();
    }

    void takeDown() {
        m_tester.reset();
        m_sidebar.reset();
        m_library.reset();
        Preferences::shared().remove(text("projectsByActivity"));
    }

    Location root() const { return m_home->path().child("Library"); }
    Location at(const char* relative) const { return root().child(std::string_view(relative)); }

    void folders(const char* names) {
        const QStringList all = texts(names);
        for (const QString& name : all)
            m_home->folder((QStringLiteral("Library/") + name).toStdString());
    }

    // Opens the library that the folders make, with its pane.
    void open() {
        m_library = std::make_unique<Library>(root(), true);
        m_sidebar = std::make_unique<Sidebar>(m_library.get());
        m_tester = std::make_unique<QAbstractItemModelTester>(m_sidebar->rows(),
                                                              QAbstractItemModelTester::FailureReportingMode::Fatal);
        m_sidebar->setNamePrompt([this](const NamePrompt& prompt) { m_prompt = prompt; });
        if (!QTest::qWaitFor([this] { return !m_library->indexing(); }, patience))
            qFatal("the first walk does not end");
    }

    // Titles, with a dot for each step that a row is indented.
    QStringList rows() const {
        QStringList all;
        for (const SidebarRow& row : m_sidebar->rows()->rows())
            all.append(QString(row.depth, u'.') + row.title);
        return all;
    }

    // The project list alone.
    QString projects() const {
        const QStringList all = rows();
        return all.mid(all.indexOf(text("Projects")) + 1).join(QStringLiteral(", "));
    }

    int rowOf(const char* title, SidebarRow::Type type) const {
        const QList<SidebarRow>& all = m_sidebar->rows()->rows();
        for (int row = 0; row < all.size(); ++row) {
            if (all[row].title == QString::fromUtf8(title) && all[row].type == type)
                return row;
        }
        return -1;
    }
    int projectRow(const char* name) const { return rowOf(name, SidebarRow::Type::project); }
    int folderRow(const char* name) const { return rowOf(name, SidebarRow::Type::folder); }
    int groupRow(const char* name) const { return rowOf(name, SidebarRow::Type::group); }
    const SidebarRow& shown(int row) const { return m_sidebar->rows()->rows()[row]; }

    // "Name(a b)" for each stored group.
    QString groups() const {
        QStringList all;
        const QList<ProjectGroup> stored = m_library->state().groups;
        for (const ProjectGroup& group : stored)
            all.append(group.name + u'(' + group.projects.join(u' ') + u')');
        return all.join(QStringLiteral(", "));
    }
};

} // namespace lumbra

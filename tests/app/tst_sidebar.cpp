// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppFiles.h"
#include "AppHarness.h"
#include "AppNeighbour.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

using namespace lumbra;

// Projects are put in order by hand: each drag starts from what the one before left.
class TestSidebar : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aProjectIsDroppedOnItsSibling();
    void aProjectIsDroppedOnAGroup();
    void aProjectIsDraggedOutOfItsGroup();
    void aProjectIsDroppedOnAMemberOfAGroup();
    void anotherProgramsFileIsDroppedOnAProject();
    void aTileIsDroppedOnAProject();
    void aGroupTakesNoFiles();
    void aProjectRenamedOutsideIsLeftCalmly();
    void aProjectTrashedOutsideIsLeftCalmly();

private:
    Location at(const char* relative) const { return m_app.library().child(std::string_view(relative)); }
    AppState::Item row(const char* title) { return m_app.state().sidebarRow(QString::fromLatin1(title)); }
    QPoint middle(const char* title) {
        return m_app.settled().sidebarRow(QString::fromLatin1(title)).rect.center().toPoint();
    }

    // "Name(a b)" for each group, as it is kept on disk.
    QString groups() const {
        QFile file(at(".lumbra/library.json").toString());
        if (!file.open(QIODevice::ReadOnly))
            return {};
        QStringList all;
        for (const QJsonValue group : QJsonDocument::fromJson(file.readAll()).object()[u"groups"].toArray()) {
            QStringList members;
            for (const QJsonValue member : group[u"projects"].toArray())
                members << member.toString();
            all << group[u"name"].toString() + u'(' + members.join(u' ') + u')';
        }
        return all.join(u' ');
    }

    // Pulls until the application has taken in some moves over the end: by then the other program has its answer too.
    bool pull(QPoint from, QPoint to) {
        constexpr int enough = 6;
        int answers = 0;
        return m_app.pull(from, to, [&] { return m_app.state().isThere() && ++answers > enough; });
    }

    void drag(const char* from, const char* to) { drag(from, to, middle(to)); }
    void drag(const char* from, const char* to, QPoint end) {
        QVERIFY(pull(middle(from), end));
        m_app.keepScreenshot(QStringLiteral("drag-%1-on-%2").arg(QLatin1String(from), QLatin1String(to)));
        m_app.release();
    }

    AppDisplay m_display;
    AppHarness m_app{m_display};
};

void TestSidebar::initTestCase() {
    for (const auto& [name, number] : {std::pair{"cats-a", 1}, {"cats-b", 2}, {"dogs", 3}, {"elks", 4}})
        AppFiles::picture(m_app.library().child(std::string(name) + "/" + name + ".png"), AppFiles::colour(number));
    AppFiles::picture(m_app.home().path().child("desk/brought.png"), AppFiles::colour(5));
    m_app.start();
    APP_WAIT(m_app, row("elks").isThere());
}

void TestSidebar::aProjectIsDroppedOnItsSibling() {
    drag("cats-b", "cats-a");
    APP_WAIT(m_app, groups() == QStringLiteral("Cats(cats-a cats-b)"));
    APP_WAIT(m_app, row("Cats").isThere());
}

void TestSidebar::aProjectIsDroppedOnAGroup() {
    drag("dogs", "Cats");
    APP_WAIT(m_app, groups() == QStringLiteral("Cats(cats-a cats-b dogs)"));
}

void TestSidebar::aProjectIsDraggedOutOfItsGroup() {
    drag("cats-b", "the title", middle("Tidy") + QPoint(0, 32)); // which follows the last page of the library
    APP_WAIT(m_app, groups() == QStringLiteral("Cats(cats-a dogs)"));
}

void TestSidebar::aProjectIsDroppedOnAMemberOfAGroup() {
    drag("cats-b", "dogs");
    APP_WAIT(m_app, groups() == QStringLiteral("Cats(cats-a dogs cats-b)"));
    QCOMPARE(m_app.state().text("place"), QStringLiteral("recent"));
    QCOMPARE(m_app.state().text("error"), QString());
}

void TestSidebar::anotherProgramsFileIsDroppedOnAProject() {
    const Location brought = m_app.home().path().child("desk/brought.png");
    AppNeighbour neighbour(m_display, brought);
    QVERIFY(pull(AppNeighbour::middle, middle("elks")));
    m_app.keepScreenshot(QStringLiteral("files-on-a-project"));
    m_app.release();
    APP_WAIT(m_app, at("elks/brought.png").exists());
    // It was copied, whatever the other program would rather have.
    APP_WAIT(m_app, neighbour.said("taken " + QByteArray::number(int(Qt::CopyAction))));
    QVERIFY(brought.exists());
}

void TestSidebar::aTileIsDroppedOnAProject() {
    m_app.click(m_app.settled().sidebarRow(QStringLiteral("elks")));
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("elks/elks.png")).hasPicture);
    const QPoint tile = m_app.settled().tile(QStringLiteral("elks/elks.png")).rect.center().toPoint();
    QVERIFY(pull(tile, middle("dogs")));
    m_app.release();
    APP_WAIT(m_app, at("dogs/elks.png").exists() && !at("elks/elks.png").exists());
}

void TestSidebar::aGroupTakesNoFiles() {
    const Location brought = m_app.home().path().child("desk/brought.png");
    AppNeighbour neighbour(m_display, brought);
    QVERIFY(pull(AppNeighbour::middle, middle("Cats")));
    m_app.release();
    APP_WAIT(m_app, neighbour.said("taken " + QByteArray::number(int(Qt::IgnoreAction))));
    QVERIFY(brought.exists());
    QCOMPARE(m_app.state().text("error"), QString());
}

void TestSidebar::aProjectRenamedOutsideIsLeftCalmly() {
    m_app.click(m_app.settled().sidebarRow(QStringLiteral("elks")));
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("elks/brought.png")).hasPicture);
    QVERIFY(QFile::rename(at("elks").toString(), at("moose").toString()));
    APP_WAIT(m_app, row("moose").isThere() && !row("elks").isThere());
    m_app.settled();
    m_app.keepScreenshot(QStringLiteral("renamed-outside"));
    QCOMPARE(m_app.state().text("error"), QString());
    m_app.click(m_app.settled().sidebarRow(QStringLiteral("moose")));
    APP_WAIT(m_app, m_app.state().tile(QStringLiteral("moose/brought.png")).hasPicture);
}

void TestSidebar::aProjectTrashedOutsideIsLeftCalmly() {
    QVERIFY(QFile::rename(at("moose").toString(), m_app.home().path().child("desk/moose").toString()));
    APP_WAIT(m_app, m_app.state().isThere() && !row("moose").isThere());
    m_app.settled();
    m_app.keepScreenshot(QStringLiteral("trashed-outside"));
    QCOMPARE(m_app.state().text("error"), QString());
    m_app.click(m_app.settled().sidebarRow(QStringLiteral("Recent")));
    APP_WAIT(m_app, m_app.state().text("place") == QStringLiteral("recent"));
}

QTEST_GUILESS_MAIN(TestSidebar)
#include "tst_sidebar.moc"

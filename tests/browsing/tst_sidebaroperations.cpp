// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/sidebar/SidebarMenus.h"
#include "core/ProjectLinks.h"
#include "library/Actions.h"
#include "support/TestHome.h"
#include "support/TestPanels.h"

#include <QProcess>
#include <QTest>

using namespace lumbra;

// What the entries of the sidebar's menus do to files and projects.
class SidebarOperationsTest : public QObject {
    Q_OBJECT

private:
    TestHome m_home; // one, since the desktop's trash keeps to the home that it saw first
    std::string m_run;
    int m_runs = 0;
    std::unique_ptr<Library> m_library;
    TestPanels m_panels;
    std::optional<NamePrompt> m_prompt;
    std::optional<Confirmation> m_question;

    Location root() const { return m_home.path().child(m_run).child("Library"); }
    Location at(std::string_view relative) const { return root().child(relative); }

    SidebarMenus menus() {
        return {m_library.get(), [this](const NamePrompt& prompt) { m_prompt = prompt; },
                [this](const Confirmation& question) { m_question = question; }};
    }

    static void choose(const QList<MenuEntry>& menu, const QString& title) {
        for (const MenuEntry& entry : menu)
            if (entry.title == title)
                return entry.run();
        QFAIL(qPrintable(title));
    }

    void name(const char* given) {
        QVERIFY(m_prompt);
        std::exchange(m_prompt, std::nullopt)->action(QString::fromUtf8(given));
    }

    Project project(const char* name) const {
        const auto projects = m_library->projects();
        for (const Project& candidate : projects)
            if (candidate.name == QLatin1String(name))
                return candidate;
        qFatal("no project %s", name);
    }

    Location repository(const char* name) const {
        const Location repo = m_home.folder(m_run + "/code/" + name);
        QProcess git;
        git.start(QStringLiteral("git"), {QStringLiteral("init"), QStringLiteral("-q"), repo.toString()});
        if (!git.waitForFinished())
            qFatal("git does not end");
        return repo;
    }

private Q_SLOTS:
    void init() {
        m_run = "run-" + std::to_string(++m_runs);
        m_home.file(m_run + "/Library/cats/renders/a.png");
        m_library = std::make_unique<Library>(root(), true);
        m_panels = {};
        m_prompt.reset();
        m_question.reset();
        Actions::usePanels(&m_panels);
    }
    void cleanup() {
        Actions::usePanels(nullptr);
        m_library.reset();
    }

    void aNewProjectAsksForANameAndThenForItsRepository() {
        const Location repo = repository("site");
        choose(menus().newItems(), QStringLiteral("New Project…"));
        QCOMPARE(m_prompt->title, QStringLiteral("New Project"));
        QCOMPARE(m_prompt->initial, QString());
        QCOMPARE(m_prompt->confirm, QStringLiteral("Create"));
        name("site");
        QCOMPARE(m_panels.asked, QStringLiteral("folder"));
        QCOMPARE(m_panels.button, QStringLiteral("Link"));
        QCOMPARE(m_panels.message,
                 QStringLiteral("Choose the repository for “site”. Its media stays in the library; the repository only "
                                "records where to find it, in its own git config."));
        QCOMPARE(m_panels.start, std::optional(Location::home().child("Projects")));
        QVERIFY(!at("site").exists());
        m_panels.answerFolder(repo);
        QTRY_VERIFY(m_library->place() == Place::folder(at("site")));
        QCOMPARE(ProjectLinks::repoOf(at("site")), std::optional(repo));
    }

    void aNewProjectNeedsNoRepository() {
        choose(menus().newItems(), QStringLiteral("New Project…"));
        name("site");
        m_panels.answerFolder(std::nullopt);
        QVERIFY(at("site/images").isFolder());
        QVERIFY(!ProjectLinks::repoOf(at("site")));
    }

    void aNewFolderIsEntered() {
        choose(menus().project(project("cats")), QStringLiteral("New Folder…"));
        QCOMPARE(m_prompt->title, QStringLiteral("New Folder"));
        QCOMPARE(m_prompt->initial, QStringLiteral("untitled folder"));
        name("shots");
        QVERIFY(m_library->place() == Place::folder(at("cats/shots")));
        choose(menus().folder(at("cats/shots")), QStringLiteral("New Folder Inside…"));
        name("deeper");
        QVERIFY(m_library->place() == Place::folder(at("cats/shots/deeper")));
        choose(menus().project(project("cats")), QStringLiteral("New Folder…"));
        name("shots");
        QVERIFY(m_library->lastError());
        QVERIFY(m_library->place() == Place::folder(at("cats/shots/deeper")));
    }

    void aProjectIsRenamed() {
        choose(menus().project(project("cats")), QStringLiteral("Rename Project…"));
        QCOMPARE(m_prompt->title, QStringLiteral("Rename Project"));
        QCOMPARE(m_prompt->initial, QStringLiteral("cats"));
        QCOMPARE(m_prompt->confirm, QStringLiteral("Rename"));
        name("dogs");
        QVERIFY(at("dogs/renders/a.png").exists());
        QCOMPARE(m_library->projects().first().name, QStringLiteral("dogs"));
    }

    void renamingTheFolderOnViewMovesThePlace() {
        m_home.folder(m_run + "/Library/cats/other");
        m_library->setPlace(Place::folder(at("cats/renders")));
        choose(menus().folder(at("cats/renders")), QStringLiteral("Rename Folder…"));
        QCOMPARE(m_prompt->initial, QStringLiteral("renders"));
        QCOMPARE(m_prompt->confirm, QStringLiteral("Rename"));
        name("shots");
        QVERIFY(m_library->place() == Place::folder(at("cats/shots")));
        choose(menus().folder(at("cats/other")), QStringLiteral("Rename Folder…"));
        name("another");
        QVERIFY(at("cats/another").isFolder());
        QVERIFY(m_library->place() == Place::folder(at("cats/shots")));
    }

    void aProjectIsLinkedAndLinkedElsewhere() {
        const Location first = repository("first");
        const Location second = repository("second");
        choose(menus().project(project("cats")), QStringLiteral("Link to Repository…"));
        QCOMPARE(m_panels.start, std::optional(Location::home().child("Projects")));
        m_panels.answerFolder(std::nullopt);
        m_panels.answerFolder(first);
        QTRY_COMPARE(project("cats").repo, std::optional(first));
        choose(menus().project(project("cats")), QStringLiteral("Change Linked Repository…"));
        QCOMPARE(m_panels.start, std::optional(first.parent()));
        m_panels.answerFolder(second);
        QTRY_COMPARE(project("cats").repo, std::optional(second));
        choose(menus().project(project("cats")), QStringLiteral("Unlink Repository"));
        QTRY_VERIFY(!project("cats").repo);
    }

    void filesAreAddedToAFolder() {
        choose(menus().folder(at("cats/renders")), QStringLiteral("Add Files…"));
        QCOMPARE(m_panels.asked, QStringLiteral("open"));
        m_panels.answerFiles({m_home.file(m_run + "/desk/b.png")});
        QTRY_VERIFY(at("cats/renders/b.png").exists());
    }

    void theFolderOnViewIsLeftBeforeItIsTrashed() {
        m_library->setPlace(Place::folder(at("cats/renders")));
        choose(menus().folder(at("cats/renders")), QStringLiteral("Move to Trash"));
        QVERIFY(m_library->place() == Place::folder(at("cats")));
        QTRY_VERIFY(!at("cats/renders").exists());
    }

    void aProjectIsTrashedOnlyOnceTheUserAgrees() {
        choose(menus().project(project("cats")), QStringLiteral("Move Project to Trash…"));
        QVERIFY(m_question);
        QCOMPARE(m_question->title, QStringLiteral("Move “cats” to the Trash?"));
        QCOMPARE(
            m_question->text,
            QStringLiteral("Everything in this project's folder goes to the Trash. You can put it back from there. "
                           "To keep the files and just stop seeing the project, use Hide Project instead."));
        QCOMPARE(m_question->confirm, QStringLiteral("Move to Trash"));
        QVERIFY(at("cats").exists());
        m_question->action();
        QTRY_VERIFY(m_library->projects().isEmpty());
        QVERIFY(!at("cats").exists());
    }
};

QTEST_MAIN(SidebarOperationsTest)
#include "tst_sidebaroperations.moc"

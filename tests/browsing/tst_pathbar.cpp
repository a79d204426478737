// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/MenuEntry.h"
#include "browsing/chrome/PathBar.h"
#include "support/Strings.h"
#include "support/TestHome.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

using namespace lumbra;

namespace {

Location at(const char* path) {
    return Location(QByteArray(path));
}

// "title@badge" for a step with a badge.
QStringList titles(const QList<PathStep>& steps) {
    QStringList titles;
    for (const PathStep& step : steps)
        titles << (step.badge.isEmpty() ? step.title : step.title + u'@' + step.badge);
    return titles;
}

const Project project{u"pro"_qs, Location(QByteArray("/l/pro")), {}};
const ProjectGroup group{QUuid::createUuid(), u"Acme"_qs, {u"pro"_qs}, {}, false};

} // namespace

class TestPathBar : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFolderInNoProjectIsOneStep() {
        const QList<PathStep> steps = pathSteps({Place::folder(at("/x/y"))});
        QCOMPARE(titles(steps), strings({"y"}));
        QCOMPARE(steps[0].place, Place::folder(at("/x/y")));
    }

    void aProjectIsOneStepWithItsBadge() {
        const QList<PathStep> steps =
            pathSteps({.place = Place::folder(project.url), .project = project, .projectHue = 4});
        QCOMPARE(titles(steps), strings({"pro@pro"}));
        QCOMPARE(steps[0].hue, 4);
        QCOMPARE(steps[0].url, std::optional(project.url));
    }

    void threeFoldersDownInAGroupedProject() {
        const QList<PathStep> steps =
            pathSteps({.place = Place::folder(at("/l/pro/a/b/c")), .project = project, .group = group, .groupHue = 7});
        QCOMPARE(titles(steps), strings({"Acme@Acme", "pro@pro", "a", "b", "c"}));
        QCOMPARE(steps[0].place, Place::group(group.id));
        QCOMPARE(steps[0].hue, 7);
        QVERIFY(!steps[0].url);
        QCOMPARE(steps[1].place, Place::folder(project.url));
        QCOMPARE(steps[3].place, Place::folder(at("/l/pro/a/b")));
        QCOMPARE(steps[4].url, std::optional(at("/l/pro/a/b/c")));
    }

    void aGroupIsOneStepAlsoWhenItIsGone() {
        QCOMPARE(titles(pathSteps({.place = Place::group(group.id), .group = group})), strings({"Acme@Acme"}));
        QCOMPARE(titles(pathSteps({.place = Place::group(group.id)})), strings({"Group@Group"}));
    }

    void otherPlacesHaveNoPath() {
        QVERIFY(pathSteps({Place::recent()}).isEmpty());
        QVERIFY(pathSteps({Place::starred()}).isEmpty());
    }

    void aFolderBehindALinkIsFoundInItsProject() {
        const TestHome home;
        const Location real = home.folder("Library/pro/a");
        QVERIFY(QFile::link(real.parent().toString(), home.path().child("link").toString()));
        const Project here{u"pro"_qs, real.parent(), {}};
        const QList<PathStep> steps = pathSteps({.place = Place::folder(home.path().child("link/a")), .project = here});
        QCOMPARE(titles(steps), strings({"pro@pro", "a"}));
        QCOMPARE(steps[1].url, std::optional(real));
    }

    void theLastStepKnowsTheSiblings() {
        const TestHome home;
        const Location a = home.folder("Library/pro/a");
        home.folder("Library/pro/b");
        home.folder("Library/pro/.hidden");
        Library library(home.path().child("Library"), true);
        PathBar path(&library);
        QVERIFY(path.steps().isEmpty());
        library.setPlace(Place::folder(a));
        QCOMPARE(titles(path.steps()), strings({"pro@pro", "a"}));
        QTRY_COMPARE(path.siblings().size(), 2);
        QStringList menu;
        for (const QVariant& variant : path.menu()) {
            const auto entry = variant.value<MenuEntry>();
            menu << (entry.isDivider() ? u"-"_qs : entry.isChecked() ? u"*"_qs + entry.title : entry.title);
        }
        QCOMPARE(menu, strings({"*a", "b", "-", "Show in Finder", "Copy Path"}));
        path.menu().last().value<MenuEntry>().run();
        QCOMPARE(QGuiApplication::clipboard()->text(), a.toString());
        path.menu().at(1).value<MenuEntry>().run();
        QCOMPARE(library.place(), Place::folder(a.parent().child("b")));
        path.go(0);
        QCOMPARE(library.place(), Place::folder(a.parent()));
        QVERIFY(path.siblings().isEmpty());
        QCOMPARE(path.menu().size(), 2);
    }

    void aFolderThatIsGoneHasNoSiblings() {
        const TestHome home;
        const Location project = home.folder("Library/pro");
        Library library(home.path().child("Library"), true);
        PathBar path(&library);
        const QSignalSpy listed(&path, &PathBar::siblingsChanged);
        library.setPlace(Place::folder(project.child("gone/deeper")));
        QCOMPARE(titles(path.steps()), strings({"pro@pro", "gone", "deeper"}));
        QTRY_COMPARE(listed.size(), 2); // none at first, and then the answer
        QVERIFY(path.siblings().isEmpty());
        QCOMPARE(path.menu().size(), 2);
    }
};

QTEST_MAIN(TestPathBar)
#include "tst_pathbar.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_sidebar PROJECTS: the sidebar of a library of so many projects, half of them in groups: the longest task that
// the main thread gets from turning to another project, from a file that lands, from a group that is closed, and from
// a letter in the filter.
#include "MainThread.h"
#include "browsing/sidebar/Sidebar.h"
#include "library/Library.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>

using namespace lumbra;

namespace {

constexpr int membersOfAGroup = 20;
constexpr int rounds = 15; // in each of which one more group is closed
constexpr int fewestProjects = 2 * rounds * membersOfAGroup;

void wait(const std::function<bool()>& condition) {
    bench::wait(condition, "bench_sidebar: the rows did not come");
}

QString projectName(int number) {
    static const QStringList words{QStringLiteral("atlas"), QStringLiteral("brand"), QStringLiteral("clips"),
                                   QStringLiteral("demo"), QStringLiteral("engine")};
    return QStringLiteral("%1-%2-%3").arg(words[number % words.size()], words[number / 5 % words.size()]).arg(number);
}

void save(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        std::exit(1);
}

LibraryState grouped(int projects) {
    LibraryState state;
    for (int first = 0; first < projects / 2; first += membersOfAGroup) {
        ProjectGroup group{QUuid::createUuid(), QStringLiteral("Group %1").arg(first), {}, {}, false};
        for (int number = first; number < first + membersOfAGroup; ++number)
            group.projects.append(projectName(number));
        state.groups.append(group);
    }
    return state;
}

} // namespace

int main(int count, char** arguments) {
    bench::Application application(count, arguments);
    const int projects = count == 2 ? std::atoi(arguments[1]) : 0;
    if (projects < fewestProjects) {
        std::fprintf(stderr, "usage: bench_sidebar PROJECTS, which are %d at least\n", fewestProjects);
        return 2;
    }
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", home.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    qputenv("XDG_STATE_HOME", home.path().toLocal8Bit());
    const QString root = home.filePath(QStringLiteral("Library"));
    for (int number = 0; number < projects; ++number) {
        const QString folder = root + u'/' + projectName(number);
        QDir().mkpath(folder);
        save(folder + QStringLiteral("/first.png"));
    }

    Library library(Location(root.toUtf8()), true);
    library.setState(grouped(projects));
    Sidebar sidebar(&library);
    const auto rows = [&] { return sidebar.rows()->rows().size(); };
    wait([&] { return !library.indexing() && library.derived().activity.size() == projects; });

    std::vector<double> place;
    std::vector<double> landing;
    std::vector<double> group;
    std::vector<double> filter;
    const auto longestUntil = [&](std::vector<double>& times, const std::function<void()>& work,
                                  const std::function<bool()>& done) {
        application.longest = 0;
        QMetaObject::invokeMethod(&application, work, Qt::QueuedConnection);
        wait(done);
        times.push_back(application.longest);
    };
    const auto firstProject = [&] {
        const QList<SidebarRow>& all = sidebar.rows()->rows();
        return std::ranges::find(all, SidebarRow::Type::project, &SidebarRow::type)->project;
    };
    for (int round = 0; round < rounds; ++round) {
        const int chosen = int(rows()) - 2 - round;
        longestUntil(
            place, [&] { sidebar.choose(chosen); }, [&] { return sidebar.selectedRow() == chosen; });

        const QString landed = projectName(projects / 2 + round);
        longestUntil(
            landing, [&] { save(root + u'/' + landed + QStringLiteral("/second.png")); },
            [&] { return firstProject() == landed; });

        const QUuid closed = library.state().groups.at(round).id;
        const qsizetype before = rows();
        longestUntil(
            group, [&] { library.toggleCollapsed(closed); }, [&] { return rows() < before; });

        const qsizetype unfiltered = rows();
        longestUntil(
            filter, [&] { sidebar.setFilter(QStringLiteral("a")); }, [&] { return rows() != unfiltered; });
        sidebar.setFilter(QString());
        wait([&] { return rows() == unfiltered; });
    }
    bench::report("sidebar_place", bench::median(place));
    bench::report("sidebar_landing", bench::median(landing));
    bench::report("sidebar_group", bench::median(group));
    bench::report("sidebar_filter", bench::median(filter));
}

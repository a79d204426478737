// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_palette FILES FOLDERS: the palette over so many files in so many folders: how long the names take to prepare in
// the background, how long a keystroke keeps the main thread, by what is typed, and what the plain way takes, which
// lowers each name and looks for the words in it.
#include "MainThread.h"
#include "browsing/palette/PaletteCatalog.h"
#include "browsing/palette/PaletteSearch.h"

#include <array>
#include <cstdlib>
#include <random>

using namespace lumbra;

namespace {

constexpr int rounds = 21;
constexpr int projectCount = 200;

// Names as people and their agents give them.
constexpr std::array words{"Shot",
                           "take",
                           "final",
                           "render",
                           "lumbra",
                           "scene",
                           "Beach",
                           "night",
                           "Street",
                           "portrait",
                           "Concept",
                           "draft",
                           "color",
                           "grade",
                           "sunset",
                           "mix",
                           "vocal",
                           "Loop",
                           "drone",
                           "interview",
                           "caf\xC3\xA9",
                           "\xC3\x9C"
                           "ber",
                           "city",
                           "forest",
                           "hero",
                           "storyboard"};
constexpr std::array extensions{"png", "jpg", "mp4", "wav", "md", "webp"};

struct Library {
    AssetIndex index;
    QList<Project> projects;
};

Library made(size_t files, size_t folders) {
    std::mt19937 random(42);
    const auto word = [&] { return std::string(words[random() % words.size()]); };
    Library library;
    for (int number = 0; number < projectCount; ++number) {
        const QString name = QStringLiteral("project-%1").arg(number);
        library.projects.append({name, Location(QByteArray("/library")).child(name), {}});
    }
    std::vector<std::shared_ptr<AssetIndex::Folder>> all;
    for (size_t number = 0; number < folders; ++number) {
        const Project& project = library.projects[qsizetype(number % projectCount)];
        const std::string path =
            project.url.path().toStdString() + '/' + word() + '/' + word() + std::to_string(number);
        const auto folder = std::make_shared<AssetIndex::Folder>(path);
        const size_t share = files / folders + (number < files % folders ? 1 : 0);
        for (size_t file = 0; file < share; ++file) {
            const std::string name = word() + '-' + word() + '-' + word() + '-' + std::to_string(number) + '-'
                                     + std::to_string(file) + '.' + extensions[random() % extensions.size()];
            folder->add({name, AssetKind::image, 1, Date{double(random() % 100'000'000)}, {}});
        }
        folder->finish();
        all.push_back(folder);
    }
    library.index = AssetIndex(std::move(all));
    return library;
}

struct Typed {
    const char* name;
    const char* text;
};

// From what all names hold to what none does; the words of the last two are frequent, and never in one name.
constexpr std::array queries{Typed{"letter", "e"},
                             Typed{"word", "beach"},
                             Typed{"words", "night beach"},
                             Typed{"accent", "\xC3\xBC"
                                             "ber caf\xC3\xA9"},
                             Typed{"number", "99999"},
                             Typed{"none", "szqxz"},
                             Typed{"apart", "png mp4"},
                             Typed{"apart3", "wav webp md"}};

} // namespace

int main(int count, char** arguments) {
    const QCoreApplication application(count, arguments);
    const size_t files = count == 3 ? std::strtoull(arguments[1], nullptr, 10) : 0;
    const size_t folders = count == 3 ? std::strtoull(arguments[2], nullptr, 10) : 0;
    if (files == 0 || folders == 0) {
        std::fprintf(stderr, "usage: bench_palette FILES FOLDERS\n");
        return 2;
    }
    const Library library = made(files, folders);
    const auto start = bench::Clock::now();
    const PaletteCatalog catalog(library.index, library.projects, {});
    bench::report("palette_prepare", bench::millisecondsSince(start));

    QStringList names;
    names.reserve(qsizetype(files));
    for (const AssetIndex::FolderPointer& folder : library.index.folders())
        for (size_t place = 0; place < folder->size(); ++place)
            names.append(QString::fromUtf8(folder->at(place).name.data(), qsizetype(folder->at(place).name.size())));

    const PaletteSearch::Facts facts{.groups = {},
                                     .projects = library.projects,
                                     .hueOfGroup = [](const ProjectGroup&) { return 0; },
                                     .hueOfProject = [](const Project&) { return 0; },
                                     .starred = 0,
                                     .root = Location(QByteArray("/library"))};
    qsizetype found = 0;
    double worst = 0;
    for (const Typed& typed : queries) {
        const QString text = QString::fromUtf8(typed.text);
        std::vector<bench::Run> runs{
            {"ours",
             [&] {
                 const PaletteQuery query = PaletteQuery::typed(text);
                 found += PaletteSearch::projects(query, facts).size();
                 found += catalog.folders(query, PaletteSearch::mostFolders).size();
                 found += catalog.files(query, PaletteSearch::mostNamedFiles, library.index).size();
             }},
            {"plain",
             [&] {
                 const QStringList asked = text.toLower().split(u' ');
                 for (const QString& name : std::as_const(names)) {
                     const QString lowered = name.toLower();
                     found += std::ranges::all_of(asked, [&](const QString& one) { return lowered.contains(one); });
                 }
             }},
        };
        bench::interleave(runs, typed.text == queries.front().text ? rounds : rounds / 3);
        const double ours = bench::median(runs[0].milliseconds);
        worst = std::max(worst, ours);
        bench::report((std::string("palette_") + typed.name).c_str(), ours);
        bench::report((std::string("palette_") + typed.name + "_plain").c_str(), bench::median(runs[1].milliseconds));
    }
    bench::report("palette_worst", worst);
    return found == 0;
}

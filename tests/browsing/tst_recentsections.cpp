// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/browser/RecentSections.h"
#include "support/Strings.h"

#include <QTest>

using namespace lumbra;

namespace {

Asset file(const char* path, double modified) {
    Asset asset;
    asset.url = Location(QByteArray(path));
    asset.kind = *assetKindOf(asset.url);
    asset.modified = Date{modified};
    return asset;
}

// Files n = first to last of a folder, each a second newer than the one before.
Assets frames(const QByteArray& folder, int first, int last, double start = 1000, const char* extension = ".png") {
    Assets assets;
    for (int n = first; n <= last; ++n)
        assets.append(file((folder + '/' + QByteArray::number(n) + extension).constData(), start + n));
    return assets;
}

// "1.png" for an asset, "[5.png +8]" for a stack.
QStringList names(const RecentSection& section) {
    QStringList names;
    for (const RecentEntry& entry : section.entries) {
        if (const auto* stack = std::get_if<RecentStack>(&entry))
            names << QStringLiteral("[%1 +%2]").arg(stack->cover.url.name()).arg(stack->count);
        else
            names << std::get<Asset>(entry).url.name();
    }
    return names;
}

} // namespace

class TestRecentSections : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingGivesNoSection() { QVERIFY(recentSections({}).isEmpty()); }

    void twelveImagesOfOneFolderGiveFourAndAStackOfEight() {
        const auto sections = recentSections(frames("/p/a", 1, 12));
        QCOMPARE(sections.size(), 1);
        QCOMPARE(sections[0].kind, AssetKind::image);
        QCOMPARE(sections[0].total, 12);
        QCOMPARE(names(sections[0]), (strings({"12.png", "11.png", "10.png", "9.png", "[8.png +8]"})));
        const auto stack = std::get<RecentStack>(sections[0].entries.last());
        QCOMPARE(stack.folder, Location(QByteArray("/p/a")));
        QCOMPARE(stack.cover, file("/p/a/8.png", 1008));
    }

    void fourFilesOfAFolderStandAlone() {
        QCOMPARE(names(recentSections(frames("/p/a", 1, 4))[0]), (strings({"4.png", "3.png", "2.png", "1.png"})));
    }

    void aFifthFileIsAStackOfOne() {
        QCOMPARE(names(recentSections(frames("/p/a", 1, 5))[0]).last(), QStringLiteral("[1.png +1]"));
    }

    void foldersInterleavedInTimeHaveTheirOwnFourAndStack() {
        // a's files at even seconds, b's at odd ones.
        Assets assets;
        for (int n = 1; n <= 6; ++n) {
            assets.append(file(qPrintable(QStringLiteral("/p/a/a%1.png").arg(n)), 2 * n));
            assets.append(file(qPrintable(QStringLiteral("/p/b/b%1.png").arg(n)), 2 * n + 1));
        }
        QCOMPARE(names(recentSections(assets)[0]), (strings({"b6.png", "a6.png", "b5.png", "a5.png", "b4.png", "a4.png",
                                                             "b3.png", "a3.png", "[b2.png +2]", "[a2.png +2]"})));
    }

    void aStackStandsWhereItsFifthFileFell() {
        Assets assets = frames("/p/a", 1, 6);
        assets.append(file("/p/b/between.png", 1002.5));
        assets.append(file("/p/b/after.png", 1001.5));
        QCOMPARE(names(recentSections(assets)[0]),
                 (strings({"6.png", "5.png", "4.png", "3.png", "between.png", "[2.png +2]", "after.png"})));
    }

    void aFolderWithTwoKindsHasAStackInEach() {
        const auto sections = recentSections(frames("/p/a", 1, 10) + frames("/p/a", 1, 10, 1000, ".mp4"));
        QCOMPARE(sections.size(), 2);
        QCOMPARE(names(sections[0]).last(), QStringLiteral("[6.png +6]"));
        QCOMPARE(names(sections[1]).last(), QStringLiteral("[6.mp4 +6]"));
    }

    void sectionsStandInTheOrderOfKindsAndEmptyOnesAreAbsent() {
        const auto sections = recentSections({file("/p/d.pdf", 4), file("/p/s.mp3", 3), file("/p/i.png", 1)});
        QCOMPARE(sections.size(), 3);
        QCOMPARE(sections[0].kind, AssetKind::image);
        QCOMPARE(sections[1].kind, AssetKind::audio);
        QCOMPARE(sections[2].kind, AssetKind::document);
    }

    void equalDatesKeepTheOrderInWhichTheyCame() {
        const Assets assets{file("/p/b/1.png", 7), file("/p/a/2.png", 7), file("/p/b/3.png", 7), file("/p/c/4.png", 7)};
        QCOMPARE(names(recentSections(assets)[0]), (strings({"1.png", "2.png", "3.png", "4.png"})));
    }

    void ofEqualDatesInOneFolderTheFirstFourStandAlone() {
        Assets assets;
        for (int n = 1; n <= 7; ++n)
            assets.append(file(qPrintable(QStringLiteral("/p/a/%1.png").arg(n)), 7));
        QCOMPARE(names(recentSections(assets)[0]), (strings({"1.png", "2.png", "3.png", "4.png", "[5.png +3]"})));
    }

    void nestedFoldersAreFoldersOfTheirOwn() {
        QCOMPARE(recentSections(frames("/p/a", 1, 4) + frames("/p/a/b", 1, 4, 2000))[0].entries.size(), 8);
    }

    void identityIsThePathOrTheFolderOfTheStack() {
        QCOMPARE(identity(file("/p/a/1.png", 1)), QStringLiteral("/p/a/1.png"));
        QCOMPARE(identity(RecentStack{Location(QByteArray("/p/a")), {}, 3}), QStringLiteral("stack:/p/a"));
    }
};

QTEST_GUILESS_MAIN(TestRecentSections)
#include "tst_recentsections.moc"

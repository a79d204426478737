// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/AssetIndex.h"

#include <QtTest>

#include <algorithm>
#include <functional>
#include <map>
#include <random>

using namespace lumbra;

class AssetIndexTest : public QObject {
    Q_OBJECT

private:
    static Asset asset(const std::string& path, qint64 size = 1, std::optional<Date> starred = std::nullopt) {
        return {Location(QByteArray::fromStdString(path)), AssetKind::image, size, Date{double(size)}, starred};
    }

    static AssetIndex indexOf(const std::vector<std::string>& paths) {
        AssetIndex::Changes changes;
        for (const auto& path : paths)
            changes.assets.append(asset(path));
        return AssetIndex().applying(changes);
    }

    static QByteArrayList paths(const Assets& assets) {
        QByteArrayList list;
        for (const Asset& entry : assets)
            list.append(entry.url.path());
        return list;
    }

    static QByteArrayList everything(const AssetIndex& index) {
        QByteArrayList list;
        for (const auto& folder : index.folders())
            for (size_t i = 0; i < folder->size(); ++i)
                list.append(folder->assetAt(i).url.path());
        return list;
    }

    static Location at(const char* path) { return Location(QByteArray(path)); }

private Q_SLOTS:
    void emptyHoldsNothing() {
        const AssetIndex index;
        QVERIFY(index.isEmpty());
        QVERIFY(!index.find(at("/a/b.png")));
        QVERIFY(index.assetsUnder(at("/a")).isEmpty());
        QVERIFY(index.applying({}) == index);
    }

    void aStoredAssetIsFoundWhole() {
        const Asset starred = asset("/l/p/a.png", 42, Date{1700000000.125});
        const AssetIndex index = AssetIndex().applying({{}, {starred, asset("/l/p/b.png")}});
        QCOMPARE(index.count(), 2);
        QVERIFY(index.find(at("/l/p/a.png")) == starred);
        QVERIFY(!index.contains(at("/l/p/c.png")));
        QVERIFY(!index.contains(at("/l/p")));
    }

    void anOlderEntryIsReplaced() {
        const AssetIndex before = AssetIndex().applying({{}, {asset("/l/p/a.png", 1, Date{5})}});
        const AssetIndex after = before.applying({{}, {asset("/l/p/a.png", 2)}});
        QCOMPARE(after.count(), 1);
        QCOMPARE(after.find(at("/l/p/a.png"))->size, 2);
        QVERIFY(!after.find(at("/l/p/a.png"))->isStarred());
        QVERIFY(before.find(at("/l/p/a.png"))->isStarred()); // the copy that was held did not change
    }

    void aFolderClaimsNoSiblingWithALongerName() {
        const AssetIndex index = indexOf({"/l/p/a.png", "/l/p-2/b.png", "/l/p/sub/c.png", "/l/p0/d.png"});
        QCOMPARE(paths(index.assetsUnder(at("/l/p"))), (QByteArrayList{"/l/p/a.png", "/l/p/sub/c.png"}));
        QCOMPARE(index.foldersUnder(at("/l/p")).size(), 2);
        QCOMPARE(index.assetsUnder(at("/")).size(), 4);
    }

    void aGonePathThatIsNoAssetTakesAllBelowIt() {
        const AssetIndex index = indexOf({"/l/p/a.png", "/l/p/sub/c.png", "/l/p/sub/deep/d.png", "/l/p/subway/e.png"});
        const AssetIndex after = index.applying({{at("/l/p/sub")}, {}});
        QCOMPARE(everything(after), (QByteArrayList{"/l/p/a.png", "/l/p/subway/e.png"}));
        QCOMPARE(after.count(), 2);
        QCOMPARE(index.count(), 4);
    }

    void goneComesBeforeStored() {
        const AssetIndex index = indexOf({"/l/p/sub/c.png", "/l/p/sub/x.png"});
        const AssetIndex after = index.applying({{at("/l/p/sub")}, {asset("/l/p/sub/c.png", 9)}});
        QCOMPARE(everything(after), (QByteArrayList{"/l/p/sub/c.png"}));
        QCOMPARE(after.find(at("/l/p/sub/c.png"))->size, 9);
        QCOMPARE(after.count(), 1);
    }

    void anEmptiedFolderLeavesTheTable() {
        const AssetIndex after = indexOf({"/l/p/a.png", "/l/q/b.png"}).applying({{at("/l/p/a.png")}, {}});
        QCOMPARE(after.folders().size(), 1u);
    }

    void unknownGonePathsChangeNothing() {
        const AssetIndex index = indexOf({"/l/p/a.png"});
        QCOMPARE(everything(index.applying({{at("/l/x"), at("/l/p/none.png")}, {}})), everything(index));
    }

    // And not everything, as the beginning of every path.
    void nowhereHoldsNothing() {
        const AssetIndex index = indexOf({"/l/p/a.png"});
        QVERIFY(index.assetsUnder(Location()).isEmpty());
        QVERIFY(!index.contains(Location()));
        QCOMPARE(index.applying({{Location()}, {}}).count(), 1);
    }

    void ofTwoFoldersWithOnePathTheLaterStays() {
        auto first = std::make_shared<AssetIndex::Folder>("/l/p");
        first->add({"a.png", AssetKind::image, 1, {}, {}});
        auto second = std::make_shared<AssetIndex::Folder>("/l/p");
        second->add({"b.png", AssetKind::image, 1, {}, {}});
        second->add({"b.png", AssetKind::video, 2, {}, Date{3}});
        first->finish();
        second->finish();
        const AssetIndex index({first, second});
        QCOMPARE(index.count(), 1);
        QCOMPARE(index.find(at("/l/p/b.png"))->kind, AssetKind::video);
        QVERIFY(index.find(at("/l/p/b.png"))->starred == Date{3});
    }

    // Random batches against a plain map that follows the same rules; few folders, and so many that they fill chunks,
    // whose borders move as folders come and go.
    void agreesWithAPlainMapOverRandomBatches_data() {
        QTest::addColumn<unsigned>("letters"); // that a folder's name may have
        QTest::addColumn<int>("atFirst");      // files
        QTest::newRow("few folders") << 3u << 0;
        QTest::newRow("many folders") << 16u << 8000;
        QTest::newRow("folders that grow to many") << 16u << 0;
    }

    void agreesWithAPlainMapOverRandomBatches() {
        QFETCH(unsigned, letters);
        QFETCH(int, atFirst);
        std::mt19937 random(20240501);
        const auto number = [&](unsigned below) { return unsigned(random() % below); };
        const auto folder = [&] {
            std::string path = "/l";
            for (unsigned depth = 1 + number(3); depth > 0; --depth)
                path += "/" + std::string(1, char('a' + number(letters))) + (number(4) == 0 ? "-" : "");
            return path;
        };
        const auto file = [&] { return folder() + "/" + std::to_string(number(6)) + ".png"; };
        const auto randomAsset = [&](int round) {
            return asset(file(), qint64(number(1000)), number(3) ? std::nullopt : std::optional(Date{double(round)}));
        };

        std::map<std::string, Asset> truth;
        AssetIndex index;
        const auto apply = [&](const AssetIndex::Changes& changes) {
            for (const Location& gone : changes.gone) {
                const std::string path(gone.view());
                if (truth.erase(path) == 0)
                    std::erase_if(truth, [&](const auto& entry) { return entry.first.starts_with(path + "/"); });
            }
            for (const Asset& stored : changes.assets)
                truth.insert_or_assign(std::string(stored.url.view()), stored);
            // What a batch removes is told by the index it is applied to, not by what the batch itself removed before.
            index = index.applying(changes);
        };
        const auto agrees = [&](const Location& below) {
            std::map<std::string, Asset> found;
            const Assets assets = index.assetsUnder(below);
            for (const Asset& each : assets)
                found.insert_or_assign(std::string(each.url.view()), each);
            std::map<std::string, Asset> expected;
            for (const auto& [path, each] : truth)
                if (path.starts_with(std::string(below.view()) + "/"))
                    expected.insert_or_assign(path, each);
            return found == expected && assets.size() == qsizetype(found.size());
        };

        AssetIndex::Changes first;
        for (int i = 0; i < atFirst; ++i)
            first.assets.append(randomAsset(0));
        apply(first);
        for (int round = 0; round < 1000; ++round) {
            AssetIndex::Changes changes;
            for (unsigned i = number(3); i > 0; --i)
                changes.gone.append(at((number(2) ? folder() : file()).c_str()));
            // Now and then a whole project arrives.
            for (unsigned i = number(50) == 0 ? letters * 40 : number(5); i > 0; --i)
                changes.assets.append(randomAsset(round));
            apply(changes);
            QCOMPARE(index.count(), qsizetype(truth.size()));
            if (round % 50 == 0)
                QVERIFY(agrees(at(folder().c_str())));
        }
        QVERIFY(agrees(at("/l")));
        std::vector<std::string> folders;
        for (const auto& each : index.folders()) {
            QVERIFY(each->size() > 0);
            folders.push_back(each->path());
        }
        QCOMPARE(folders.size(), index.folders().size());
        QVERIFY(std::ranges::is_sorted(folders, std::ranges::less_equal()));
        for (const auto& [path, expected] : truth)
            QVERIFY(index.find(Location(QByteArray::fromStdString(path))) == expected);
    }

    // What lies between the files of a batch is taken over in stretches, names, dates and stars together.
    void aLongFolderIsChangedAtManyPlacesAtOnce() {
        std::mt19937 random(7);
        const auto file = [](unsigned n) { return "/l/p/" + std::string(1 + n % 7, 'x') + std::to_string(n) + ".png"; };
        const auto starAt = [&](int round) { return random() % 2 ? std::optional(Date{double(round)}) : std::nullopt; };
        std::map<std::string, Asset> truth;
        std::vector<unsigned> order(3000);
        std::iota(order.begin(), order.end(), 0u);
        std::ranges::shuffle(order, random);
        auto unsorted = std::make_shared<AssetIndex::Folder>("/l/p");
        for (const unsigned n : order) {
            const Asset made = asset(file(n), n, starAt(1));
            unsorted->add({made.url.lastComponent(), made.kind, made.size, made.modified, made.starred});
            truth.insert_or_assign(file(n), made);
        }
        unsorted->finish();
        AssetIndex index({unsorted});
        for (int round = 2; round < 40; ++round) {
            AssetIndex::Changes changes;
            for (int i = 0; i < round * 5; ++i) {
                const std::string gone = file(unsigned(random() % 3500));
                if (truth.erase(gone) > 0)
                    changes.gone.append(Location(QByteArray::fromStdString(gone)));
            }
            for (int i = 0; i < round * 5; ++i) {
                const Asset made = asset(file(unsigned(random() % 3500)), qint64(random() % 1000), starAt(round));
                changes.assets.append(made);
                truth.insert_or_assign(std::string(made.url.view()), made);
            }
            index = index.applying(changes);
            QCOMPARE(index.count(), qsizetype(truth.size()));
            const Assets found = index.assetsUnder(at("/l"));
            QVERIFY(std::ranges::equal(found, truth, {}, {}, [](const auto& entry) { return entry.second; }));
        }
    }

    void takesFewBytesAFile() {
        AssetIndex::Changes changes;
        for (int i = 0; i < 20000; ++i)
            changes.assets.append(asset("/home/user/Lumbra/project/renders/folder " + std::to_string(i / 20)
                                        + "/Shot take final " + std::to_string(i) + ".mp4"));
        const AssetIndex index = AssetIndex().applying(changes);
        QVERIFY2(index.bytes() / 20000 <= 80, qPrintable(QString::number(index.bytes() / 20000)));
    }
};

QTEST_GUILESS_MAIN(AssetIndexTest)
#include "tst_assetindex.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/Model.h"
#include "support/TestHome.h"

#include <QtTest>

#include <unistd.h>

using namespace lumbra;

class ModelTest : public QObject {
    Q_OBJECT

private:
    static Asset assetAt(const char* path, double modified, qint64 size = 0) {
        return {Location(QByteArray(path)), AssetKind::image, size, Date{modified}, std::nullopt};
    }

    static QStringList names(const Assets& assets) {
        QStringList list;
        for (const Asset& asset : assets)
            list.append(asset.url.name());
        return list;
    }

private Q_SLOTS:
    void kindFollowsTheExtension_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QString>("kind"); // raw value, empty for none
        QTest::newRow("upper-case extension") << QByteArray("PHOTO.JPG") << QStringLiteral("image");
        QTest::newRow("webm is a video everywhere") << QByteArray("a.webm") << QStringLiteral("video");
        QTest::newRow("mkv") << QByteArray("a.mkv") << QStringLiteral("video");
        QTest::newRow("mp4") << QByteArray("build.mp4") << QStringLiteral("video");
        QTest::newRow("ts is source code") << QByteArray("index.ts") << QString();
        QTest::newRow("flac") << QByteArray("a.flac") << QStringLiteral("audio");
        QTest::newRow("icon") << QByteArray("favicon.ico") << QString();
        QTest::newRow("cursor") << QByteArray("a.cur") << QString();
        QTest::newRow("icns") << QByteArray("a.icns") << QString();
        QTest::newRow("no extension") << QByteArray("README") << QString();
        QTest::newRow("dot at the end") << QByteArray("a.") << QString();
        QTest::newRow("hidden without a further dot") << QByteArray(".png") << QString();
        QTest::newRow("unknown goes on to the documents") << QByteArray("scene.usdz") << QStringLiteral("document");
        QTest::newRow("unknown everywhere") << QByteArray("data.json") << QString();
        QTest::newRow("an image although it stands among the documents")
            << QByteArray("a.psd") << QStringLiteral("image");
        QTest::newRow("long extension") << QByteArray("a.extension-of-seventeen") << QString();
        for (const char* extension : {"pdf",    "txt", "md",     "rtf",     "docx", "doc", "xlsx", "xls", "csv",
                                      "pptx",   "key", "pages",  "numbers", "srt",  "vtt", "html", "zip", "ai",
                                      "sketch", "fig", "lottie", "blend",   "usdz", "glb", "obj",  "fbx"})
            QTest::newRow(extension) << QByteArray("a.") + extension << QStringLiteral("document");
    }
    void kindFollowsTheExtension() {
        QFETCH(QByteArray, name);
        QFETCH(QString, kind);
        const auto found = assetKindOf(Location("/x/" + name));
        QCOMPARE(found ? rawValue(*found) : QString(), kind);
    }

    void rawValuesReadBack() {
        for (const AssetKind kind : allAssetKinds)
            QCOMPARE(assetKindFromRaw(rawValue(kind)), std::optional(kind));
        for (const SortOrder order : allSortOrders)
            QCOMPARE(sortOrderFromRaw(rawValue(order)), std::optional(order));
        QVERIFY(!assetKindFromRaw(u"all"));
        QVERIFY(!sortOrderFromRaw(u""));
    }

    void aFolderOrAPathThatHasGoneIsNoAsset() {
        const TestHome home;
        QVERIFY(!Asset::read(home.folder("folder.png")));
        QVERIFY(!Asset::read(home.path().child("gone.png")));
        const Location file = home.file("real.png", "12345");
        TestHome::touch(file, 1700000000.25);
        const auto asset = Asset::read(file);
        QVERIFY(asset);
        QCOMPARE(asset->size, 5);
        QCOMPARE(asset->modified.seconds, 1700000000.25);
        QVERIFY(!asset->isStarred());
        QVERIFY(symlink(file.path().constData(), home.path().child("link.png").path().constData()) == 0);
        QVERIFY(!Asset::read(home.path().child("link.png")));
    }

    void equalDatesKeepTheirOrder() {
        const Assets given{assetAt("/a/1.png", 5), assetAt("/a/2.png", 7), assetAt("/a/3.png", 5)};
        QCOMPARE(names(sorted(SortOrder::newest, given)),
                 (QStringList{QStringLiteral("2.png"), QStringLiteral("1.png"), QStringLiteral("3.png")}));
        QCOMPARE(names(sorted(SortOrder::oldest, given)),
                 (QStringList{QStringLiteral("1.png"), QStringLiteral("3.png"), QStringLiteral("2.png")}));
    }

    void namesSortByTheNumbersInThem() {
        const Assets given{assetAt("/a/file 10.png", 0), assetAt("/a/File 9.png", 0), assetAt("/a/alpha.png", 0)};
        QCOMPARE(
            names(sorted(SortOrder::name, given)),
            (QStringList{QStringLiteral("alpha.png"), QStringLiteral("File 9.png"), QStringLiteral("file 10.png")}));
    }

    void largestFirst() {
        const Assets given{assetAt("/a/1.png", 0, 5), assetAt("/a/2.png", 0, 9), assetAt("/a/3.png", 0, 5)};
        QCOMPARE(names(sorted(SortOrder::size, given)),
                 (QStringList{QStringLiteral("2.png"), QStringLiteral("1.png"), QStringLiteral("3.png")}));
    }

    void hueDependsOnlyOnTheNameWhateverItsCase() {
        QCOMPARE(Hue::indexFor(QStringLiteral("Demo")), Hue::indexFor(QStringLiteral("demo")));
        // 5381 * 33 + 'a' = 177670
        QCOMPARE(Hue::indexFor(QStringLiteral("a")), 0);
        QCOMPARE(Hue::indexFor(QString()), 5381 % 10);
        // Wraps at 32 bits: the same loop in 64 bits would end elsewhere.
        quint32 hash = 5381;
        for (const char c : QByteArray("a-rather-long-project-name"))
            hash = hash * 33u + quint8(c);
        QCOMPARE(Hue::indexFor(QStringLiteral("A-Rather-Long-Project-Name")), int(hash % 10));
    }

    void monograms_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("mark");
        QTest::newRow("two words") << QStringLiteral("agent-demo") << QStringLiteral("AD");
        QTest::newRow("a version") << QStringLiteral("site_v2") << QStringLiteral("S2");
        QTest::newRow("a version of two digits") << QStringLiteral("app v10") << QStringLiteral("A1");
        QTest::newRow("a number") << QStringLiteral("app.12") << QStringLiteral("A1");
        QTest::newRow("a capital version") << QStringLiteral("app V3") << QStringLiteral("A3");
        QTest::newRow("one word") << QStringLiteral("lumen") << QStringLiteral("L");
        QTest::newRow("a lone version is a word") << QStringLiteral("v2") << QStringLiteral("V");
        QTest::newRow("only separators") << QStringLiteral("___") << QStringLiteral("?");
        QTest::newRow("empty") << QString() << QStringLiteral("?");
        QTest::newRow("no version after all") << QStringLiteral("site v2b") << QStringLiteral("SV");
        QTest::newRow("user-perceived characters")
            << QStringLiteral("👩‍🎨-art") << QStringLiteral("👩‍🎨A");
    }
    void monograms() {
        QFETCH(QString, name);
        QFETCH(QString, mark);
        QCOMPARE(monogram(name), mark);
    }

    void placesCompareByCaseAndPayload() {
        const QUuid id = QUuid::createUuid();
        QVERIFY(Place::group(id) == Place::group(id));
        QVERIFY(!(Place::group(id) == Place::group(QUuid::createUuid())));
        QVERIFY(Place() == Place::recent());
        QVERIFY(!(Place::starred() == Place::tidy()));
        QCOMPARE(Place::folder(Location(QByteArray("/a"))).folderUrl(), std::optional(Location(QByteArray("/a"))));
        QVERIFY(!Place::recent().folderUrl());
    }
};

QTEST_GUILESS_MAIN(ModelTest)
#include "tst_model.moc"

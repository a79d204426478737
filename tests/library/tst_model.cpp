// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Stars.h"
#include "library/Model.h"
#include "support/Strings.h"
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

    void kindsStandInTheirOrderWithTheirTexts() {
        QStringList raw;
        QStringList plural;
        for (const AssetKind kind : allAssetKinds) {
            raw.append(rawValue(kind));
            plural.append(pluralLabel(kind));
            QCOMPARE(assetKindFromRaw(rawValue(kind)), std::optional(kind));
        }
        QCOMPARE(raw, strings({"image", "video", "audio", "document"}));
        QCOMPARE(plural, strings({"Images", "Videos", "Audio", "Documents"}));
        QVERIFY(!assetKindFromRaw(u"all"));
        QVERIFY(!assetKindFromRaw(u"Image"));
    }

    void ordersStandInTheirOrderWithTheirTexts() {
        QStringList raw;
        for (const SortOrder order : allSortOrders) {
            raw.append(rawValue(order));
            QCOMPARE(sortOrderFromRaw(rawValue(order)), std::optional(order));
        }
        QCOMPARE(raw, strings({"newest", "oldest", "name", "size"}));
        QVERIFY(!sortOrderFromRaw(u""));
    }

    void assetsAreEqualOnlyInAllTheirFields() {
        const Asset one{Location(QByteArray("/a/1.png")), AssetKind::image, 5, Date{7}, Date{9}};
        QVERIFY(one == Asset(one));
        QCOMPARE(qHash(one), qHash(Asset(one)));
        Asset other = one;
        other.url = Location(QByteArray("/a/2.png"));
        QVERIFY(other != one && qHash(other) != qHash(one));
        other = one;
        other.kind = AssetKind::video;
        QVERIFY(other != one && qHash(other) != qHash(one));
        other = one;
        other.size = 6;
        QVERIFY(other != one && qHash(other) != qHash(one));
        other = one;
        other.modified = Date{8};
        QVERIFY(other != one && qHash(other) != qHash(one));
        other = one;
        other.starred = std::nullopt;
        QVERIFY(other != one && qHash(other) != qHash(one));
        QVERIFY(one.isStarred() && !other.isStarred());
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
        QVERIFY(Stars::write(file, true));
        QCOMPARE(Asset::read(file)->starred, Stars::read(file));
        QVERIFY(!Asset::read(home.file("notes.json")));
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

    void namesThatSortAlikeKeepTheirOrder() {
        const Assets given{assetAt("/b/take 1.png", 0), assetAt("/a/Take 1.PNG", 0), assetAt("/a/take 01.png", 0)};
        QCOMPARE(names(sorted(SortOrder::name, given)), strings({"take 1.png", "Take 1.PNG", "take 01.png"}));
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

    void theTenHues_data() {
        QTest::addColumn<size_t>("index"); // what projects and groups store
        QTest::addColumn<QString>("name");
        QTest::addColumn<QList<float>>("colours"); // background, then foreground
        size_t index = 0;
        const auto row = [&index](const char* name, const QList<float>& colours) {
            QTest::newRow(name) << index++ << QString::fromLatin1(name) << colours;
        };
        row("Amber", {0.23f, 0.165f, 0.094f, 1.0f, 0.7f, 0.36f});
        row("Teal", {0.075f, 0.196f, 0.184f, 0.37f, 0.83f, 0.77f});
        row("Violet", {0.165f, 0.137f, 0.25f, 0.71f, 0.61f, 1.0f});
        row("Sky", {0.09f, 0.172f, 0.25f, 0.49f, 0.77f, 1.0f});
        row("Rose", {0.227f, 0.118f, 0.165f, 1.0f, 0.56f, 0.69f});
        row("Lime", {0.153f, 0.2f, 0.102f, 0.72f, 0.88f, 0.48f});
        row("Sand", {0.204f, 0.188f, 0.122f, 0.9f, 0.81f, 0.64f});
        row("Periwinkle", {0.118f, 0.145f, 0.25f, 0.62f, 0.71f, 1.0f});
        row("Coral", {0.19f, 0.137f, 0.15f, 0.91f, 0.65f, 0.63f});
        row("Mint", {0.11f, 0.2f, 0.15f, 0.56f, 0.85f, 0.66f});
    }
    void theTenHues() {
        QFETCH(size_t, index);
        const Hue::Row& row = Hue::all.at(index);
        QTEST(QString::fromUtf16(row.name), "name");
        QTEST((QList<float>{row.background.red, row.background.green, row.background.blue, row.foreground.red,
                            row.foreground.green, row.foreground.blue}),
              "colours");
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
        QTest::newRow("digits of another script") << QStringLiteral("app-v\u0664\u0662") << QStringLiteral("A\u0664");
        QTest::newRow("digits beyond the first plane")
            << QString::fromUtf8("app-\xf0\x9d\x9f\x98\xf0\x9d\x9f\x99") << QString::fromUtf8("A\xf0\x9d\x9f\x98");
        QTest::newRow("a letter whose capital is two") << QStringLiteral("\u00dfa") << QStringLiteral("SS");
        QTest::newRow("a newline after a version") << QStringLiteral("app-v2\n") << QStringLiteral("A2");
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
        QVERIFY(!Place::folder(Location(QByteArray("/a"))).groupId());
        QCOMPARE(Place::group(id).groupId(), std::optional(id));
        QCOMPARE(qHash(Place::group(id)), qHash(Place::group(id)));
        QVERIFY(qHash(Place::starred()) != qHash(Place::recent()));
        QVERIFY(qHash(Place::folder(Location(QByteArray("/a")))) != qHash(Place::folder(Location(QByteArray("/b")))));
    }

    void aRepeatedTextIsANewToast() {
        const Toast first{.text = QStringLiteral("Starred")};
        const Toast second{.text = QStringLiteral("Starred")};
        QVERIFY(!(first == second));
        QVERIFY(first == Toast(first));
    }
};

QTEST_GUILESS_MAIN(ModelTest)
#include "tst_model.moc"

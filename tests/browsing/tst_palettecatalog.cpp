// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/palette/PaletteCatalog.h"
#include "support/Strings.h"

#include <QTest>

using namespace lumbra;

class tst_palettecatalog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void allWordsCountInAnyOrder();
    void theNewestFilesAreKeptNotTheBestScoring();
    void filesOfHiddenProjectsAreFound();
    void aFileThatHasGoneSinceIsPassedOver();
    void aFileThatHasChangedSinceIsShownAsItIs();
    void onlyAFilesNameCountsNotItsFolder();

    void foldersAreSearchedByTheirProjectAndTheWayBelowIt();
    void foldersOnTheWayToAFileAreFoundToo();
    void theProjectsOwnFolderIsNoFolder();
    void foldersOfHiddenProjectsAreNotFound();
    void foldersOfNoProjectAreNotFound();
    void aFolderBehindALinkLiesInTheProjectThatTheLinkIs();
    void aFolderNamedLikeTheLastWordStandsAbove();
    void amongFoldersOfOneRankTheOrderIsThatOfTheirPaths();
    void atMostSoManyFoldersAreFoundTheBestOnes();

private:
    struct File {
        const char* path;
        double modified = 0;
    };

    static AssetIndex indexOf(const QList<File>& files) {
        QMap<QByteArray, std::shared_ptr<AssetIndex::Folder>> folders;
        for (const File& file : files) {
            const Location url{QByteArray(file.path)};
            auto& folder = folders[url.parent().path()];
            if (!folder)
                folder = std::make_shared<AssetIndex::Folder>(url.parent().path().toStdString());
            folder->add({url.lastComponent(), AssetKind::image, 1, Date{file.modified}, {}});
        }
        std::vector<std::shared_ptr<AssetIndex::Folder>> all;
        for (const auto& folder : std::as_const(folders)) {
            folder->finish();
            all.push_back(folder);
        }
        return AssetIndex(std::move(all));
    }
    static Project project(const char* name, const char* path) {
        return {QString::fromLatin1(name), Location(QByteArray(path)), {}};
    }
    static PaletteQuery typed(const char* text) { return PaletteQuery::typed(QString::fromLatin1(text)); }

    static QStringList files(const PaletteCatalog& catalog, const AssetIndex& index, const char* query) {
        QStringList names;
        for (const Asset& asset : catalog.files(typed(query), 6, index))
            names.append(asset.url.name());
        return names;
    }
    QStringList files(const QList<File>& all, const char* query) const {
        const AssetIndex index = indexOf(all);
        return files(PaletteCatalog(index, m_projects, m_hidden), index, query);
    }
    QStringList folders(const QList<File>& all, const char* query, qsizetype most = 6) const {
        QStringList texts;
        for (const auto& folder : PaletteCatalog(indexOf(all), m_projects, m_hidden).folders(typed(query), most))
            texts.append(folder.text);
        return texts;
    }

    const QList<Project> m_projects{project("site", "/lib/site"), project("film", "/lib/film"),
                                    project("far", "/elsewhere/far"), project("secret", "/lib/secret")};
    const QSet<QString> m_hidden{QStringLiteral("secret")};
};

void tst_palettecatalog::allWordsCountInAnyOrder() {
    const QList<File> all{{"/lib/site/final-demo.mp4"}, {"/lib/site/demo.png"}, {"/lib/site/final.png"}};
    QCOMPARE(files(all, "demo final"), strings({"final-demo.mp4"}));
}

void tst_palettecatalog::theNewestFilesAreKeptNotTheBestScoring() {
    const QList<File> all{{"/lib/site/demo", 1},   {"/lib/site/demo1", 2},
                          {"/lib/film/a demo", 7}, {"/lib/film/b demo", 6},
                          {"/lib/site/c demo", 5}, {"/lib/site/d demo", 4},
                          {"/lib/site/e demo", 3}, {"/lib/film/a long name of a demo", 8}};
    QCOMPARE(files(all, "demo"), strings({"a long name of a demo", "a demo", "b demo", "c demo", "d demo", "e demo"}));
}

void tst_palettecatalog::filesOfHiddenProjectsAreFound() {
    QCOMPARE(files({{"/lib/secret/demo.png"}}, "demo"), strings({"demo.png"}));
}

void tst_palettecatalog::aFileThatHasGoneSinceIsPassedOver() {
    const AssetIndex index = indexOf({{"/lib/site/demo1.png", 2}, {"/lib/site/demo2.png", 1}});
    const PaletteCatalog catalog(index, m_projects, m_hidden);
    const AssetIndex later = index.applying({{Location(QByteArray("/lib/site/demo1.png"))}, {}});
    QCOMPARE(files(catalog, later, "demo"), strings({"demo2.png"}));
}

void tst_palettecatalog::aFileThatHasChangedSinceIsShownAsItIs() {
    const AssetIndex index = indexOf({{"/lib/site/demo.png", 2}});
    const PaletteCatalog catalog(index, m_projects, m_hidden);
    const Asset changed{Location(QByteArray("/lib/site/demo.png")), AssetKind::image, 7, Date{9}, {}};
    QCOMPARE(catalog.files(typed("demo"), 6, index.applying({{}, {changed}})), Assets{changed});
}

void tst_palettecatalog::onlyAFilesNameCountsNotItsFolder() {
    QCOMPARE(files({{"/lib/site/demo/a.png"}}, "demo"), QStringList());
}

void tst_palettecatalog::foldersAreSearchedByTheirProjectAndTheWayBelowIt() {
    const QList<File> all{{"/lib/site/renders/final/a.png"}};
    QCOMPARE(folders(all, "site final"), strings({"site/renders/final"}));
    QCOMPARE(folders(all, "site/ren"), strings({"site/renders", "site/renders/final"}));
    QCOMPARE(folders(all, "lib"), QStringList());
    QCOMPARE(folders(all, "a.png"), QStringList());
}

void tst_palettecatalog::foldersOnTheWayToAFileAreFoundToo() {
    QCOMPARE(folders({{"/lib/site/one/two/three/a.png"}, {"/lib/site/one/b.png"}}, "site"),
             strings({"site/one", "site/one/two", "site/one/two/three"}));
}

void tst_palettecatalog::theProjectsOwnFolderIsNoFolder() {
    QCOMPARE(folders({{"/lib/site/a.png"}}, "site"), QStringList());
}

void tst_palettecatalog::foldersOfHiddenProjectsAreNotFound() {
    QCOMPARE(folders({{"/lib/secret/renders/a.png"}, {"/lib/site/renders/a.png"}}, "renders"),
             strings({"site/renders"}));
}

void tst_palettecatalog::foldersOfNoProjectAreNotFound() {
    QCOMPARE(folders({{"/lib/gone/renders/a.png"}}, "renders"), QStringList());
}

void tst_palettecatalog::aFolderBehindALinkLiesInTheProjectThatTheLinkIs() {
    QCOMPARE(folders({{"/elsewhere/far/renders/a.png"}}, "far"), strings({"far/renders"}));
}

void tst_palettecatalog::aFolderNamedLikeTheLastWordStandsAbove() {
    const QList<File> all{{"/lib/film/cuts/takes/a.png"}, {"/lib/film/takes/cuts/a.png"}};
    QCOMPARE(folders(all, "takes cuts").first(), QStringLiteral("film/takes/cuts"));
    QCOMPARE(folders(all, "cuts takes").first(), QStringLiteral("film/cuts/takes"));
}

void tst_palettecatalog::amongFoldersOfOneRankTheOrderIsThatOfTheirPaths() {
    QCOMPARE(folders({{"/lib/site/cut3/a"}, {"/lib/site/cut1/a"}, {"/lib/film/cut2/a"}}, "cut"),
             strings({"film/cut2", "site/cut1", "site/cut3"}));
}

void tst_palettecatalog::atMostSoManyFoldersAreFoundTheBestOnes() {
    const QList<File> all{{"/lib/film/a long way/cut/a"},
                          {"/lib/film/a longer way to go/cut/a"},
                          {"/lib/film/cut/a"},
                          {"/lib/film/way/cut/a"}};
    QCOMPARE(folders(all, "cut", 2), strings({"film/cut", "film/way/cut"}));
    QCOMPARE(folders(all, "cut", 0), QStringList());
}

QTEST_GUILESS_MAIN(tst_palettecatalog)
#include "tst_palettecatalog.moc"

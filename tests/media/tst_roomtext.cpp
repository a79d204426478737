// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/room/RoomText.h"

#include <QTest>

using namespace lumbra;

namespace {

Asset named(const char* path) {
    Asset asset;
    asset.url = Location(QByteArray(path));
    asset.kind = assetKindOf(asset.url).value_or(AssetKind::document);
    return asset;
}

QString text(const char* words) {
    return QString::fromUtf8(words);
}

} // namespace

class tst_RoomText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachFileHasItsStage_data() {
        QTest::addColumn<QString>("stage");
        QTest::addColumn<bool>("usesPlayer");
        QTest::newRow("/a/still.png") << text("image") << false;
        QTest::newRow("/a/film.mp4") << text("video") << true;
        QTest::newRow("/a/film.MOV") << text("video") << true;
        QTest::newRow("/a/film.webm") << text("web") << false;
        QTest::newRow("/a/film.MKV") << text("web") << false;
        QTest::newRow("/a/film.ogv") << text("web") << false;
        QTest::newRow("/a/film.webm.mp4") << text("video") << true;
        QTest::newRow("/a/sound.mp3") << text("audio") << true;
        QTest::newRow("/a/sound.ogg") << text("audio") << true;
        QTest::newRow("/a/page.pdf") << text("document") << false;
    }
    void eachFileHasItsStage() {
        QFETCH(QString, stage);
        QFETCH(bool, usesPlayer);
        const Asset asset = named(QTest::currentDataTag());
        QCOMPARE(stageOf(asset), stage);
        QCOMPARE(usesEngine(asset), usesPlayer);
    }

    void theBreadcrumbLeadsFromTheProjectToTheFolder_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("crumbs");
        QTest::newRow("at the project's root") << text("/lib/Site/a.png") << text("My site");
        QTest::newRow("in a folder") << text("/lib/Site/renders/a.png") << text("My site / renders");
        QTest::newRow("deeper") << text("/lib/Site/renders/day 2/a.png") << text("My site / renders / day 2");
        QTest::newRow("beside it, under a name that begins alike") << text("/lib/Site2/x/a.png") << text("My site");
    }
    void theBreadcrumbLeadsFromTheProjectToTheFolder() {
        QFETCH(QString, file);
        QFETCH(QString, crumbs);
        const Project project{text("My site"), Location(QByteArray("/lib/Site")), {}};
        QCOMPARE(RoomText::breadcrumb(project, Location(QStringView(file))), crumbs);
    }

    void withoutAProjectTheBreadcrumbIsTheLibrary() {
        QCOMPARE(RoomText::breadcrumb(std::nullopt, Location(QByteArray("/lib/a.png"))), text("Library"));
    }

    void theLineOfFactsLeavesOutWhatIsNotKnown_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<double>("duration");
        QTest::addColumn<double>("modified");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("line");
        const double now = 1'000'000;
        const double never = Date::distantPast().seconds;
        QTest::newRow("all") << QSize(1920, 1080) << 72.9 << now - 7200 << 2
                             << text("1920 × 1080 · 1:12 · 3.2 MB · saved 2 hours ago · 3 of 24");
        QTest::newRow("no size") << QSize() << 72.0 << now - 7200 << 2
                                 << text("1:12 · 3.2 MB · saved 2 hours ago · 3 of 24");
        QTest::newRow("no length") << QSize(10, 20) << 0.0 << now - 7200 << 0
                                   << text("10 × 20 · 3.2 MB · saved 2 hours ago · 1 of 24");
        QTest::newRow("outside the order") << QSize() << 0.0 << now << -1 << text("3.2 MB · saved now");
        QTest::newRow("no date") << QSize() << 0.0 << never << -1 << text("3.2 MB");
    }
    void theLineOfFactsLeavesOutWhatIsNotKnown() {
        QFETCH(QSize, size);
        QFETCH(double, duration);
        QFETCH(double, modified);
        QFETCH(int, index);
        QFETCH(QString, line);
        const RoomText::Facts facts{size, duration, 3'200'000, Date{modified}, index, 24};
        QCOMPARE(RoomText::meta(facts, Date{1'000'000}), line);
    }
};

QTEST_GUILESS_MAIN(tst_RoomText)
#include "tst_roomtext.moc"

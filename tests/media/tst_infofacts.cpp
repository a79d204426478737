// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/room/InfoFacts.h"
#include "support/Strings.h"

#include <QtTest>

using namespace lumbra;

namespace {

Asset asset(const char* path, AssetKind kind) {
    return {
        .url = Location(QByteArray(path)), .kind = kind, .size = 3'200'000, .modified = {1'700'000'000}, .starred = {}};
}

QStringList told(const QList<InfoFact>& facts) {
    QStringList lines;
    for (const InfoFact& fact : facts)
        lines << fact.label + QStringLiteral(": ") + fact.value;
    return lines;
}

const InfoFacts::Playback film{QSize(1920, 1080), 65.9, QStringLiteral("HEVC")};

} // namespace

class tst_InfoFacts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        qputenv("TZ", "UTC");
        tzset();
    }

    void allThatIsKnownOfAFilmStandsInItsOrder() {
        Asset shown = asset("/library/site/a.mp4", AssetKind::video);
        shown.starred = Date{1'700'000'060};
        QCOMPARE(told(InfoFacts::of(shown, film, {})),
                 strings({"Dimensions: 1920 × 1080", "Length: 1:05", "Size: 3.2 MB", "Codec: HEVC",
                          "Saved: Nov 14, 2023 at 10:13 PM", "Starred: Nov 14, 2023 at 10:14 PM",
                          "Path: /library/site/a.mp4"}));
    }

    void whatIsNotKnownIsLeftOut() {
        QCOMPARE(told(InfoFacts::of(asset("/a.mp4", AssetKind::video), InfoFacts::Playback{}, {})),
                 strings({"Size: 3.2 MB", "Saved: Nov 14, 2023 at 10:13 PM", "Path: /a.mp4"}));
    }

    void aMissingDateIsNotKnown() {
        Asset shown = asset("/a.mp4", AssetKind::video);
        shown.modified = Date::distantPast();
        QCOMPARE(told(InfoFacts::of(shown, {}, {})), strings({"Size: 3.2 MB", "Path: /a.mp4"}));
    }

    void aSoundHasALengthAlone() {
        QCOMPARE(told(InfoFacts::of(asset("/a.mp3", AssetKind::audio), InfoFacts::Playback{{}, 3600, {}}, {})).first(2),
                 strings({"Length: 1:00:00", "Size: 3.2 MB"}));
    }

    void anImageIsAsLargeAsItsPixels() {
        QCOMPARE(told(InfoFacts::of(asset("/a.png", AssetKind::image), {}, {6000, 4000})).first(2),
                 strings({"Dimensions: 6000 × 4000", "Size: 3.2 MB"}));
        QCOMPARE(told(InfoFacts::of(asset("/a.png", AssetKind::image), {}, {})).first(),
                 QStringLiteral("Size: 3.2 MB"));
    }

    void aFilmThatThePlayerDoesNotPlayHasNoneOfItsFacts() {
        QCOMPARE(told(InfoFacts::of(asset("/a.webm", AssetKind::video), {}, {6000, 4000})).first(),
                 QStringLiteral("Size: 3.2 MB"));
    }

    void thePathAloneIsMarkedAsOne() {
        for (const InfoFact& fact : InfoFacts::of(asset("/a.mp4", AssetKind::video), film, {}))
            QCOMPARE(fact.isPath, fact.label == u"Path");
    }
};

QTEST_GUILESS_MAIN(tst_InfoFacts)
#include "tst_infofacts.moc"

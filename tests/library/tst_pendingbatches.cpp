// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/PendingBatches.h"

#include <QTest>

using namespace lumbra;

class tst_PendingBatches : public QObject {
    Q_OBJECT

private:
    static Location at(const char* path) { return Location(QByteArray(path)); }
    static Asset asset(const char* path, qint64 size = 1) {
        return {at(path), AssetKind::image, size, Date{1}, std::nullopt};
    }

    AssetIndex m_index;
    PendingBatches m_batches;

    void apply(quint64 batch) {
        for (const AssetIndex::Changes& changes : m_batches.due(batch))
            m_index = m_index.applying(changes);
        m_batches.finish(batch);
    }

    void finish(quint64 batch, const AssetIndex::Changes& changes) {
        m_batches.resolve(batch, changes);
        apply(batch);
    }

private Q_SLOTS:
    void init() {
        m_index = AssetIndex().applying({{}, {asset("/l/p/old.png")}});
        m_batches = {};
    }

    void oneAfterTheOtherEachIsApplied() {
        finish(m_batches.begin(), {{}, {asset("/l/p/a.png")}});
        QVERIFY(m_batches.isEmpty());
        finish(m_batches.begin(), {{at("/l/p/a.png"), at("/l/p/old.png")}, {asset("/l/p/b.png")}});
        QVERIFY(m_batches.isEmpty());
        QCOMPARE(m_index.count(), 1);
        QVERIFY(m_index.contains(at("/l/p/b.png")));
    }

    void aBatchThatIsOvertakenBringsNothingBack() {
        const auto walk = m_batches.begin();
        const auto deletion = m_batches.begin();
        finish(deletion, {{at("/l/p/deep/a.png")}, {}});
        QVERIFY(!m_batches.isEmpty());
        finish(walk, {{at("/l/p/deep")}, {asset("/l/p/deep/a.png"), asset("/l/p/deep/b.png")}});
        QVERIFY(m_batches.isEmpty());
        QVERIFY(!m_index.contains(at("/l/p/deep/a.png")));
        QVERIFY(m_index.contains(at("/l/p/deep/b.png")));
    }

    void aBatchThatIsOvertakenTakesNothingAway() {
        const auto deletion = m_batches.begin();
        const auto landing = m_batches.begin();
        finish(landing, {{}, {asset("/l/p/deep/a.png", 7)}});
        finish(deletion, {{at("/l/p/deep")}, {}});
        QCOMPARE(m_index.find(at("/l/p/deep/a.png"))->size, 7);
    }

    void whatIsThroughIsAppliedAsItFinishes() {
        const auto slow = m_batches.begin();
        finish(m_batches.begin(), {{}, {asset("/l/p/a.png")}});
        QVERIFY(m_index.contains(at("/l/p/a.png")));
        finish(m_batches.begin(), {{}, {asset("/l/p/a.png", 2)}});
        QCOMPARE(m_index.find(at("/l/p/a.png"))->size, 2);
        finish(slow, {{}, {asset("/l/p/a.png", 9), asset("/l/p/c.png", 9)}});
        QCOMPARE(m_index.find(at("/l/p/a.png"))->size, 2);
        QCOMPARE(m_index.find(at("/l/p/c.png"))->size, 9);
        QVERIFY(m_batches.isEmpty());
    }

    void whatIsResolvedAndNotAppliedComesAfterWhatCameBefore() {
        const auto landing = m_batches.begin();
        const auto deletion = m_batches.begin();
        m_batches.resolve(deletion, {{at("/l/p/deep")}, {}});
        finish(landing, {{}, {asset("/l/p/deep/a.png")}});
        QVERIFY(m_index.contains(at("/l/p/deep/a.png")));
        QVERIFY(!m_batches.isEmpty());
        apply(deletion);
        QVERIFY(!m_index.contains(at("/l/p/deep/a.png")));
        QVERIFY(m_batches.isEmpty());
    }

    void whatIsResolvedAndNotAppliedComesBeforeWhatCameAfter() {
        const auto walk = m_batches.begin();
        m_batches.resolve(walk, {{at("/l/p/deep")}, {asset("/l/p/deep/a.png"), asset("/l/p/deep/b.png")}});
        finish(m_batches.begin(), {{at("/l/p/deep/a.png")}, {}});
        QVERIFY(!m_batches.isEmpty());
        apply(walk);
        QVERIFY(!m_index.contains(at("/l/p/deep/a.png")));
        QVERIFY(m_index.contains(at("/l/p/deep/b.png")));
        QVERIFY(m_batches.isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_PendingBatches)
#include "tst_pendingbatches.moc"

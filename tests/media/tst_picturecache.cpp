// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/PictureCache.h"
#include "media/Thumbnails.h"

#include <QFile>
#include <QtTest>

#include <unistd.h>

#include <thread>

using namespace lumbra;

namespace {

// Sanitizers do, for a while.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool keepsFreedMemory = true;
#else
constexpr bool keepsFreedMemory = false;
#endif

QImage ofBytes(int bytes) {
    return QImage(bytes / 4, 1, QImage::Format_RGB32);
}

// Bytes of memory that this process has.
qsizetype resident() {
    QFile facts(QStringLiteral("/proc/self/statm"));
    if (!facts.open(QIODevice::ReadOnly))
        qFatal("there are no facts");
    return facts.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

QString key(int number) {
    return QString::number(number);
}

} // namespace

class tst_PictureCache : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatWasPutInIsFound() {
        PictureCache cache(1000);
        const QImage image = ofBytes(100);
        cache.insert(key(1), image);
        QCOMPARE(cache.find(key(1)).cacheKey(), image.cacheKey());
        QVERIFY(cache.find(key(2)).isNull());
    }

    void bytesAreBounded() {
        PictureCache cache(1000);
        for (int i = 0; i < 20; ++i)
            cache.insert(key(i), ofBytes(100));
        QCOMPARE(cache.count(), 10);
        QCOMPARE(cache.bytes(), 1000);
        QVERIFY(cache.find(key(9)).isNull());
        QVERIFY(!cache.find(key(10)).isNull());
    }

    void theNumberIsBounded() {
        PictureCache cache(1000, 3);
        for (int i = 0; i < 4; ++i)
            cache.insert(key(i), ofBytes(4));
        QCOMPARE(cache.count(), 3);
        QVERIFY(cache.find(key(0)).isNull());
    }

    void whatIsUsedStays() {
        PictureCache cache(1000, 3);
        for (int i = 0; i < 3; ++i)
            cache.insert(key(i), ofBytes(4));
        cache.find(key(0));
        cache.insert(key(3), ofBytes(4));
        QVERIFY(!cache.find(key(0)).isNull());
        QVERIFY(cache.find(key(1)).isNull());
    }

    void aKeyHoldsOnePicture() {
        PictureCache cache(1000);
        cache.insert(key(1), ofBytes(100));
        cache.insert(key(1), ofBytes(200));
        QCOMPARE(cache.count(), 1);
        QCOMPARE(cache.bytes(), 200);
        QCOMPARE(cache.find(key(1)).sizeInBytes(), 200);
    }

    void whatIsTooLargeOrNothingIsNotKept() {
        PictureCache cache(1000);
        cache.insert(key(1), ofBytes(100));
        cache.insert(key(2), ofBytes(1004));
        cache.insert(key(3), QImage());
        QCOMPARE(cache.count(), 1);
        QVERIFY(!cache.find(key(1)).isNull());
    }

    void aFullCacheOfThumbnailsIsBounded_data() {
        QTest::addColumn<int>("side");
        QTest::addColumn<int>("count");
        QTest::newRow("icons, by their number") << 64 << 4000;
        QTest::newRow("small ones, by their bytes") << 140 << 192 * 1024 * 1024 / (140 * 140 * 4);
        QTest::newRow("large ones of a fine screen") << 840 << 192 * 1024 * 1024 / (840 * 840 * 4);
    }

    void aFullCacheOfThumbnailsIsBounded() {
        QFETCH(int, side);
        QFETCH(int, count);
        const qsizetype before = resident();
        PictureCache cache(Thumbnails::largestBytes, Thumbnails::largestCount);
        for (int i = 0; i < count + 1500; ++i) {
            QImage image(side, side, QImage::Format_RGB32);
            image.fill(uint(i));
            cache.insert(key(i), image);
        }
        QCOMPARE(cache.count(), count);
        QVERIFY(cache.bytes() <= Thumbnails::largestBytes);
        constexpr qsizetype leeway = 24 * 1024 * 1024; // what the allocator and the keys take
        QVERIFY(keepsFreedMemory || resident() - before <= Thumbnails::largestBytes + leeway);
    }

    void anyThreadMayUseIt() {
        PictureCache cache(4000, 50);
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([&cache, t] {
                for (int i = 0; i < 2000; ++i) {
                    cache.insert(key((i * 7 + t) % 100), ofBytes(100));
                    cache.find(key(i % 100));
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        QVERIFY(cache.count() <= 40);
        QCOMPARE(cache.bytes(), cache.count() * 100);
    }
};

QTEST_GUILESS_MAIN(tst_PictureCache)
#include "tst_picturecache.moc"

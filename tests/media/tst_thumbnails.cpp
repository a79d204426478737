// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/Thumbnails.h"
#include "support/HostileReader.h"
#include "support/TestHome.h"

#include <QtTest>

#include <sys/stat.h>

using namespace lumbra;

namespace {

constexpr auto visible = Reader::Urgency::visible;

// What one request yielded, if it has.
struct Outcome {
    int calls = 0;
    QImage image;

    Thumbnails::Ready ready() {
        return [this](const QImage& made) {
            ++calls;
            image = made;
        };
    }
};

} // namespace

class tst_Thumbnails : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_home = std::make_unique<TestHome>();
        m_reader = std::make_unique<Reader>();
        m_thumbnails = std::make_unique<Thumbnails>(*m_reader);
    }

    void cleanup() {
        m_thumbnails.reset();
        m_reader.reset();
        m_home.reset();
    }

    void nearSizesShareABucket_data() {
        QTest::addColumn<double>("size");
        QTest::addColumn<int>("bucket");
        QTest::newRow("1") << 1.0 << 140;
        QTest::newRow("140") << 140.0 << 140;
        QTest::newRow("a little above 140") << 140.5 << 240;
        QTest::newRow("141") << 141.0 << 240;
        QTest::newRow("240") << 240.0 << 240;
        QTest::newRow("241") << 241.0 << 420;
        QTest::newRow("420") << 420.0 << 420;
        QTest::newRow("1000") << 1000.0 << 420;
    }

    void nearSizesShareABucket() {
        QFETCH(double, size);
        QTEST(Thumbnails::bucket(size), "bucket");
    }

    void keysNameTheFileItsDateAndTheSize_data() {
        QTest::addColumn<double>("modified");
        QTest::addColumn<QString>("date");
        QTest::newRow("whole seconds") << 1700000000.0 << QStringLiteral("1700000000");
        QTest::newRow("a fraction") << 1700000000.25 << QStringLiteral("1700000000.25");
        QTest::newRow("before 1970") << -1.5 << QStringLiteral("-1.5");
    }

    void keysNameTheFileItsDateAndTheSize() {
        QFETCH(double, modified);
        QFETCH(QString, date);
        const Asset asset{.url = Location(QByteArray("/a/b.png")), .modified = {modified}, .starred = {}};
        QCOMPARE(Thumbnails::imageKey(asset, 240.9), QStringLiteral("/a/b.png|%1|240").arg(date));
        QCOMPARE(Thumbnails::backdropKey(asset), QStringLiteral("/a/b.png|%1").arg(date));
    }

    void aPictureIsMadeAndKept() {
        const Asset asset = picture("a.png", {800, 400}, Qt::red);
        QVERIFY(m_thumbnails->peek(asset, 240).isNull());
        Outcome outcome;
        const auto request = m_thumbnails->imageFor(asset, 240, visible, this, outcome.ready());
        QTRY_COMPARE(outcome.calls, 1);
        QCOMPARE(outcome.image.size(), QSize(240, 120) * Thumbnails::scale());
        QCOMPARE(m_thumbnails->peek(asset, 240), outcome.image);
    }

    void whatIsKeptComesAtOnce() {
        const Asset asset = picture("a.png", {800, 400}, Qt::red);
        make(asset, 240);
        QFile::remove(asset.url.toString());
        Outcome outcome;
        const auto request = m_thumbnails->imageFor(asset, 240, visible, this, outcome.ready());
        QCOMPARE(outcome.calls, 1);
        QVERIFY(!outcome.image.isNull());
    }

    void eachBucketHasItsOwn() {
        const Asset asset = picture("a.png", {800, 800}, Qt::red);
        make(asset, 140);
        QVERIFY(m_thumbnails->peek(asset, 240).isNull());
        QVERIFY(m_thumbnails->peek(asset, 139).isNull());
    }

    void aRewrittenFileGetsANewPicture() {
        const Asset before = picture("a.png", {800, 800}, Qt::red);
        make(before, 240);
        Asset after = picture("a.png", {800, 800}, Qt::blue);
        after.modified = before.modified + 1;
        QVERIFY(m_thumbnails->peek(after, 240).isNull());
        QCOMPARE(make(after, 240).pixelColor(5, 5), QColor(Qt::blue));
    }

    void aFailureIsNotRemembered() {
        Asset asset = picture("a.png", {80, 80}, Qt::red);
        m_home->file("a.png", "no picture yet");
        QVERIFY(make(asset, 240).isNull());
        picture("a.png", {80, 80}, Qt::red); // the same file at the same date
        QVERIFY(!make(asset, 240).isNull());
    }

    void aRequestThatIsDroppedAnswersNobody() {
        Reader reader({.children = 1, .program = hostileProgram()});
        Thumbnails thumbnails(reader);
        const Asset fine{.url = m_home->file("fine", "fine"), .starred = {}};
        const Asset stalling{.url = m_home->file("stalling", "stall"), .starred = {}};
        Outcome running, queued, next;
        auto runningRequest = thumbnails.imageFor(stalling, 240, visible, this, running.ready());
        auto queuedRequest = thumbnails.imageFor(fine, 140, visible, this, queued.ready());
        runningRequest = {};
        queuedRequest = {};
        const auto nextRequest = thumbnails.imageFor(fine, 240, visible, this, next.ready());
        QTRY_COMPARE(next.calls, 1);
        QCOMPARE(running.calls, 0);
        QCOMPARE(queued.calls, 0);
        QVERIFY(thumbnails.peek(fine, 140).isNull());
    }

    // Such as enormous pictures while the machine is busy.
    void whatTakesTooLongIsNothingAndIsTriedAgainLater() {
        Reader reader({.children = 1, .limit = 0.3, .program = hostileProgram()});
        Thumbnails thumbnails(reader);
        const Asset asset{.url = m_home->file("enormous.png", "stall"), .starred = {}};
        const auto ask = [&] {
            Outcome outcome;
            const auto request = thumbnails.imageFor(asset, 240, visible, this, outcome.ready());
            [&] { QTRY_COMPARE(outcome.calls, 1); }();
            return outcome.image;
        };
        QVERIFY(ask().isNull());
        QVERIFY(ask().isNull());
        QCOMPARE(reader.startedCount(), size_t(2)); // it was really tried again
        m_home->file("enormous.png", "fine");       // the same file at the same date
        QCOMPARE(ask().size(), QSize(1, 1));
    }

    void aContextThatHasGoneIsNotCalledButThePictureStays() {
        const Asset asset = picture("a.png", {800, 400}, Qt::red);
        Outcome outcome;
        auto context = std::make_unique<QObject>();
        const auto request = m_thumbnails->imageFor(asset, 240, visible, context.get(), outcome.ready());
        context.reset();
        QTRY_VERIFY(!m_thumbnails->peek(asset, 240).isNull());
        QCOMPARE(outcome.calls, 0);
    }

    void whatNoReaderReadsIsLeftToTheDesktopsPrograms() {
        picture("drawn.png", {300, 200}, Qt::green);
        m_home->file(".local/share/thumbnailers/test.thumbnailer", "[Thumbnailer Entry]\nExec=cp "
                                                                       + m_home->path().path()
                                                                       + "/drawn.png %o\nMimeType=application/zip;\n");
        const Asset known{.url = m_home->file("known.zip", "no picture"), .starred = {}};
        const Asset unknown{.url = m_home->file("unknown.glb", "no picture"), .starred = {}};
        QCOMPARE(make(known, 240).pixelColor(5, 5), QColor(Qt::green));
        QVERIFY(!m_thumbnails->peek(known, 240).isNull());
        QVERIFY(make(unknown, 240).isNull());
    }

    void aBackdropIsMadeOnceForAllSizes() {
        const Asset asset = picture("a.png", {800, 400}, Qt::red);
        QVERIFY(m_thumbnails->peekBackdrop(asset).isNull());
        Outcome first, second;
        m_thumbnails->backdropFor(asset, make(asset, 240), this, first.ready());
        QTRY_COMPARE(first.calls, 1);
        QCOMPARE(first.image.size(), QSize(24, 12));
        QCOMPARE(m_thumbnails->peekBackdrop(asset), first.image);
        m_thumbnails->backdropFor(asset, make(asset, 420), this, second.ready());
        QCOMPARE(second.calls, 1);
        QCOMPARE(second.image, first.image);
    }

    void withoutAPictureThereIsNoBackdrop() {
        const Asset asset = picture("a.png", {800, 400}, Qt::red);
        Outcome outcome;
        m_thumbnails->backdropFor(asset, QImage(), this, outcome.ready());
        QCOMPARE(outcome.calls, 1);
        QVERIFY(outcome.image.isNull());
        QVERIFY(m_thumbnails->peekBackdrop(asset).isNull());
    }

private:
    Asset picture(const char* name, QSize size, const QColor& colour) const {
        QImage image(size, QImage::Format_RGB32);
        image.fill(colour);
        const Location file = m_home->path().child(std::string_view(name));
        if (!image.save(file.toString()))
            qFatal("cannot save %s", name);
        return {.url = file, .kind = AssetKind::image, .size = 1, .modified = {1700000000.5}, .starred = {}};
    }

    QImage make(const Asset& asset, double size) {
        Outcome outcome;
        const auto request = m_thumbnails->imageFor(asset, size, visible, this, outcome.ready());
        [&] { QTRY_COMPARE(outcome.calls, 1); }();
        return outcome.image;
    }

    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<Reader> m_reader;
    std::unique_ptr<Thumbnails> m_thumbnails;
};

QTEST_MAIN(tst_Thumbnails)
#include "tst_thumbnails.moc"

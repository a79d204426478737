// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/ArrivalPace.h"

#include <QQuickWindow>
#include <QtTest>

#include <ctime>
#include <memory>

using namespace lumbra;

namespace {

// A picture that is awaited until it is shown or destroyed.
struct Picture : QObject {
    explicit Picture(ArrivalPace& given) : pace(given), awaited(given) {}

    void arrive(bool& isShown) {
        pace.add(this, [this, &isShown] {
            isShown = true;
            awaited = {};
        });
    }

    ArrivalPace& pace;
    ArrivalPace::Awaited awaited;
};

} // namespace

// The next beat comes a tenth of a second after the frame: who is kept from the processor for so long waits for
// nothing.
#define VERIFY_WAITING(isShown)                                                                                        \
    if (isShown && m_sinceFrame.hasExpired(80))                                                                        \
        QSKIP("the machine is too slow to be early");                                                                  \
    QVERIFY(!isShown)

class tst_ArrivalPace : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_window = std::make_unique<QQuickWindow>();
        m_pace = &ArrivalPace::of(*m_window);
        connect(m_window.get(), &QQuickWindow::beforeSynchronizing, this, &tst_ArrivalPace::work, Qt::DirectConnection);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        drawFrame();
    }

    void cleanup() { m_window.reset(); }

    void aWindowHasOne() { QCOMPARE(&ArrivalPace::of(*m_window), m_pace); }

    void oneAloneIsShownAtOnce() {
        Picture picture(*m_pace);
        bool isShown = false;
        picture.arrive(isShown);
        QVERIFY(isShown);
    }

    void whileMoreAreAwaitedOneWaitsForTheNextBeat() {
        Picture one(*m_pace);
        const Picture other(*m_pace);
        bool isShown = false;
        one.arrive(isShown);
        VERIFY_WAITING(isShown);
        QTRY_VERIFY(isShown); // though the other one does not come
    }

    void theLastOneShowsThemAll() {
        Picture one(*m_pace);
        Picture other(*m_pace);
        bool isOneShown = false;
        bool isOtherShown = false;
        one.arrive(isOneShown);
        VERIFY_WAITING(isOneShown);
        other.arrive(isOtherShown);
        QVERIFY(isOneShown && isOtherShown);
    }

    void whatWaitsIsShownWhenTheOthersHaveGone() {
        Picture picture(*m_pace);
        auto other = std::make_unique<Picture>(*m_pace);
        bool isShown = false;
        picture.arrive(isShown);
        other.reset();
        QCoreApplication::processEvents(); // long before the next beat
        QVERIFY(isShown);
    }

    // It is still an object when it ceases to be awaited, but not one to be shown anything.
    void onePictureThatGoesWhileItWaitsIsNotShown() {
        Picture other(*m_pace);
        auto gone = std::make_unique<Picture>(*m_pace);
        bool isGoneShown = false;
        gone->arrive(isGoneShown);
        VERIFY_WAITING(isGoneShown);
        gone.reset();
        bool isOtherShown = false;
        other.arrive(isOtherShown);
        QVERIFY(isOtherShown);
        QVERIFY(!isGoneShown);
    }

private:
    // What makes the next beat come as late as it ever does.
    static void work() {
        const std::clock_t end = std::clock() + CLOCKS_PER_SEC / 20;
        while (std::clock() < end) {
        }
    }

    void drawFrame() {
        QSignalSpy drawn(m_window.get(), &QQuickWindow::frameSwapped);
        m_window->update();
        QVERIFY(drawn.wait());
        m_sinceFrame.start();
    }

    std::unique_ptr<QQuickWindow> m_window;
    ArrivalPace* m_pace = nullptr;
    QElapsedTimer m_sinceFrame;
};

QTEST_MAIN(tst_ArrivalPace)
#include "tst_arrivalpace.moc"

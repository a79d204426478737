// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/ArrivalPace.h"

#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

#include <chrono>
#include <memory>
#include <optional>

using namespace lumbra;
using namespace std::chrono_literals;

class tst_arrivalpace : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_window = std::make_unique<QQuickWindow>();
        m_window->resize(100, 100);
        m_shown.clear();
    }
    void cleanup() { m_window.reset(); }

    void aWindowHasOne() {
        QCOMPARE(&pace(), &pace());
        QQuickWindow other;
        QVERIFY(&ArrivalPace::of(other) != &pace());
    }

    void oneAloneIsShownAtOnce() {
        drawCostlyFrame();
        add("a");
        QCOMPARE(m_shown, QStringList{QStringLiteral("a")});
    }

    void asAPageIsMadeItsFirstFrameIsAwaited() {
        const ArrivalPace::Awaited more(pace());
        add("a");
        QCOMPARE(m_shown, QStringList());
        QTRY_COMPARE(m_shown, QStringList{QStringLiteral("a")});
    }

    void afterAQuietTimeTheFirstIsShownAtOnceThoughMoreAreAwaited() {
        const ArrivalPace::Awaited more(pace());
        add("a");
        QTRY_COMPARE(m_shown, QStringList{QStringLiteral("a")}); // by then the pause is over
        add("b");
        QCOMPARE(m_shown, (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    }

    void afterAFrameThoseThatComeAreShownTogether() {
        const ArrivalPace::Awaited more(pace());
        QVERIFY(isHeldAfterAFrame("a"));
        add("b");
        QTRY_COMPARE(m_shown, (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    }

    void theLastOneEndsTheWait() {
        std::optional<ArrivalPace::Awaited> more(pace());
        QVERIFY(isHeldAfterAFrame("a"));
        more.reset();
        QCoreApplication::sendPostedEvents(&pace());
        QCOMPARE(m_shown, QStringList{QStringLiteral("a")});
    }

    void whatIsOutOfSightWaits() {
        add("far", false);
        QCOMPARE(m_shown, QStringList());
        QTRY_COMPARE(m_shown, QStringList{QStringLiteral("far")});
    }

    void whatIsOutOfSightComesAlongWithWhatIsSeen() {
        add("far", false);
        add("near");
        QCOMPARE(m_shown, (QStringList{QStringLiteral("far"), QStringLiteral("near")}));
    }

    void oneThatLandsInAQuietTimeIsDrawnAtOnce() {
        drawCostlyFrame();
        QTRY_VERIFY(drawsAtOnce("a", true)); // as soon as no frame was drawn for a while
        QVERIFY(!drawsAtOnce("far", false));
    }

    void whileMoreAreAwaitedNothingIsDrawnAtOnce() {
        const ArrivalPace::Awaited more(pace());
        drawCostlyFrame();
        for (int time = 0; time < 10; ++time)
            QVERIFY(!drawsAtOnce("a", true));
    }

    void whoHasGoneIsNotShown() {
        std::optional<ArrivalPace::Awaited> more(pace());
        QVERIFY(isHeldAfterAFrame("a"));
        auto gone = std::make_unique<QObject>();
        pace().add(gone.get(), true, [this] { m_shown.append(QStringLiteral("gone")); });
        gone.reset();
        more.reset();
        QCoreApplication::sendPostedEvents(&pace());
        QCOMPARE(m_shown, QStringList{QStringLiteral("a")});
    }

    void aWindowThatGoesTakesWhatWaitsAlong() {
        ArrivalPace::Awaited more(pace());
        add("far", false);
        m_window.reset();
        more = {}; // which counts nowhere any more
        QCOMPARE(m_shown, QStringList());
    }

private:
    ArrivalPace& pace() { return ArrivalPace::of(*m_window); }

    void add(const char* name, bool inSight = true) {
        pace().add(m_window.get(), inSight, [this, name] { m_shown.append(QString::fromLatin1(name)); });
    }

    // Tried again where this machine was kept busy until after the next beat.
    bool isHeldAfterAFrame(const char* name) {
        for (int attempt = 0; attempt < 20; ++attempt) {
            m_shown.clear();
            drawCostlyFrame();
            add(name);
            if (m_shown.isEmpty())
                return true;
        }
        return false;
    }

    // Whether the window is told to draw before it has heard anything else.
    bool drawsAtOnce(const char* name, bool inSight) {
        QTest::qWait(20);
        struct Requests : QObject {
            bool eventFilter(QObject*, QEvent* event) override {
                count += event->type() == QEvent::UpdateRequest;
                return false;
            }
            int count = 0;
        } requests;
        m_window->installEventFilter(&requests);
        add(name, inSight);
        QCoreApplication::sendPostedEvents(&pace());
        return requests.count > 0;
    }

    // One that takes the processor for so long that the next beat is some time away.
    void drawCostlyFrame() {
        pace();
        const auto work = connect(
            m_window.get(), &QQuickWindow::beforeRendering, m_window.get(),
            [] {
                const auto end = std::chrono::steady_clock::now() + 30ms;
                while (std::chrono::steady_clock::now() < end)
                    ;
            },
            Qt::DirectConnection);
        QSignalSpy frames(m_window.get(), &QQuickWindow::frameSwapped);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get(), lumbra::patience));
        QTRY_VERIFY(!frames.isEmpty());
        frames.clear();
        m_window->update();
        QTRY_VERIFY(!frames.isEmpty());
        disconnect(work);
    }

    std::unique_ptr<QQuickWindow> m_window;
    QStringList m_shown;
};

QTEST_MAIN(tst_arrivalpace)
#include "tst_arrivalpace.moc"

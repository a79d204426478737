// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/Toasts.h"
#include "shell/TransferProgress.h"
#include "support/QmlWindow.h"
#include "support/TestHome.h"

#include <QSignalSpy>
#include <QTimer>

#include <unistd.h>

Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_BrowsingPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_ShellPlugin)

using namespace lumbra;
using namespace std::chrono_literals;

class TransferProgressTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }

    void init() {
        m_home = std::make_unique<TestHome>();
        m_library = std::make_unique<Library>(m_home->folder("library"), true);
    }
    void cleanup() {
        m_window.reset();
        m_toasts.reset();
        m_transfer.reset();
        m_library.reset();
        m_home.reset();
    }

    void figuresAreInWords_data() {
        QTest::addColumn<qint64>("files");
        QTest::addColumn<qint64>("fileCount");
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<qint64>("byteCount");
        QTest::addColumn<QString>("figures");
        QTest::addColumn<double>("value");
        const auto row = [](const char* name, qint64 files, qint64 fileCount, qint64 bytes, qint64 byteCount,
                            const char* figures, double value) {
            QTest::newRow(name) << files << fileCount << bytes << byteCount << QString::fromUtf8(figures) << value;
        };
        row("one file", 0, 1, 1'200'000, 4'800'000, "1.2 MB of 4.8 MB", 0.25);
        row("many files", 3, 12, 500'000'000, 1'000'000'000, "3 of 12 files · 500 MB of 1 GB", 0.5);
        row("files without bytes", 3, 12, 0, 0, "3 of 12 files", 0.25);
        row("nothing is known yet", 0, 0, 0, 0, "", 0);
        row("a file that grew meanwhile", 1, 1, 3000, 2000, "3 KB of 2 KB", 1);
    }
    void figuresAreInWords() {
        QFETCH(qint64, files);
        QFETCH(qint64, fileCount);
        QFETCH(qint64, bytes);
        QFETCH(qint64, byteCount);
        TransferProgress progress(m_library.get());
        setTransfer(Files::Progress{QStringLiteral("clip.mp4"), files, fileCount, bytes, byteCount});
        QTEST(progress.figures(), "figures");
        QTEST(progress.value(), "value");
        QCOMPARE(progress.name(), QStringLiteral("clip.mp4"));
    }

    void whatIsOverSoonIsNotShown() {
        TransferProgress progress(m_library.get(), 50ms);
        QSignalSpy shown(&progress, &TransferProgress::shownChanged);
        setTransfer(Files::Progress{QStringLiteral("a.png"), 0, 1, 0, 1});
        setTransfer(std::nullopt);
        bool waited = false;
        QTimer::singleShot(100ms, this, [&waited] { waited = true; });
        QTRY_VERIFY(waited);
        QVERIFY(shown.isEmpty());
    }

    void whatLastsIsShownUntilItsEnd() {
        TransferProgress progress(m_library.get(), 10ms);
        setTransfer(Files::Progress{QStringLiteral("a.png"), 0, 1, 0, 2});
        QVERIFY(!progress.shown());
        QTRY_VERIFY(progress.shown());
        setTransfer(Files::Progress{QStringLiteral("a.png"), 0, 1, 1, 2});
        QVERIFY(progress.shown());
        setTransfer(std::nullopt);
        QVERIFY(!progress.shown());
        QCOMPARE(progress.value(), 0.5); // it fades out with its words
    }

    void aCopyIsCancelledByItsButton() {
        const QByteArray one = m_home->file("one.png", QByteArray(3000, 'x')).path();
        const Location many = m_home->folder("many");
        for (int number = 0; number < 20'000; ++number)
            QCOMPARE(::link(one, many.path() + '/' + QByteArray::number(number) + ".png"), 0);
        show(0ms);
        QVERIFY(!m_window->value("transferView", "visible").toBool());

        m_library->bring({many}, m_library->root());
        QTRY_VERIFY(m_window->value("transferView", "enabled").toBool());
        QTRY_VERIFY(m_window->value("transfer", "text").toString().endsWith(QStringLiteral(".png")));
        m_window->click("progressCancel");
        QTRY_VERIFY(!m_window->value("transferView", "visible").toBool());
        QVERIFY(!m_library->transfer());
        QVERIFY(!m_library->root().child("many").exists());
        QVERIFY(many.child("19999.png").exists());
        QVERIFY(!m_library->lastError());
    }

    void itStandsAboveTheToastWhereTheyMeet() {
        show(0ms);
        setTransfer(Files::Progress{QStringLiteral("a.png"), 0, 1, 0, 2});
        QTRY_VERIFY(m_transfer->shown());
        const auto foot = [this] {
            const auto* const view = m_window->find<QQuickItem>("transferView");
            return view->y() + view->height();
        };
        const auto* const toast = m_window->find<QQuickItem>("toast");
        const double atRest = m_window->window()->height() - toast->property("rise").toDouble();
        QTRY_COMPARE(foot(), atRest);
        m_library->setToast(Toast{.text = QStringLiteral("A message that is long enough to reach the right side")});
        QTRY_VERIFY(foot() < atRest && toast->y() > foot());
        m_library->setToast(std::nullopt);
        QTRY_COMPARE(foot(), atRest);
    }

private:
    void setTransfer(const std::optional<Files::Progress>& progress) {
        m_library->bindableTransfer().setValue(progress);
    }
    void show(std::chrono::milliseconds delay) {
        m_transfer = std::make_unique<TransferProgress>(m_library.get(), delay);
        m_toasts = std::make_unique<Toasts>(m_library.get());
        m_window = std::make_unique<QmlWindow>(
            "id: root\n"
            "required property TransferProgress transfer\n"
            "required property Toasts toasts\n"
            "TransferView { objectName: 'transferView'; transfer: root.transfer; toast: toastView }\n"
            "ToastView { id: toastView; objectName: 'toast'; toasts: root.toasts }",
            "import Lumbra.Shell\n",
            QVariantMap{{QStringLiteral("transfer"), QVariant::fromValue(m_transfer.get())},
                        {QStringLiteral("toasts"), QVariant::fromValue(m_toasts.get())}});
    }

    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<Library> m_library;
    std::unique_ptr<TransferProgress> m_transfer;
    std::unique_ptr<Toasts> m_toasts;
    std::unique_ptr<QmlWindow> m_window;
};

QTEST_MAIN(TransferProgressTest)
#include "tst_transferprogress.moc"

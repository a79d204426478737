// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/HostileReader.h"
#include "support/ReaderProcesses.h"
#include "support/StallingShare.h"

#include <QElapsedTimer>
#include <QtTest>

using namespace lumbra;

namespace {

constexpr QSize box(64, 64);
constexpr int fileCount = 40;

QByteArray nameOf(int number) {
    return QByteArray::number(number) + ".png";
}

} // namespace

// What becomes of the readers, and of those who ask them, when a share stops answering: its readers can't be ended.
class tst_ReaderStalled : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        QVERIFY2(!qEnvironmentVariableIsEmpty("LUMBRA_READER"), "set LUMBRA_READER to the reader's path");
        QImage image(400, 200, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(m_home.file("here.png").toString()));
        m_folder = m_home.folder("share");
    }

    void init() {
        QFile here(m_home.path().child("here.png").toString());
        QVERIFY(here.open(QIODevice::ReadOnly));
        const QByteArray bytes = here.readAll();
        StallingShare::Files files;
        for (int i = 0; i < fileCount; ++i)
            files.append({nameOf(i), bytes});
        m_share.emplace(m_folder, files);
        if (!m_share->isMounted())
            QSKIP("no file system can be mounted here");
    }

    void cleanup() { m_share.reset(); }

    void aFileThatNeverAnswersReadsAsNothingWhileOthersAreRead() {
        Reader reader({.children = 2, .limit = 1});
        QCOMPARE(resultOf(reader.thumbnail(onShare(0), box)).size(), QSize(64, 32));
        m_share->stall();
        QFuture<QImage> hanging = reader.thumbnail(onShare(1), box);
        QTRY_VERIFY(m_share->asked() > 0);
        QCOMPARE(resultOf(reader.thumbnail(elsewhere(), box)).size(), QSize(64, 32));
        QVERIFY(resultOf(hanging).isNull());
        QCOMPARE(resultOf(reader.thumbnail(elsewhere(), box)).size(), QSize(64, 32));
    }

    void readersThatHangDoNotPileUp() {
        Reader reader({.children = 2, .limit = 1});
        QCOMPARE(resultOf(reader.thumbnail(onShare(0), box)).size(), QSize(64, 32));
        m_share->stall();
        QList<QFuture<QImage>> hanging;
        for (int i = 0; i < fileCount; ++i)
            hanging.append(reader.thumbnail(onShare(i), box));
        for (const QFuture<QImage>& future : hanging) {
            QTRY_VERIFY(future.isFinished());
            QVERIFY(future.result().isNull());
        }
        QVERIFY2(childProcesses().size() <= 8, QByteArray::number(childProcesses().size()));
        QCOMPARE(resultOf(reader.thumbnail(elsewhere(), box)).size(), QSize(64, 32));
    }

    void nobodyWaitsForReadersThatHang() {
        std::optional<Reader> reader(std::in_place, Reader::Options{.children = 1, .limit = 60});
        QCOMPARE(resultOf(reader->thumbnail(onShare(0), box)).size(), QSize(64, 32));
        m_share->stall();
        QFuture<QImage> hanging = reader->thumbnail(onShare(1), box);
        QTRY_VERIFY(m_share->asked() > 0);
        QElapsedTimer timer;
        timer.start();
        reader.reset();
        QVERIFY2(timer.elapsed() < 500, QByteArray::number(timer.elapsed()));
        QVERIFY(hanging.isCanceled());
    }

    void aShareThatAnswersAgainIsAskedAgain() {
        Reader reader({.children = 1, .limit = 0.5});
        QCOMPARE(resultOf(reader.thumbnail(onShare(0), box)).size(), QSize(64, 32));
        m_share->stall();
        for (int i = 0; i < 8; ++i)
            QVERIFY(resultOf(reader.thumbnail(onShare(i), box)).isNull());
        cleanup();
        init();
        QTRY_VERIFY(!resultOf(reader.thumbnail(onShare(0), box)).isNull());
    }

private:
    Location onShare(int number) const { return m_folder.child(nameOf(number).constData()); }
    Location elsewhere() const { return m_home.path().child("here.png"); }

    TestHome m_home;
    Location m_folder;
    std::optional<StallingShare> m_share;
};

QTEST_GUILESS_MAIN(tst_ReaderStalled)
#include "tst_readerstalled.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "OpenLibrary.h"

using namespace lumbra;

class LinkOperationsTest : public QObject {
    Q_OBJECT

private:
    TestHome m_home;
    std::unique_ptr<OpenLibrary> m_library;

    void follow(const QString& link) const { (*m_library)->handleLink(QUrl(link)); }

    static QString encoded(const Location& location) {
        return QString::fromLatin1(QUrl::toPercentEncoding(location.toString()));
    }

private Q_SLOTS:
    void init() { m_library = std::make_unique<OpenLibrary>(m_home); }
    void cleanup() { m_library.reset(); }

    void aLinkRevealsItsFile_data() {
        QTest::addColumn<QString>("start");
        QTest::newRow("reveal") << QStringLiteral("lumbra://reveal?path=");
        QTest::newRow("any other host") << QStringLiteral("lumbra://whatever?path=");
        QTest::newRow("the older scheme") << QStringLiteral("folia-app://reveal?path=");
        QTest::newRow("no host") << QStringLiteral("lumbra:?path=");
        QTest::newRow("behind other items") << QStringLiteral("lumbra://reveal?a=b&path=");
    }

    void aLinkRevealsItsFile() {
        QFETCH(QString, start);
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/a b%20&c.png");
        library.open();
        follow(start + encoded(file));
        QVERIFY(library->place() == Place::folder(file.parent()));
        QCOMPARE(library->pendingReveal(), std::optional(file));
        QVERIFY(!library->playing());
    }

    void theFirstPathCounts() {
        OpenLibrary& library = *m_library;
        const Location first = library.file("one/a.png");
        const Location second = library.file("two/b.png");
        library.open();
        follow(QStringLiteral("lumbra://reveal?path=%1&path=%2").arg(encoded(first), encoded(second)));
        QCOMPARE(library->pendingReveal(), std::optional(first));
    }

    void aTildeIsTheHomeFolder() {
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/a.png");
        library.open();
        follow(QStringLiteral("lumbra://reveal?path=") + file.abbreviated());
        QCOMPARE(library->pendingReveal(), std::optional(file));
    }

    void aLinkWithoutAPathDoesNothing_data() {
        QTest::addColumn<QString>("link");
        for (const char* link : {"lumbra://play", "lumbra://play?", "lumbra://play?path", "lumbra://play?path=",
                                 "lumbra://play?other=/x", "lumbra://reveal", "lumbra:", "lumbra://play?path=%00"})
            QTest::newRow(link) << QString::fromLatin1(link);
    }

    void aLinkWithoutAPathDoesNothing() {
        QFETCH(QString, link);
        OpenLibrary& library = *m_library;
        library.file("one/a.png");
        library.open();
        follow(link);
        QVERIFY(library->place() == Place::recent());
        QVERIFY(!library->pendingReveal() && !library->playing());
    }

    void tidyIgnoresAnyPath() {
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/a.png");
        library.open();
        follow(QStringLiteral("lumbra://tidy?path=") + encoded(file));
        QVERIFY(library->place() == Place::tidy());
        QVERIFY(!library->pendingReveal());
    }

    void aFileIsPlayedAmongThoseOfItsFolderTheNewestFirst() {
        OpenLibrary& library = *m_library;
        const Location oldest = library.file("one/a.png");
        const Location newest = library.file("one/b.png");
        const Location middle = library.file("one/c.png");
        library.file("one/deeper/d.png");
        library.file("one/notes.unknown");
        library.file("oneself/e.png");
        TestHome::touch(oldest, 1000);
        TestHome::touch(newest, 3000);
        TestHome::touch(middle, 2000);
        library.open();
        follow(QStringLiteral("lumbra://play?path=") + encoded(middle));
        const auto playing = library->playing();
        QVERIFY(playing);
        QCOMPARE(playing->asset.url, middle);
        QCOMPARE(playing->order.size(), 3);
        QCOMPARE(playing->order[0].url, newest);
        QCOMPARE(playing->order[1].url, middle);
        QCOMPARE(playing->order[2].url, oldest);
        QCOMPARE(library->pendingReveal(), std::optional(middle));
    }

    void aFileThatIsNotIndexedYetIsPlayed() {
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/.aside/a.png");
        library.open();
        follow(QStringLiteral("lumbra://play?path=") + encoded(file));
        QVERIFY(library->playing());
        QCOMPARE(library->playing()->asset.url, file);
        QVERIFY(library->playing()->order.isEmpty());
    }

    void aFileThatIsPlayedBeforeThereIsAnIndexFindsTheOthersOnceThereIs() {
        OpenLibrary& library = *m_library;
        const Location oldest = library.file("one/a.png");
        const Location newest = library.file("one/b.png");
        TestHome::touch(oldest, 1000);
        TestHome::touch(newest, 3000);
        library.beginToOpen();
        follow(QStringLiteral("lumbra://play?path=") + encoded(oldest));
        QVERIFY(library->indexing());
        QCOMPARE(library->playing()->asset.url, oldest);
        QVERIFY(library->playing()->order.isEmpty());
        library.waitForIndex();
        QCOMPARE(library->playing()->asset.url, oldest);
        QCOMPARE(library->playing()->order.size(), 2);
        QCOMPARE(library->playing()->order[0].url, newest);
        QCOMPARE(library->playing()->order[1].url, oldest);
    }

    void whatIsPlayedOrClosedMeanwhileStaysSo() {
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/a.png");
        const Location other = library.file("one/b.png");
        library.beginToOpen();
        follow(QStringLiteral("lumbra://play?path=") + encoded(file));
        const PlayRequest given{library->playing()->asset, {library->playing()->asset}};
        library->setPlaying(given);
        library.waitForIndex();
        QVERIFY(library->playing() == given);

        library.beginToOpen();
        follow(QStringLiteral("lumbra://play?path=") + encoded(other));
        library->setPlaying(std::nullopt);
        library.waitForIndex();
        QVERIFY(!library->playing());
    }

    void whatIsNoFileIsNotPlayed() {
        OpenLibrary& library = *m_library;
        library.folder("one/sub");
        library.open();
        follow(QStringLiteral("lumbra://play?path=") + encoded(library.at("one/sub")));
        QVERIFY(!library->playing());
        QVERIFY(library->place() == Place::folder(library.at("one/sub")));
        follow(QStringLiteral("lumbra://play?path=") + encoded(library.at("one/gone.png")));
        QVERIFY(!library->playing());
    }

    void aPathOutsideTheLibraryIsAnError() {
        OpenLibrary& library = *m_library;
        library.open();
        follow(QStringLiteral("lumbra://reveal?path=/usr/share/x.png"));
        QVERIFY2(library.error().startsWith(QStringLiteral("/usr/share/x.png is outside the library (")),
                 qPrintable(library.error()));
    }
};

QTEST_GUILESS_MAIN(LinkOperationsTest)
#include "tst_linkoperations.moc"

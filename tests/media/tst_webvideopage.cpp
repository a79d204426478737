// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/quicklook/WebVideoPage.h"
#include "platform/TemporaryFolder.h"

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace lumbra;

namespace {

QByteArray written() {
    QFile page(WebVideoPage::file().toString());
    return page.open(QIODevice::ReadOnly) ? page.readAll() : QByteArray();
}

} // namespace

class tst_WebVideoPage : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void thePageIsToTheLetter_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("autoplay");
        QTest::addColumn<QByteArray>("middle");
        QTest::newRow("plays by itself") << QStringLiteral("/lib/a.webm") << true
                                         << QByteArray("file:///lib/a.webm\" controls autoplay");
        QTest::newRow("waits") << QStringLiteral("/lib/a.mkv") << false << QByteArray("file:///lib/a.mkv\" controls ");
        QTest::newRow("a blank in the name") << QStringLiteral("/my lib/b c.ogv") << true
                                             << QByteArray("file:///my%20lib/b%20c.ogv\" controls autoplay");
        QTest::newRow("what an address means otherwise")
            << QStringLiteral("/a#b?c%d.webm") << true << QByteArray("file:///a%23b%3Fc%25d.webm\" controls autoplay");
        QTest::newRow("what a page means otherwise")
            << QStringLiteral("/\"><b>&copy.webm") << true
            << QByteArray("file:///%22%3E%3Cb%3E%26copy.webm\" controls autoplay");
        QTest::newRow("letters beyond ASCII") << QString::fromUtf8("/Grüße.webm") << true
                                              << QByteArray("file:///Gr%C3%BC%C3%9Fe.webm\" controls autoplay");
    }
    void thePageIsToTheLetter() {
        QFETCH(QString, path);
        QFETCH(bool, autoplay);
        QFETCH(QByteArray, middle);
        const QByteArray page = "<html><body style=\"margin:0;background:transparent;display:flex;align-items:center;"
                                "justify-content:center;height:100vh\">\n<video src=\""
                                + middle + " style=\"max-width:100%;max-height:100%\"></video>\n</body></html>";
        QCOMPARE(webVideoPage(QUrl::fromLocalFile(path), autoplay).toUtf8(), page);
    }

    void thereIsOnePageAndEachFilmTakesItOver() {
        QCOMPARE(WebVideoPage::file(), temporaryFolder().child("folia-preview.html"));
        WebVideoPage first, second;
        first.setVideo(QUrl(QStringLiteral("file:///a.webm")));
        first.write();
        QCOMPARE(written(), webVideoPage(first.video(), true).toUtf8());
        second.setVideo(QUrl(QStringLiteral("file:///b.webm")));
        second.setAutoplay(false);
        second.write();
        QCOMPARE(written(), webVideoPage(second.video(), false).toUtf8());
        QCOMPARE(first.url(), second.url());
    }

    void aFailureToWriteIsIgnored() {
        WebVideoPage page;
        page.setVideo(QUrl(QStringLiteral("file:///a.webm")));
        page.write();
        const QByteArray before = written();
        const QString file = WebVideoPage::file().toString();
        QVERIFY(QFile::remove(file) && QDir().mkdir(file));
        page.write();
        QVERIFY(QFileInfo(file).isDir());
        QVERIFY(QDir().rmdir(file));
        page.write();
        QCOMPARE(written(), before);
    }
};

QTEST_GUILESS_MAIN(tst_WebVideoPage)
#include "tst_webvideopage.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "look/panel/FolderListing.h"
#include "support/TestHome.h"

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace lumbra;

class tst_folderlisting : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_home = std::make_unique<TestHome>();
        for (const char* folder : {"media/stills", "media/stills 10", "media/stills 9", "media/Sound", "media/.hidden"})
            m_home->folder(folder);
        m_home->file("media/sketch.png");
    }

    void foldersAreListed_data();
    void foldersAreListed();
    void aPathIsCompleted_data();
    void aPathIsCompleted();
    void aPathLeadsToSomething_data();
    void aPathLeadsToSomething();
    void aRelativePathLeadsNowhere();
    void filesAreListedBehindFolders();
    void linksCountAsWhatTheyLeadTo();
    void whatIsAddedShowsWhenReadAnew();
    void anEnormousFolderIsBounded();
    void onlyTheLastPathTypedIsListed();
    void theTopHasNoParent();

private:
    // "~" stands for the test's home.
    void type(FolderListing& listing, const QString& path) {
        QSignalSpy listed(&listing, &FolderListing::listed);
        listing.setPath(path);
        QTRY_COMPARE(listed.size(), 1);
    }
    static QStringList names(const FolderListing& listing) {
        QStringList found;
        for (int row = 0; row < listing.rowCount(); ++row)
            found.append(listing.data(listing.index(row), FolderListing::NameRole).toString());
        return found;
    }

    std::unique_ptr<TestHome> m_home;
};

void tst_folderlisting::foldersAreListed_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("found");
    const auto list = [](std::initializer_list<const char*> names) {
        QStringList texts;
        for (const char* name : names)
            texts.append(QString::fromLatin1(name));
        return texts;
    };
    QTest::newRow("inside, numbers by their value, no files, none hidden")
        << QStringLiteral("~/media/") << list({"Sound", "stills", "stills 9", "stills 10"});
    QTest::newRow("by their beginning, whatever the case")
        << QStringLiteral("~/media/s") << list({"Sound", "stills", "stills 9", "stills 10"});
    QTest::newRow("by a longer beginning") << QStringLiteral("~/media/stills ") << list({"stills 9", "stills 10"});
    QTest::newRow("hidden ones on request") << QStringLiteral("~/media/.") << list({".hidden"});
    QTest::newRow("of a folder that is none") << QStringLiteral("~/nowhere/") << QStringList();
    QTest::newRow("of a relative path") << QStringLiteral("media/") << QStringList();
}

void tst_folderlisting::foldersAreListed() {
    QFETCH(QString, path);
    QFETCH(QStringList, found);
    FolderListing listing;
    const QAbstractItemModelTester tester(&listing);
    type(listing, path);
    QCOMPARE(names(listing), found);
}

void tst_folderlisting::aPathIsCompleted_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("completion");
    QTest::newRow("as far as all agree") << QStringLiteral("~/media/sti") << QStringLiteral("~/media/stills");
    QTest::newRow("a single one, ready to go on") << QStringLiteral("~/media/So") << QStringLiteral("~/media/Sound/");
    QTest::newRow("nothing begins so") << QStringLiteral("~/media/x") << QStringLiteral("~/media/x");
    QTest::newRow("they agree on nothing more") << QStringLiteral("~/media/s") << QStringLiteral("~/media/s");
}

void tst_folderlisting::aPathIsCompleted() {
    QFETCH(QString, path);
    QFETCH(QString, completion);
    FolderListing listing;
    type(listing, path);
    QCOMPARE(listing.completion(), completion);
}

void tst_folderlisting::aPathLeadsToSomething_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<FolderListing::Target>("target");
    QTest::newRow("a folder") << QStringLiteral("~/media/stills") << FolderListing::Folder;
    QTest::newRow("a folder with a slash") << QStringLiteral("~/media/stills/") << FolderListing::Folder;
    QTest::newRow("one to be made") << QStringLiteral("~/media/new") << FolderListing::New;
    QTest::newRow("a file") << QStringLiteral("~/media/sketch.png") << FolderListing::File;
    QTest::newRow("one below nothing") << QStringLiteral("~/media/new/deeper") << FolderListing::Nothing;
    QTest::newRow("one below a file") << QStringLiteral("~/media/sketch.png/new") << FolderListing::Nothing;
    QTest::newRow("the home") << QStringLiteral("~") << FolderListing::Folder;
    QTest::newRow("a link that leads nowhere") << QStringLiteral("~/media/broken") << FolderListing::Nothing;
}

void tst_folderlisting::aPathLeadsToSomething() {
    QFETCH(QString, path);
    QFETCH(FolderListing::Target, target);
    QVERIFY(QFile::link(QStringLiteral("/no/such/thing"), m_home->path().child("media/broken").toString()));
    FolderListing listing;
    type(listing, path);
    QCOMPARE(listing.target(), target);
    const QString inHome = path.mid(1).endsWith(u'/') ? path.mid(1).chopped(1) : path.mid(1);
    QCOMPARE(listing.resolved(), m_home->path().toString() + inHome);
}

void tst_folderlisting::aRelativePathLeadsNowhere() {
    FolderListing listing;
    type(listing, QStringLiteral("media"));
    QCOMPARE(listing.target(), FolderListing::Nothing);
    QCOMPARE(listing.resolved(), QString());
}

void tst_folderlisting::filesAreListedBehindFolders() {
    m_home->file("media/a.png");
    FolderListing listing;
    listing.setListsFiles(true);
    type(listing, QStringLiteral("~/media/"));
    QCOMPARE(names(listing),
             QStringList({QStringLiteral("Sound"), QStringLiteral("stills"), QStringLiteral("stills 9"),
                          QStringLiteral("stills 10"), QStringLiteral("a.png"), QStringLiteral("sketch.png")}));
    QCOMPARE(listing.pathOf(0), QStringLiteral("~/media/Sound/"));
    QCOMPARE(listing.pathOf(4), QStringLiteral("~/media/a.png"));
    type(listing, QStringLiteral("~/media/sk"));
    QCOMPARE(listing.completion(), QStringLiteral("~/media/sketch.png"));
}

void tst_folderlisting::linksCountAsWhatTheyLeadTo() {
    const QString media = m_home->path().child("media").toString();
    QVERIFY(QFile::link(media + QStringLiteral("/Sound"), media + QStringLiteral("/link")));
    QVERIFY(QFile::link(media + QStringLiteral("/gone"), media + QStringLiteral("/lost")));
    QVERIFY(::mkfifo(QFile::encodeName(media + QStringLiteral("/live")).constData(), 0600) == 0);
    FolderListing listing;
    listing.setListsFiles(true);
    type(listing, QStringLiteral("~/media/l"));
    QCOMPARE(names(listing), QStringList{QStringLiteral("link")});
    QVERIFY(listing.entryAt(0).isFolder);
}

void tst_folderlisting::whatIsAddedShowsWhenReadAnew() {
    FolderListing listing;
    type(listing, QStringLiteral("~/media/So"));
    m_home->folder("media/Sonnets");
    QSignalSpy listed(&listing, &FolderListing::listed);
    listing.refresh();
    QTRY_COMPARE(listed.size(), 1);
    QCOMPARE(names(listing), QStringList({QStringLiteral("Sonnets"), QStringLiteral("Sound")}));
}

void tst_folderlisting::anEnormousFolderIsBounded() {
    const Location many = m_home->folder("many");
    // Links are made faster than files, but no file system takes this many of one.
    const QByteArray first = m_home->file("first").path();
    const QByteArray second = m_home->file("second").path();
    for (int number = 0; number < 100'000; ++number)
        QCOMPARE(::link(number % 2 ? first : second, many.path() + '/' + QByteArray::number(number) + ".png"), 0);
    FolderListing listing;
    listing.setListsFiles(true);
    QElapsedTimer clock;
    clock.start();
    listing.setPath(QStringLiteral("~/many/"));
    QVERIFY2(clock.elapsed() < 100, "reading a folder holds up the caller");
    QTRY_VERIFY(!listing.reading());
    QCOMPARE(listing.rowCount(), FolderListing::most);
    QVERIFY(listing.isCut());
    QCOMPARE(names(listing).first(3),
             QStringList({QStringLiteral("0.png"), QStringLiteral("1.png"), QStringLiteral("2.png")}));

    type(listing, QStringLiteral("~/many/9999"));
    QVERIFY(!listing.isCut());
    QCOMPARE(names(listing).first(2), QStringList({QStringLiteral("9999.png"), QStringLiteral("99990.png")}));
    QCOMPARE(listing.rowCount(), 11);
}

void tst_folderlisting::onlyTheLastPathTypedIsListed() {
    FolderListing listing;
    QSignalSpy listed(&listing, &FolderListing::listed);
    listing.setPath(QStringLiteral("~/media/"));
    listing.setPath(QStringLiteral("~/media/So"));
    QTRY_COMPARE(names(listing), QStringList{QStringLiteral("Sound")});
    QCOMPARE(listed.size(), 1);
}

void tst_folderlisting::theTopHasNoParent() {
    FolderListing listing;
    listing.setPath(QStringLiteral("/usr/share/"));
    QCOMPARE(listing.parentPath(), QStringLiteral("/usr/"));
    listing.setPath(QStringLiteral("/usr/"));
    QCOMPARE(listing.parentPath(), QStringLiteral("/"));
    listing.setPath(QStringLiteral("/"));
    QCOMPARE(listing.parentPath(), QString());
}

QTEST_GUILESS_MAIN(tst_folderlisting)
#include "tst_folderlisting.moc"

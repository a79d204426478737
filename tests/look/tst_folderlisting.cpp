// SPDX-License-Identifier: GPL-3.0-or-later
#include "look/FolderListing.h"
#include "support/TestHome.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

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
    void aPathIsChoosable_data();
    void aPathIsChoosable();
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

void tst_folderlisting::aPathIsChoosable_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("choosable");
    QTest::addColumn<bool>("isNew");
    QTest::newRow("a folder") << QStringLiteral("~/media/stills") << true << false;
    QTest::newRow("a folder with a slash") << QStringLiteral("~/media/stills/") << true << false;
    QTest::newRow("one to be made") << QStringLiteral("~/media/new") << true << true;
    QTest::newRow("a file") << QStringLiteral("~/media/sketch.png") << false << false;
    QTest::newRow("one below nothing") << QStringLiteral("~/media/new/deeper") << false << false;
    QTest::newRow("the home") << QStringLiteral("~") << true << false;
    QTest::newRow("a relative path") << QStringLiteral("media") << false << false;
}

void tst_folderlisting::aPathIsChoosable() {
    QFETCH(QString, path);
    QFETCH(bool, choosable);
    QFETCH(bool, isNew);
    FolderListing listing;
    type(listing, path);
    QCOMPARE(listing.choosable(), choosable);
    QCOMPARE(listing.isNew(), isNew);
    if (choosable) {
        const QString inHome = path.mid(1).endsWith(u'/') ? path.mid(1).chopped(1) : path.mid(1);
        QCOMPARE(listing.chosen(), m_home->path().toString() + inHome);
    }
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

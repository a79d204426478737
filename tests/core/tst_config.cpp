// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Config.h"
#include "core/CoreError.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>

#include <optional>

using namespace lumbra;

class ConfigTest : public QObject {
    Q_OBJECT

    std::optional<TestHome> m_home;

    Location configFile() const { return m_home->path().child(".config").child("lumbra").child("config.json"); }

    void configure(const QByteArray& json) const { m_home->file(".config/lumbra/config.json", json); }

    static QByteArray bytesOf(const Location& location) {
        QFile file(location.toString());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private Q_SLOTS:
    void init() { m_home.emplace(); }
    void cleanup() { m_home.reset(); }

    void theFileLiesInTheConfigurationFolder() {
        QCOMPARE(LumbraConfig::file(), configFile());
        qputenv("XDG_CONFIG_HOME", "/somewhere/else/");
        QCOMPARE(LumbraConfig::file().path(), QByteArray("/somewhere/else/lumbra/config.json"));
        qunsetenv("XDG_CONFIG_HOME");
        QCOMPARE(LumbraConfig::file(), configFile());
    }

    void anEmptyConfigurationHomeMeansTheWorkingDirectory() {
        const QString before = QDir::currentPath();
        m_home->file("work/lumbra/config.json", R"({"library": "/from/work"})");
        QVERIFY(QDir::setCurrent(m_home->path().child("work").toString()));
        qputenv("XDG_CONFIG_HOME", "");
        QVERIFY(LumbraConfig::isConfigured());
        QCOMPARE(LumbraConfig::library().path(), QByteArray("/from/work"));
        QDir::setCurrent(before);
        QVERIFY(!LumbraConfig::isConfigured());
    }

    void withNothingSetTheLibraryIsTheSuggestedOne() {
        QVERIFY(!LumbraConfig::isConfigured());
        QCOMPARE(LumbraConfig::suggestedLibrary(), m_home->path().child("Lumbra"));
        QCOMPARE(LumbraConfig::library(), LumbraConfig::suggestedLibrary());
        QVERIFY(!LumbraConfig::suggestedLibrary().exists());
    }

    void anEmptyVariableCountsAsConfiguredButNamesNoLibrary() {
        qputenv("LUMBRA_LIBRARY", "");
        QVERIFY(LumbraConfig::isConfigured());
        QCOMPARE(LumbraConfig::library(), m_home->path().child("Lumbra"));
        configure(R"({"library": "/from/file"})");
        QCOMPARE(LumbraConfig::library().path(), QByteArray("/from/file"));
    }

    void theVariableOutweighsTheFile() {
        configure(R"({"library": "/from/file"})");
        QCOMPARE(LumbraConfig::library().path(), QByteArray("/from/file"));
        qputenv("LUMBRA_LIBRARY", "/from/variable");
        QCOMPARE(LumbraConfig::library().path(), QByteArray("/from/variable"));
    }

    void aLeadingTildeIsTheHomeFolder_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("below");
        QTest::newRow("home itself") << QByteArray("~") << QByteArray();
        QTest::newRow("below home") << QByteArray("~/My Media/") << QByteArray("/My Media");
    }

    void aLeadingTildeIsTheHomeFolder() {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, below);
        configure("{\"library\": \"" + text + "\"}");
        QCOMPARE(LumbraConfig::library().path(), m_home->path().path() + below);
        QFile::remove(configFile().toString());
        qputenv("LUMBRA_LIBRARY", text);
        QCOMPARE(LumbraConfig::library().path(), m_home->path().path() + below);
    }

    void aTildeElsewhereIsALetter() {
        configure(R"({"library": "/a/~/b"})");
        QCOMPARE(LumbraConfig::library().path(), QByteArray("/a/~/b"));
    }

    void aFileWithoutAUsableLibraryIsConfiguredAndYieldsTheDefault_data() {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("a number") << QByteArray(R"({"library": 7})");
        QTest::newRow("an empty text") << QByteArray(R"({"library": ""})");
        QTest::newRow("nothing") << QByteArray(R"({"library": null})");
        QTest::newRow("another key") << QByteArray(R"({"other": "/a"})");
        QTest::newRow("a list") << QByteArray(R"(["library"])");
        QTest::newRow("no JSON") << QByteArray("library = /a");
        QTest::newRow("an empty file") << QByteArray();
        QTest::newRow("half-written") << QByteArray("{\"library\": \"/a");
        QTest::newRow("a text that no path can be") << QByteArray(R"({"library": "/tmp\u0000/x"})");
        QTest::newRow("half a character") << QByteArray(R"({"library": "/tmp\ud800"})");
        QTest::newRow("no UTF-8") << QByteArray("{\"library\": \"/a\xff\"}");
        QTest::newRow("more than any configuration") << R"({"library": "/a"})" + QByteArray(5 << 20, ' ');
        QTest::newRow("nested without end") << QByteArray(1 << 20, '[');
    }

    void aFileWithoutAUsableLibraryIsConfiguredAndYieldsTheDefault() {
        QFETCH(QByteArray, json);
        configure(json);
        QVERIFY(LumbraConfig::isConfigured());
        QCOMPARE(LumbraConfig::library(), m_home->path().child("Lumbra"));
    }

    void aFolderInTheFilesPlaceIsConfiguredAndYieldsTheDefault() {
        m_home->folder(".config/lumbra/config.json");
        QVERIFY(LumbraConfig::isConfigured());
        QCOMPARE(LumbraConfig::library(), m_home->path().child("Lumbra"));
    }

    void whatIsReadIsTheFileAsItIsNow() {
        configure(R"({"library": "/first"})");
        QCOMPARE(LumbraConfig::library().path(), QByteArray("/first"));
        configure(R"({"library": "/second"})");
        QCOMPARE(LumbraConfig::library().path(), QByteArray("/second"));
        QVERIFY(QFile::remove(configFile().toString()));
        QVERIFY(!LumbraConfig::isConfigured());
    }

    void aPipeUnderTheFilesNameHoldsNobodyUp() {
        m_home->folder(".config/lumbra");
        QCOMPARE(::mkfifo(configFile().path().constData(), 0600), 0);
        QCOMPARE(LumbraConfig::library(), m_home->path().child("Lumbra"));
    }

    void settingTheLibraryWritesTheFileAndMakesTheFolder() {
        const Location root = m_home->path().child("a").child("b/c");
        LumbraConfig::setLibrary(root);
        QVERIFY(root.isFolder());
        QVERIFY(LumbraConfig::isConfigured());
        QCOMPARE(LumbraConfig::library(), root);
        QVERIFY(bytesOf(configFile()).contains(root.path())); // slashes are not escaped
    }

    void settingTheLibraryKeepsOtherKeysAndSortsThem() {
        configure(R"({"zebra": [1, 2.5], "library": "/old", "apple": {"big": 9007199254740993}, "mango": "ä/b"})");
        const Location root = m_home->path().child("new");
        LumbraConfig::setLibrary(root);
        QCOMPARE(bytesOf(configFile()), QByteArray("{\n"
                                                   "    \"apple\": {\n"
                                                   "        \"big\": 9007199254740993\n"
                                                   "    },\n"
                                                   "    \"library\": \"")
                                            + root.path()
                                            + "\",\n"
                                              "    \"mango\": \"ä/b\",\n"
                                              "    \"zebra\": [\n"
                                              "        1,\n"
                                              "        2.5\n"
                                              "    ]\n"
                                              "}\n");
    }

    void aRelativeLibraryIsRecordedAsAnAbsolutePath() {
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_home->path().toString()));
        LumbraConfig::setLibrary(Location(QByteArray("media")));
        QDir::setCurrent(before);
        QCOMPARE(LumbraConfig::library(), m_home->path().child("media"));
        QVERIFY(m_home->path().child("media").isFolder());
    }

    void aLibraryThatIsNowhereIsRefused() {
        configure(R"({"library": "/old"})");
        QVERIFY_EXCEPTION_THROWN(LumbraConfig::setLibrary(Location()), CoreError);
        QCOMPARE(LumbraConfig::library().path(), QByteArray("/old"));
    }

    void settingTheLibraryReplacesABrokenFile() {
        configure("{broken");
        const Location root = m_home->path().child("new");
        LumbraConfig::setLibrary(root);
        QCOMPARE(LumbraConfig::library(), root);
    }

    void aFailureToMakeTheConfigurationFolderIsThrown() {
        m_home->file(".config/lumbra", "a file in the way");
        const Location root = m_home->path().child("new");
        QVERIFY_EXCEPTION_THROWN(LumbraConfig::setLibrary(root), CoreError);
        QVERIFY(!root.exists());
    }

    void aFailureToWriteTheFileIsThrown() {
        m_home->folder(".config/lumbra/config.json"); // a folder in the file's place
        const Location root = m_home->path().child("new");
        try {
            LumbraConfig::setLibrary(root);
            QFAIL("nothing was thrown");
        } catch (const CoreError& error) {
            QVERIFY(!error.message.isEmpty());
        }
        QVERIFY(!root.exists());
    }

    void whenOnlyTheLibrarysFolderFailsTheFileAlreadyNamesIt() {
        m_home->file("occupied");
        const Location root = m_home->path().child("occupied").child("library");
        QVERIFY_EXCEPTION_THROWN(LumbraConfig::setLibrary(root), CoreError);
        QCOMPARE(LumbraConfig::library(), root);
    }

    void aLinkedConfigurationFileStaysALink() {
        m_home->file("dotfiles/config.json", R"({"kept": true})");
        m_home->folder(".config/lumbra");
        QVERIFY(QFile::link(m_home->path().child("dotfiles/config.json").toString(), configFile().toString()));
        LumbraConfig::setLibrary(m_home->path().child("new"));
        QVERIFY(QFileInfo(configFile().toString()).isSymLink());
        QVERIFY(bytesOf(m_home->path().child("dotfiles/config.json")).contains("\"kept\": true"));
        QCOMPARE(LumbraConfig::library(), m_home->path().child("new"));
    }
};

QTEST_GUILESS_MAIN(ConfigTest)
#include "tst_config.moc"

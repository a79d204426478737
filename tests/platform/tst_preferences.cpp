// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Preferences.h"
#include "support/TestHome.h"

#include <QFile>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

using namespace lumbra;

namespace {

constexpr Preference<bool> flag{QLatin1String("flag"), true};
constexpr Preference<int> number{QLatin1String("number"), 7};
constexpr Preference<double> amount{QLatin1String("amount"), 1.5};
constexpr Preference<QLatin1String> word{QLatin1String("word"), QLatin1String("all")};

} // namespace

class PreferencesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void filesLieInTheConfigurationFolder() {
        TestHome home;
        QCOMPARE(Preferences::standardFile(), home.path().child(".config/lumbra/Lumbra.ini"));
        QCOMPARE(Preferences::suiteFile(u"org.example.name"), home.path().child(".config/org.example.name.ini"));
    }

    void whatNobodyChoseIsTheFallback() {
        TestHome home;
        const Preferences preferences(home.path().child("p.ini"));
        QVERIFY(preferences.isReadable());
        QCOMPARE(preferences.value(flag), true);
        QCOMPARE(preferences.value(number), 7);
        QCOMPARE(preferences.value(amount), 1.5);
        QCOMPARE(preferences.value(word), QStringLiteral("all"));
        QVERIFY(!preferences.contains(QStringLiteral("flag")));
    }

    void valuesSurviveALaunch() {
        TestHome home;
        const Location file = home.path().child("new folder/p.ini");
        const QStringList names{QStringLiteral("one"), QStringLiteral("ä, b")};
        {
            Preferences preferences(file);
            preferences.setValue(flag, false);
            preferences.setValue(number, -30);
            preferences.setValue(amount, 0.1);
            preferences.setValue(word, QStringLiteral("größer; \"x\""));
            preferences.setValue(QStringLiteral("names"), names);
        }
        const Preferences preferences(file);
        QCOMPARE(preferences.value(flag), false);
        QCOMPARE(preferences.value(number), -30);
        QCOMPARE(preferences.value(amount), 0.1);
        QCOMPARE(preferences.value(word), QStringLiteral("größer; \"x\""));
        QCOMPARE(preferences.value(QStringLiteral("names")).toStringList(), names);
    }

    void whatIsOfAnotherTypeIsTheFallback_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("a word") << QByteArray("loud");
        QTest::newRow("nothing") << QByteArray("");
        QTest::newRow("a list") << QByteArray("a, b");
    }

    void whatIsOfAnotherTypeIsTheFallback() {
        QFETCH(QByteArray, text);
        TestHome home;
        const Preferences preferences(
            home.file("p.ini", "[General]\nflag=" + text + "\nnumber=" + text + "\namount=" + text + "\nword=a, b\n"));
        QCOMPARE(preferences.value(flag), true);
        QCOMPARE(preferences.value(number), 7);
        QCOMPARE(preferences.value(amount), 1.5);
        QCOMPARE(preferences.value(word), QStringLiteral("all"));
    }

    void changesAreToldOnceAndEqualValuesNotAtAll() {
        TestHome home;
        Preferences preferences(home.file("p.ini", "[General]\nnumber=3\n"));
        QSignalSpy changed(&preferences, &Preferences::changed);
        preferences.setValue(number, 4);
        preferences.setValue(number, 4);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed[0][0].toString(), QStringLiteral("number"));
        preferences.remove(QStringLiteral("number"));
        preferences.remove(QStringLiteral("number"));
        QCOMPARE(changed.size(), 2);
        QCOMPARE(preferences.value(number), 7);
    }

    void aValueEqualToTheOneInTheFileIsNoChange() {
        TestHome home;
        Preferences preferences(home.file("p.ini", "[General]\nflag=false\nnumber=3\namount=0.5\nword=x\n"));
        QSignalSpy changed(&preferences, &Preferences::changed);
        preferences.setValue(flag, false);
        preferences.setValue(number, 3);
        preferences.setValue(amount, 0.5);
        preferences.setValue(word, QStringLiteral("x"));
        QCOMPARE(changed.size(), 0);
    }

    void changesReachTheDiskByThemselves() {
        TestHome home;
        const Location file = home.path().child("p.ini");
        Preferences preferences(file);
        for (int value = 0; value <= 100; ++value)
            preferences.setValue(number, value);
        QTRY_COMPARE(QSettings(file.toString(), QSettings::IniFormat).value(QStringLiteral("number")).toInt(), 100);
    }

    void removedKeysLeaveTheFile() {
        TestHome home;
        const Location file = home.file("p.ini", "[General]\nkept=1\nnumber=3\n");
        Preferences preferences(file);
        preferences.remove(QStringLiteral("number"));
        preferences.sync();
        QSettings settings(file.toString(), QSettings::IniFormat);
        QVERIFY(!settings.contains(QStringLiteral("number")));
        QVERIFY(settings.contains(QStringLiteral("kept")));
    }

    void aFileThatMakesNoSenseIsToldAndHoldsNothing() {
        TestHome home;
        const Preferences preferences(home.folder("p.ini"));
        QVERIFY(!preferences.isReadable());
        QCOMPARE(preferences.value(number), 7);
    }

    void theSharedOnesAreAlwaysTheSame() {
        TestHome home;
        QCOMPARE(&Preferences::shared(), &Preferences::shared());
    }
};

QTEST_GUILESS_MAIN(PreferencesTest)
#include "tst_preferences.moc"

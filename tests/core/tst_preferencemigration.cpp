// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/PreferenceKeys.h"
#include "core/PreferenceMigration.h"
#include "support/TestHome.h"

#include <QTest>

#include <optional>

using namespace lumbra;

class PreferenceMigrationTest : public QObject {
    Q_OBJECT

    std::optional<TestHome> m_home;
    std::optional<Preferences> m_preferences;

    void olderSuite(const QByteArray& lines) const {
        m_home->file(".config/agency.tarnwick.folia.ini", "[General]\n" + lines);
    }

private Q_SLOTS:
    void init() {
        m_home.emplace();
        m_preferences.emplace(Preferences::standardFile());
    }
    void cleanup() {
        m_preferences.reset();
        m_home.reset();
    }

    void eachOfTheThirteenKeysIsTakenOver() {
        QByteArray lines;
        for (const QLatin1String key : PreferenceKeys::migrated)
            lines += QByteArray(key.data(), key.size()) + "=42\n";
        olderSuite(lines + "stranger=42\ninsightsEnabled=42\n");
        migratePreferences(*m_preferences);
        QCOMPARE(PreferenceKeys::migrated.size(), size_t(13));
        for (const QLatin1String key : PreferenceKeys::migrated)
            QCOMPARE(m_preferences->value(QString(key)).toString(), QStringLiteral("42"));
        QVERIFY(!m_preferences->contains(QStringLiteral("stranger")));
        QVERIFY(!m_preferences->contains(QStringLiteral("insightsEnabled")));
        QVERIFY(m_preferences->value(PreferenceKeys::migratedLegacyPreferences));
    }

    void aValueThatIsThereIsKept() {
        olderSuite("zoom=300\nsort=size\nhiddenProjects=a, b\n");
        m_preferences->setValue(PreferenceKeys::zoom, 120);
        migratePreferences(*m_preferences);
        QCOMPARE(m_preferences->value(PreferenceKeys::zoom), 120.0);
        QCOMPARE(m_preferences->value(PreferenceKeys::sort), QStringLiteral("size"));
        QCOMPARE(m_preferences->value(PreferenceKeys::hiddenProjects).toStringList(),
                 (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    }

    void itHappensOnce() {
        migratePreferences(*m_preferences); // no older suite at all
        QVERIFY(m_preferences->value(PreferenceKeys::migratedLegacyPreferences));
        olderSuite("zoom=300\n");
        migratePreferences(*m_preferences);
        QVERIFY(!m_preferences->contains(QStringLiteral("zoom")));
    }

    void anOlderSuiteThatCannotBeOpenedIsTriedAgain() {
        m_home->folder(".config/agency.tarnwick.folia.ini");
        migratePreferences(*m_preferences);
        QVERIFY(!m_preferences->value(PreferenceKeys::migratedLegacyPreferences));
    }

    void defaultsHoldWhileNothingIsChosen() {
        QCOMPARE(m_preferences->value(PreferenceKeys::zoom), 170.0);
        QCOMPARE(m_preferences->value(PreferenceKeys::sort), QStringLiteral("newest"));
        QCOMPARE(m_preferences->value(PreferenceKeys::kind), QStringLiteral("all"));
        QCOMPARE(m_preferences->value(PreferenceKeys::recursive), false);
        QCOMPARE(m_preferences->value(PreferenceKeys::recentDays), 7);
        QCOMPARE(m_preferences->value(PreferenceKeys::inspector), true);
        QCOMPARE(m_preferences->value(PreferenceKeys::playerLoop), false);
        QCOMPARE(m_preferences->value(PreferenceKeys::playerVolume), 1.0);
        QCOMPARE(m_preferences->value(PreferenceKeys::autoplayNext), true);
        QCOMPARE(m_preferences->value(PreferenceKeys::playerInfo), false);
        QCOMPARE(m_preferences->value(PreferenceKeys::playerQueue), true);
        QCOMPARE(m_preferences->value(PreferenceKeys::projectsByActivity), true);
        QCOMPARE(m_preferences->value(PreferenceKeys::insightsEnabled), true);
    }
};

QTEST_GUILESS_MAIN(PreferenceMigrationTest)
#include "tst_preferencemigration.moc"

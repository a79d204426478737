// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Appearance.h"
#include "support/PrivateBus.h"
#include "support/TestHome.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QMap>
#include <QSignalSpy>
#include <QTest>

#include <optional>

using namespace lumbra;

using Groups = QMap<QString, QVariantMap>;
Q_DECLARE_METATYPE(Groups)

namespace {

// Stands where the desktop's portal would.
class Portal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    Portal(const QString& address, const Groups& settings)
        : m_bus(QDBusConnection::connectToBus(address, QStringLiteral("portal"))), m_settings(settings) {
        m_bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                             QDBusConnection::ExportScriptableSlots | QDBusConnection::ExportScriptableSignals);
        m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }
    ~Portal() override {
        m_bus.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
        QDBusConnection::disconnectFromBus(QStringLiteral("portal"));
    }

public Q_SLOTS:
    Q_SCRIPTABLE Groups ReadAll(const QStringList&) { return m_settings; }

Q_SIGNALS:
    Q_SCRIPTABLE void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    QDBusConnection m_bus;
    Groups m_settings;
};

const QString common = QStringLiteral("org.freedesktop.appearance");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");
const QString gnomeAccess = QStringLiteral("org.gnome.desktop.a11y.interface");

} // namespace

class AppearanceTest : public QObject {
    Q_OBJECT

    TestHome m_home;
    PrivateBus m_bus;

private Q_SLOTS:
    void initTestCase() {
        qDBusRegisterMetaType<Groups>();
        qputenv("GSETTINGS_BACKEND", "memory"); // what this machine's user has chosen is not asked
    }

    void withoutAPortalNothingIsAskedFor() {
        const Appearance appearance;
        QVERIFY(!appearance.reducedMotion());
        QVERIFY(!appearance.highContrast());
    }

    void thePortalIsFollowed_data() {
        QTest::addColumn<QString>("group");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("reducedMotion");
        QTest::addColumn<bool>("highContrast");
        QTest::newRow("contrast") << common << QStringLiteral("contrast") << QVariant(1u) << false << true;
        QTest::newRow("motion") << common << QStringLiteral("reduced-motion") << QVariant(1u) << true << false;
        QTest::newRow("no animations of GNOME")
            << gnome << QStringLiteral("enable-animations") << QVariant(false) << true << false;
        QTest::newRow("contrast of GNOME")
            << gnomeAccess << QStringLiteral("high-contrast") << QVariant(true) << false << true;
    }

    void thePortalIsFollowed() {
        QFETCH(QString, group);
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        QFETCH(bool, reducedMotion);
        QFETCH(bool, highContrast);
        Groups settings{{gnome, {{QStringLiteral("font-name"), QStringLiteral("Inter")}}}};
        settings[group].insert(key, value);
        Portal portal(m_bus.address(), settings);
        Appearance appearance;
        QSignalSpy changed(&appearance, &Appearance::changed);
        QTRY_COMPARE(changed.size(), 1);
        QCOMPARE(appearance.reducedMotion(), reducedMotion);
        QCOMPARE(appearance.highContrast(), highContrast);
    }

    void aChangeOfMindIsFollowed() {
        Portal portal(m_bus.address(), {{common, {{QStringLiteral("contrast"), 1u}}}});
        Appearance appearance;
        QSignalSpy changed(&appearance, &Appearance::changed);
        QTRY_VERIFY(appearance.highContrast());
        Q_EMIT portal.SettingChanged(common, QStringLiteral("contrast"), QDBusVariant(0u));
        QTRY_VERIFY(!appearance.highContrast());
        QCOMPARE(changed.size(), 2);
        Q_EMIT portal.SettingChanged(common, QStringLiteral("color-scheme"), QDBusVariant(1u));
        Q_EMIT portal.SettingChanged(gnome, QStringLiteral("enable-animations"), QDBusVariant(false));
        QTRY_VERIFY(appearance.reducedMotion());
        QCOMPARE(changed.size(), 3);
    }

    void whatAllDesktopsShareHasTheLastWord() {
        Portal portal(m_bus.address(), {{common, {{QStringLiteral("contrast"), 1u}}},
                                        {gnomeAccess, {{QStringLiteral("high-contrast"), false}}}});
        const Appearance appearance;
        QTRY_VERIFY(appearance.highContrast());
    }
};

QTEST_GUILESS_MAIN(AppearanceTest)
#include "tst_appearance.moc"

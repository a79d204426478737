// SPDX-License-Identifier: GPL-3.0-or-later
#include "SingleInstance.h"

#include <QCryptographicHash>
#include <QDBusAbstractAdaptor>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

namespace lumbra {

namespace {

constexpr int longestAnswer = 10'000; // milliseconds: the other one may be just starting, on a busy machine

// With it a desktop lets a program that it has started come to the front: in the environment of a start, or sent along
// with a call. Qt reads the variable when a window asks to come to the front.
constexpr const char* tokenVariable = "XDG_ACTIVATION_TOKEN";
const QString tokenKey = QStringLiteral("activation-token");

QVariantMap platformData() {
    const QString token = qEnvironmentVariable(tokenVariable);
    return token.isEmpty() ? QVariantMap() : QVariantMap{{tokenKey, token}};
}

// The methods that the desktop calls.
class ApplicationInterface : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationInterface(SingleInstance* instance) : QDBusAbstractAdaptor(instance), m_instance(instance) {}

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): named by the interface
    void Activate(const QVariantMap& data) { open({}, data); }
    void Open(const QStringList& uris, const QVariantMap& data) {
        QList<QUrl> urls;
        for (const QString& uri : uris)
            urls.append(QUrl(uri));
        open(urls, data);
    }
    // There are no actions in the desktop entry: whichever is asked for, the window comes to the front.
    void ActivateAction(const QString&, const QVariantList&, const QVariantMap& data) { open({}, data); }
    // NOLINTEND(readability-identifier-naming)

private:
    void open(const QList<QUrl>& urls, const QVariantMap& data) {
        if (const QString token = data.value(tokenKey).toString(); !token.isEmpty())
            qputenv(tokenVariable, token.toUtf8());
        Q_EMIT m_instance->opened(urls);
    }

    SingleInstance* const m_instance;
};

} // namespace

const QString SingleInstance::desktopName = QStringLiteral("com.lumbra.Lumbra");
const QString SingleInstance::objectPath = QStringLiteral("/com/lumbra/Lumbra");

QString SingleInstance::nameFor(const Location& root) {
    constexpr qsizetype enough = 16; // hexadecimal digits
    const QByteArray digest = QCryptographicHash::hash(root.path(), QCryptographicHash::Sha256).toHex();
    return desktopName + QLatin1String(".Library") + QString::fromLatin1(digest.first(enough));
}

SingleInstance::SingleInstance(const QDBusConnection& bus, QObject* parent) : QObject(parent), m_bus(bus) {
    new ApplicationInterface(this);
}

SingleInstance::~SingleInstance() {
    for (const QString& name : std::as_const(m_names))
        m_bus.unregisterService(name);
}

bool SingleInstance::claim(const Location& root, const QList<QUrl>& urls) {
    // The object is there before the name: whoever finds the name can call at once.
    m_bus.registerObject(objectPath, this, QDBusConnection::ExportAdaptors);
    const QString name = nameFor(root);
    // The one that has the name may be ending right now, and then another turn gets it.
    constexpr int turns = 3;
    for (int turn = 0; turn < turns; ++turn) {
        if (m_bus.registerService(name)) {
            m_names.append(name);
            // The desktop's own way in leads to the first of several with libraries of their own.
            if (m_bus.registerService(desktopName))
                m_names.append(desktopName);
            return true;
        }
        if (handOver(name, urls))
            return false;
    }
    return true; // the bus makes no sense: better a second one than none
}

bool SingleInstance::handOver(const QString& name, const QList<QUrl>& urls) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(name, objectPath, QStringLiteral("org.freedesktop.Application"),
                                       urls.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("Open"));
    call.setAutoStartService(false);
    if (!urls.isEmpty()) {
        QStringList uris;
        for (const QUrl& url : urls)
            uris.append(url.toString(QUrl::FullyEncoded));
        call << uris;
    }
    call << platformData();
    const QDBusMessage answer = m_bus.call(call, QDBus::Block, longestAnswer);
    // One that is there and busy for so long has the call all the same, and will see to it.
    return answer.type() == QDBusMessage::ReplyMessage || m_bus.interface()->isServiceRegistered(name);
}

} // namespace lumbra

#include "SingleInstance.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppHarness.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>

namespace lumbra {

namespace {

QPoint middle(const AppState::Item& item) {
    return item.rect.center().toPoint();
}

} // namespace

QString AppState::relative(const QString& path) const {
    return path.startsWith(m_library + u'/') ? path.sliced(m_library.size() + 1) : path;
}

QList<AppState::Item> AppState::items(const char* list) const {
    QList<Item> all;
    for (const QJsonValue& value : m_values.value(QLatin1String(list)).toArray()) {
        const QJsonObject object = value.toObject();
        const auto text = [&](const char* key) { return object.value(QLatin1String(key)).toString(); };
        const auto number = [&](const char* key) { return object.value(QLatin1String(key)).toDouble(); };
        const auto flag = [&](const char* key) { return object.value(QLatin1String(key)).toBool(); };
        Item item;
        item.type = text("type").isEmpty() ? text("name") : text("type");
        item.path = relative(text("path"));
        item.text = text("title").isEmpty() ? text("text") : text("title");
        item.rect = QRectF(number("x"), number("y"), number("width"), number("height"));
        item.hasPicture = flag("hasPicture");
        item.selected = flag("selected");
        item.enabled = flag("enabled");
        all.append(item);
    }
    return all;
}

AppState::Item AppState::tile(const QString& path) const {
    for (const Item& item : tiles())
        if (item.path == path)
            return item;
    return {};
}

AppState::Item AppState::sidebarRow(const QString& title) const {
    for (const Item& item : sidebar())
        if (item.text == title)
            return item;
    return {};
}

AppState::Item AppState::control(const QString& name) const {
    for (const Item& item : items("controls"))
        if (item.type == name)
            return item;
    return {};
}

QStringList AppState::pagePaths() const {
    QStringList paths;
    for (const QJsonValue& row : m_values.value(QLatin1String("rows")).toArray())
        for (const QJsonValue& cell : row.toObject().value(QLatin1String("cells")).toArray())
            paths.append(relative(cell.toString()));
    return paths;
}

QByteArray AppState::json() const {
    return QJsonDocument(m_values).toJson();
}

AppHarness::AppHarness(AppDisplay& display) : m_display(display) {
    m_library = m_home.path().child("Lumbra");
    m_socketPath = m_home.path().child("run/state");
    m_process.setProcessChannelMode(QProcess::MergedChannels);
}

AppHarness::~AppHarness() {
    stop();
}

QProcessEnvironment AppHarness::environment(Root root) const {
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), m_display.name());
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    environment.insert(QStringLiteral("LUMBRA_STATE_SOCKET"), m_socketPath.toString());
    // Neither the user's session bus nor one that would be started for this display and outlive the test.
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_bus);
    environment.insert(QStringLiteral("LIBGL_ALWAYS_SOFTWARE"), QStringLiteral("1"));
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    if (root == Root::environment)
        environment.insert(QStringLiteral("LUMBRA_LIBRARY"), m_library.toString());
    return environment;
}

void AppHarness::start(Root root, const QStringList& arguments) {
    const QString program = qEnvironmentVariable("LUMBRA_DESKTOP");
    if (program.isEmpty())
        qFatal("LUMBRA_DESKTOP names no program; run the tests by ctest");
    m_process.setProcessEnvironment(environment(root));
    m_process.start(program, arguments);
    if (!m_process.waitForStarted(patience))
        qFatal("%s does not start", qUtf8Printable(program));
}

bool AppHarness::startAnother(const QStringList& arguments) {
    QProcess another;
    another.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    another.setProcessEnvironment(m_process.processEnvironment());
    another.start(m_process.program(), arguments);
    const bool ended = QTest::qWaitFor([&] { return another.state() == QProcess::NotRunning; }, patience);
    if (!ended) {
        another.kill();
        another.waitForFinished(patience);
    }
    return ended && another.exitStatus() == QProcess::NormalExit && another.exitCode() == 0;
}

bool AppHarness::close() {
    adoptWindow();
    m_display.press(QStringLiteral("alt+F4"));
    return m_process.waitForFinished(patience) && m_process.exitStatus() == QProcess::NormalExit
           && m_process.exitCode() == 0;
}

void AppHarness::stop() {
    m_socket.abort();
    m_window = 0;
    if (!isRunning())
        return;
    m_process.terminate();
    if (m_process.waitForFinished(patience))
        return;
    m_process.kill();
    m_process.waitForFinished(patience);
}

AppState AppHarness::state() {
    m_output += m_process.readAll();
    m_last = {};
    if (m_socket.state() != QLocalSocket::ConnectedState) {
        m_socket.abort();
        m_socket.connectToServer(m_socketPath.toString());
        if (!m_socket.waitForConnected(patience))
            return m_last;
    }
    m_socket.write("dump\n");
    while (!m_socket.canReadLine())
        if (!m_socket.waitForReadyRead(patience)) {
            m_socket.abort();
            return m_last;
        }
    m_last = AppState(QJsonDocument::fromJson(m_socket.readLine()).object(), m_library.toString());
    return m_last;
}

AppState AppHarness::settled() {
    constexpr int enough = 10; // answers in a row that are one and the same
    AppState last;
    int same = 0;
    const auto isSettled = [&] {
        const QByteArray before = last.json();
        last = state();
        same = last.complete() && last.json() == before ? same + 1 : 0;
        return same == enough;
    };
    return QTest::qWaitFor(isSettled, patience) ? last : AppState();
}

void AppHarness::adoptWindow() {
    if (m_window)
        return;
    if (!QTest::qWaitFor([this] { return (m_window = m_display.windowOf(m_process.processId())) != 0; }, patience))
        qFatal("the application shows no window");
    m_display.focus(m_window);
}

quint64 AppHarness::window() {
    adoptWindow();
    return m_window;
}

void AppHarness::click(const AppState::Item& item, int button, int times) {
    adoptWindow();
    m_display.click(m_window, middle(item), button, times);
}

void AppHarness::move(const AppState::Item& item) {
    adoptWindow();
    m_display.move(m_window, middle(item));
}

void AppHarness::moveTo(QPoint point) {
    adoptWindow();
    m_display.move(m_window, point);
}

QColor AppHarness::colourAt(const AppState::Item& item) {
    adoptWindow();
    return m_display.screenshot(m_window).pixelColor(middle(item));
}

void AppHarness::keepScreenshot(const QString& name) {
    QDir().mkpath(QStringLiteral(LUMBRA_SCREENSHOTS));
    m_display.screenshot().save(QStringLiteral(LUMBRA_SCREENSHOTS "/%1.png").arg(name));
}

QByteArray AppHarness::report() {
    m_output += m_process.readAll();
    return QByteArray(isRunning() ? "it runs" : "it has ended") + "\nit wrote: " + m_output
           + "\nit last told: " + m_last.json();
}

} // namespace lumbra

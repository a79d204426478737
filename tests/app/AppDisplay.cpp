// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppDisplay.h"

#include <QProcessEnvironment>
#include <QTest>

#include <unistd.h>

namespace lumbra {

namespace {

// Alt+F4 closes.
QByteArray openboxSettings(AppDisplay::Windows windows) {
    QByteArray settings = R"(<?xml version="1.0"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
<keyboard><keybind key="A-F4"><action name="Close"/></keybind></keyboard>
)";
    if (windows == AppDisplay::Windows::maximized) // dialogues stay as they are
        settings += R"(<applications><application class="*" type="normal">
<decor>no</decor><maximized>yes</maximized>
</application></applications>
)";
    return settings + "</openbox_config>\n";
}

void end(QProcess& process) {
    process.terminate();
    if (!process.waitForFinished(5'000)) {
        process.kill();
        process.waitForFinished(patience);
    }
}

} // namespace

AppDisplay::AppDisplay(Windows windows, QSize size) {
    // The server picks a free number itself and tells it on a descriptor: no two tests race for one.
    m_server.setProgram(QStringLiteral("Xvfb"));
    m_server.setArguments({QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                           QStringLiteral("0"), QStringLiteral("%1x%2x24").arg(size.width()).arg(size.height()),
                           QStringLiteral("-nolisten"), QStringLiteral("tcp"), QStringLiteral("-noreset")});
    m_server.start();
    while (!m_server.canReadLine())
        if (!m_server.waitForReadyRead(patience))
            qFatal("Xvfb does not start: %s", m_server.readAllStandardError().constData());
    m_name = u':' + QString::fromLatin1(m_server.readLine().trimmed());

    if (!m_settings.open() || m_settings.write(openboxSettings(windows)) < 0 || !m_settings.flush())
        qFatal("the settings of openbox can't be written");
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), m_name);
    m_windowManager.setProcessEnvironment(environment);
    m_windowManager.setStandardOutputFile(QProcess::nullDevice());
    m_windowManager.setStandardErrorFile(QProcess::nullDevice());
    m_windowManager.start(QStringLiteral("openbox"), {QStringLiteral("--config-file"), m_settings.fileName()});
    if (!m_windowManager.waitForStarted(patience))
        qFatal("openbox does not start");
    // It manages windows from when it has named itself on the root window.
    const bool ready = QTest::qWaitFor(
        [this] {
            return run(QStringLiteral("xprop"), {QStringLiteral("-root"), QStringLiteral("_NET_SUPPORTING_WM_CHECK")})
                .contains("window id");
        },
        patience);
    if (!ready)
        qFatal("openbox does not answer");
}

AppDisplay::~AppDisplay() {
    end(m_windowManager);
    end(m_server);
}

QByteArray AppDisplay::run(const QString& program, const QStringList& arguments) const {
    QProcess process;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), m_name);
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    if (!process.waitForFinished(patience))
        qFatal("%s does not answer", qUtf8Printable(program));
    return process.readAllStandardOutput();
}

quint64 AppDisplay::windowOf(qint64 process) const {
    const auto found = run(QStringLiteral("xdotool"), {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                                       QStringLiteral("--pid"), QString::number(process)});
    quint64 largest = 0;
    int area = 0;
    for (const QByteArray& line : found.split('\n')) {
        if (line.isEmpty())
            continue;
        const QRect place = placeOf(line.toULongLong());
        if (place.width() * place.height() > area) {
            area = place.width() * place.height();
            largest = line.toULongLong();
        }
    }
    return largest;
}

QRect AppDisplay::placeOf(quint64 window) const {
    // Not by xdotool, which counts the frame twice.
    const QByteArray told = run(QStringLiteral("xwininfo"), {QStringLiteral("-id"), QString::number(window)});
    QHash<QByteArray, int> fields;
    for (const QByteArray& line : told.split('\n'))
        fields.insert(line.left(line.lastIndexOf(':')).trimmed(),
                      line.mid(line.lastIndexOf(':') + 1).trimmed().toInt());
    return {fields["Absolute upper-left X"], fields["Absolute upper-left Y"], fields["Width"], fields["Height"]};
}

QMargins AppDisplay::frameOf(quint64 window) const {
    const QByteArray told = run(QStringLiteral("xprop"),
                                {QStringLiteral("-id"), QString::number(window), QStringLiteral("_NET_FRAME_EXTENTS")});
    const QList<QByteArray> sides = told.mid(told.indexOf('=') + 1).split(',');
    if (sides.size() != 4)
        return {};
    const auto side = [&](qsizetype index) { return sides[index].trimmed().toInt(); };
    return {side(0), side(2), side(1), side(3)}; // told as left, right, top, bottom
}

void AppDisplay::place(quint64 window, const QRect& place) const {
    const QString name = QString::number(window);
    events({QStringLiteral("windowsize"), QStringLiteral("--sync"), name, QString::number(place.width()),
            QString::number(place.height())});
    events({QStringLiteral("windowmove"), QStringLiteral("--sync"), name, QString::number(place.x()),
            QString::number(place.y())});
}

void AppDisplay::minimize(quint64 window) const {
    events({QStringLiteral("windowminimize"), QStringLiteral("--sync"), QString::number(window)});
}

void AppDisplay::focus(quint64 window) const {
    events({QStringLiteral("windowactivate"), QStringLiteral("--sync"), QString::number(window)});
}

void AppDisplay::move(quint64 window, QPoint to) const {
    events({QStringLiteral("mousemove"), QStringLiteral("--window"), QString::number(window), QString::number(to.x()),
            QString::number(to.y())});
}

void AppDisplay::click(quint64 window, QPoint at, int button, int times) const {
    move(window, at);
    events({QStringLiteral("click"), QStringLiteral("--repeat"), QString::number(times), QStringLiteral("--delay"),
            QStringLiteral("60"), QString::number(button)});
}

void AppDisplay::drag(quint64 window, QPoint from, QPoint to) const {
    move(window, from);
    events({QStringLiteral("mousedown"), QStringLiteral("1")});
    constexpr int steps = 8;
    for (int step = 1; step <= steps; ++step)
        move(window, from + (to - from) * step / steps);
    events({QStringLiteral("mouseup"), QStringLiteral("1")});
}

void AppDisplay::press(const QString& key) const {
    events({QStringLiteral("key"), QStringLiteral("--clearmodifiers"), key});
}

void AppDisplay::type(const QString& text) const {
    events({QStringLiteral("type"), QStringLiteral("--clearmodifiers"), text});
}

QImage AppDisplay::screenshot(std::optional<quint64> window) const {
    const QString which = window ? QString::number(*window) : QStringLiteral("root");
    const QByteArray png = run(QStringLiteral("import"), {QStringLiteral("-window"), which, QStringLiteral("png:-")});
    return QImage::fromData(png, "png");
}

} // namespace lumbra

// A message bus of a test's own, with nobody on it but whom the test puts there. Make it before anything asks for the
// session bus, and keep it to the end.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QTemporaryFile>

namespace lumbra {

class PrivateBus {
public:
    PrivateBus() {
        QTemporaryFile file;
        if (!file.open() || file.write(configuration) < 0 || !file.flush())
            qFatal("cannot write the configuration of a bus");
        m_daemon.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_daemon.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--config-file=") + file.fileName(),
                                                       QStringLiteral("--nofork"), QStringLiteral("--print-address")});
        while (!m_daemon.canReadLine()) {
            if (!m_daemon.waitForReadyRead())
                qFatal("cannot start a bus");
        }
        const QByteArray address = m_daemon.readLine().trimmed();
        m_address = QString::fromUtf8(address);
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    }

    ~PrivateBus() { stop(); }

    Q_DISABLE_COPY_MOVE(PrivateBus)

    void stop() {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }

    // Where it listens, as DBUS_SESSION_BUS_ADDRESS says too.
    QString address() const { return m_address; }

private:
    // No folders of services: a call to a name that nobody holds fails at once, whatever this machine has installed.
    static constexpr char configuration[] =
        R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-BUS Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

    QProcess m_daemon;
    QString m_address;
};

} // namespace lumbra

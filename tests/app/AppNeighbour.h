// The other program on the application's display, to drag from and to; see neighbour.cpp.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AppDisplay.h"
#include "platform/Location.h"

#include <QProcess>
#include <QTest>

namespace lumbra {

class AppNeighbour {
public:
    AppNeighbour(const AppDisplay& display, const Location& file) {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"), display.name());
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        m_process.setProcessEnvironment(environment);
        m_process.start(environment.value(QStringLiteral("LUMBRA_NEIGHBOUR")), {file.toString()});
        if (!m_process.waitForStarted() || !QTest::qWaitFor([this] { return said("there"); }, patience))
            qFatal("there is no other program");
    }
    ~AppNeighbour() {
        m_process.terminate();
        m_process.waitForFinished();
    }

    bool said(const QByteArray& line) {
        m_process.waitForReadyRead(10);
        m_output += m_process.readAllStandardOutput();
        return m_output.split('\n').contains(line);
    }

    // Where it stands on the display, and so in a window that fills it.
    static constexpr QPoint middle{1440 - 140, 900 - 120};

private:
    QProcess m_process;
    QByteArray m_output;
};

} // namespace lumbra

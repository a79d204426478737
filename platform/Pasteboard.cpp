// SPDX-License-Identifier: GPL-3.0-or-later
#include "Pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QPointer>

namespace lumbra {

namespace {

class DesktopPasteboard : public Pasteboard {
public:
    quint64 set(const Contents& contents) override {
        m_contents = contents;
        offer();
        return ++m_number;
    }

    void add(quint64 number, const Contents& flavours) override {
        if (number != m_number || !isOurs() || !mayOffer())
            return;
        m_contents += flavours;
        offer();
    }

private:
    bool isOurs() const { return m_offered && QGuiApplication::clipboard()->mimeData() == m_offered; }

    // Wayland hears nobody without the focus, and what we had offered before would be gone.
    static bool mayOffer() {
        return QGuiApplication::focusWindow() || !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    }

    void offer() {
        m_offered = new QMimeData;
        for (const Flavour& flavour : std::as_const(m_contents))
            m_offered->setData(flavour.type, flavour.bytes);
        QGuiApplication::clipboard()->setMimeData(m_offered);
    }

    Contents m_contents;
    quint64 m_number = 0;
    QPointer<QMimeData> m_offered; // the clipboard's own
};

} // namespace

Pasteboard& Pasteboard::general() {
    static auto* const pasteboard = new DesktopPasteboard; // what ends late may still hold it
    return *pasteboard;
}

} // namespace lumbra

// SPDX-License-Identifier: GPL-3.0-or-later
#include "Pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QPointer>

namespace lumbra {

namespace {

// Hands out the bytes as they are. Qt's own would take a list of addresses apart at once, and join it again when
// somebody asks: for many files longer than a frame.
class FlavouredData : public QMimeData {
public:
    explicit FlavouredData(Pasteboard::Contents contents) : m_contents(std::move(contents)) {}

    QStringList formats() const override {
        QStringList types;
        for (const Pasteboard::Flavour& flavour : m_contents)
            types.append(flavour.type);
        return types;
    }

protected:
    QVariant retrieveData(const QString& type, QMetaType) const override {
        for (const Pasteboard::Flavour& flavour : m_contents)
            if (flavour.type == type)
                return flavour.bytes;
        return {};
    }

private:
    const Pasteboard::Contents m_contents;
};

class DesktopPasteboard : public Pasteboard {
public:
    DesktopPasteboard() {
        // Also heard when the desktop only repeats what this program has copied itself.
        connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
            const QClipboard* const clipboard = QGuiApplication::clipboard();
            if (clipboard->mimeData() != m_before || !clipboard->ownsClipboard())
                m_changed = true;
        });
    }

    quint64 set(const Contents& contents) override {
        m_contents = contents;
        offer();
        return ++m_number;
    }

    quint64 announce() override {
        m_before = QGuiApplication::clipboard()->mimeData();
        m_changed = false;
        return ++m_number;
    }

    bool supply(quint64 number, const Contents& contents) override {
        if (number != m_number || holdsOthers() || !mayOffer())
            return false;
        m_contents = contents;
        offer();
        return true;
    }

    void add(quint64 number, const Contents& flavours) override {
        if (number != m_number || !isOurs() || !mayOffer())
            return;
        m_contents += flavours;
        offer();
    }

private:
    bool isOurs() const { return m_offered && QGuiApplication::clipboard()->mimeData() == m_offered; }

    // Somebody else has copied since contents were announced. What a program had copied that ended since then is gone,
    // which is a change as well, but leaves nothing to keep.
    bool holdsOthers() const { return m_changed && !QGuiApplication::clipboard()->mimeData()->formats().isEmpty(); }

    // Wayland hears nobody without the focus, and what we had offered before would be gone.
    static bool mayOffer() {
        return QGuiApplication::focusWindow() || !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    }

    void offer() {
        m_offered = new FlavouredData(m_contents);
        QGuiApplication::clipboard()->setMimeData(m_offered);
    }

    Contents m_contents;
    quint64 m_number = 0;
    QPointer<QMimeData> m_offered;      // the clipboard's own
    QPointer<const QMimeData> m_before; // what was there when contents were announced
    bool m_changed = false;             // since then, by somebody else
};

} // namespace

Pasteboard& Pasteboard::general() {
    static auto* const pasteboard = new DesktopPasteboard; // what ends late may still hold it
    return *pasteboard;
}

} // namespace lumbra

// One line of a menu as a value: what it says, whether it can be chosen, and what it does.
//
// Controllers decide what stands in a menu and in which order; EntriesMenu.qml draws whatever it is given.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariantList>

#include <functional>
#include <optional>

namespace lumbra {

class MenuEntry {
    Q_GADGET
    Q_PROPERTY(bool divider READ isDivider)
    Q_PROPERTY(bool heading READ isHeading)
    Q_PROPERTY(bool note READ isNote)
    Q_PROPERTY(bool submenu READ isSubmenu)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(bool enabled MEMBER enabled)
    Q_PROPERTY(bool checkable READ isCheckable)
    Q_PROPERTY(bool checked READ isChecked)
    Q_PROPERTY(bool destructive MEMBER destructive)
    Q_PROPERTY(int hue MEMBER hue)
    Q_PROPERTY(QVariantList children READ childList)

public:
    enum class Kind {
        item,
        divider,
        heading, // names the items below it, can't be chosen
        note,    // a sentence about the item above it, can't be chosen
        submenu,
    };

    using Action = std::function<void()>;

    // Finds out what stands in a submenu and hands it to `ready`, later and on the main thread, unless the context has
    // gone by then.
    using Ready = std::function<void(const QList<MenuEntry>& entries)>;
    using Later = std::function<void(QObject* context, Ready ready)>;

    static MenuEntry item(const QString& title, Action action) { return {Kind::item, title, std::move(action)}; }
    static MenuEntry divider() { return {Kind::divider, {}, {}}; }
    static MenuEntry heading(const QString& title) { return {Kind::heading, title, {}}; }
    static MenuEntry note(const QString& text) { return MenuEntry{Kind::note, text, {}}.disabledIf(true); }
    static MenuEntry submenu(const QString& title, const QList<MenuEntry>& children) {
        MenuEntry made{Kind::submenu, title, {}};
        made.children = children;
        return made;
    }

    // `children` stand there until the rest is known.
    static MenuEntry submenu(const QString& title, const QList<MenuEntry>& children, Later later) {
        MenuEntry made = submenu(title, children);
        made.later = std::move(later);
        return made;
    }

    MenuEntry() = default;

    MenuEntry& disabledIf(bool condition) {
        enabled = !condition;
        return *this;
    }
    MenuEntry& withCheckmark(bool present) {
        checked = present;
        return *this;
    }
    MenuEntry& thatDestroys() {
        destructive = true;
        return *this;
    }
    MenuEntry& withHue(int index) {
        hue = index;
        return *this;
    }

    Q_INVOKABLE void run() const {
        if (action)
            action();
    }

    // Gives the property "entries" of a menu that shows this submenu its whole list, once that is known.
    Q_INVOKABLE void fill(QObject* menu) const;

    bool isDivider() const { return kind == Kind::divider; }
    bool isHeading() const { return kind == Kind::heading; }
    bool isNote() const { return kind == Kind::note; }
    bool isSubmenu() const { return kind == Kind::submenu; }
    bool isCheckable() const { return checked.has_value(); }
    bool isChecked() const { return checked.value_or(false); }

    // As QML takes them.
    static QVariantList toVariants(const QList<MenuEntry>& entries);
    QVariantList childList() const { return toVariants(children); }

    Kind kind = Kind::item;
    QString title;
    Action action;
    QList<MenuEntry> children;
    Later later;                 // of a submenu whose children are not all known when the menu is made
    std::optional<bool> checked; // absent for an item that is no choice
    bool enabled = true;
    bool destructive = false;
    int hue = -1; // of the swatch before the title; below zero for none

private:
    MenuEntry(Kind which, const QString& text, Action does) : kind(which), title(text), action(std::move(does)) {}
};

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::MenuEntry)

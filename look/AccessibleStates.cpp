// SPDX-License-Identifier: GPL-3.0-or-later
#include "AccessibleStates.h"

#include <QAccessible>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QPointer>
#include <QQuickItem>

namespace lumbra::AccessibleStates {

namespace {

constexpr const char* expandable = "expandable";
constexpr const char* expanded = "expanded";

void tell(QObject* item, const QAccessible::State& changed) {
    QAccessibleStateChangeEvent event(item, changed);
    QAccessible::updateAccessibility(&event);
}

bool isExpandable(const QObject* object) {
    return object->isQuickItemType() && object->metaObject()->indexOfProperty(expandable) >= 0;
}

// Of a row; belongs to it.
class Expansion : public QObject {
    Q_OBJECT

public:
    explicit Expansion(QQuickItem* row) : QObject(row) {
        const QMetaObject* const type = row->metaObject();
        const QMetaProperty open = type->property(type->indexOfProperty(expanded));
        connect(row, open.notifySignal(), this, metaObject()->method(metaObject()->indexOfSlot("changed()")));
    }

private Q_SLOTS:
    void changed() {
        QAccessible::State state;
        state.expanded = true;
        tell(parent(), state);
    }
};

// Qt's own interface of a control or a row, which it is for all but the state.
class Control : public QAccessibleInterface {
public:
    Control(QAccessibleInterface* own, QQuickItem* item) : m_own(own), m_item(item) {
        QObject::connect(item, &QQuickItem::enabledChanged, item, [item] {
            QAccessible::State changed;
            changed.disabled = true;
            tell(item, changed);
        });
        if (isExpandable(item))
            new Expansion(item);
    }

    QAccessible::State state() const override {
        QAccessible::State state = m_own->state();
        state.disabled = m_item && !m_item->isEnabled();
        state.expandable = m_item && m_item->property(expandable).toBool();
        state.expanded = state.expandable && m_item->property(expanded).toBool();
        state.collapsed = state.expandable && !state.expanded;
        return state;
    }

    bool isValid() const override { return m_item && m_own->isValid(); }
    QObject* object() const override { return m_item; }
    QWindow* window() const override { return m_own->window(); }
    QList<QPair<QAccessibleInterface*, QAccessible::Relation>> relations(QAccessible::Relation match) const override {
        return m_own->relations(match);
    }
    QAccessibleInterface* focusChild() const override {
        QAccessibleInterface* const child = m_own->focusChild();
        return child == m_own ? const_cast<Control*>(this) : child;
    }
    QAccessibleInterface* childAt(int x, int y) const override { return m_own->childAt(x, y); }
    QAccessibleInterface* parent() const override { return m_own->parent(); }
    QAccessibleInterface* child(int index) const override { return m_own->child(index); }
    int childCount() const override { return m_own->childCount(); }
    int indexOfChild(const QAccessibleInterface* child) const override { return m_own->indexOfChild(child); }
    QString text(QAccessible::Text which) const override { return m_own->text(which); }
    void setText(QAccessible::Text which, const QString& text) override { m_own->setText(which, text); }
    QRect rect() const override { return m_own->rect(); }
    QAccessible::Role role() const override { return m_own->role(); }
    QColor foregroundColor() const override { return m_own->foregroundColor(); }
    QColor backgroundColor() const override { return m_own->backgroundColor(); }
    void virtual_hook(int id, void* data) override { m_own->virtual_hook(id, data); }
    void* interface_cast(QAccessible::InterfaceType type) override { return m_own->interface_cast(type); }

private:
    QAccessibleInterface* const m_own; // is let go along with this one, when the item is
    const QPointer<QQuickItem> m_item;
};

QAccessibleInterface* made(const QString&, QObject* object) {
    static bool isAskingQt = false; // who is asked for an interface asks all that can make one, us too
    const bool isMeant =
        object->inherits("QQuickControl") || object->inherits("QQuickTextInput") || isExpandable(object);
    if (isAskingQt || !isMeant)
        return nullptr;
    isAskingQt = true;
    QAccessibleInterface* const own = QAccessible::queryAccessibleInterface(object);
    isAskingQt = false;
    return own ? new Control(own, static_cast<QQuickItem*>(object)) : nullptr;
}

} // namespace

void install() {
    QAccessible::installFactory(made);
}

} // namespace lumbra::AccessibleStates

#include "AccessibleStates.moc"

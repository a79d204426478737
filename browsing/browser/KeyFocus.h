// An item that takes the keyboard and knows whether the Tab key brought it here, so that only then is it marked. A
// control knows as much, but Qt 6.4 lets none tell assistive technology what it is.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFocusEvent>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class KeyFocus : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool byKey READ isByKey NOTIFY byKeyChanged)

public:
    using QQuickItem::QQuickItem;

    bool isByKey() const { return m_byKey; }

Q_SIGNALS:
    void byKeyChanged();

protected:
    void focusInEvent(QFocusEvent* event) override {
        QQuickItem::focusInEvent(event);
        const Qt::FocusReason reason = event->reason();
        setByKey(reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason);
    }
    void focusOutEvent(QFocusEvent* event) override {
        QQuickItem::focusOutEvent(event);
        setByKey(false);
    }

private:
    void setByKey(bool byKey) {
        if (std::exchange(m_byKey, byKey) != byKey)
            Q_EMIT byKeyChanged();
    }

    bool m_byKey = false;
};

} // namespace lumbra

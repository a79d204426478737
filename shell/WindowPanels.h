// The window's panels for files and folders: what the library's operations ask for, as the one panel shows it, and the
// user's answer back to whoever asked. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Panels.h"
#include "look/panel/PathChoice.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>

namespace lumbra {

class Library;

class WindowPanels : public QObject, public Panels {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes its one.")

    Q_PROPERTY(bool asking READ asking NOTIFY asked) // and not yet answered
    Q_PROPERTY(lumbra::PathChoice::Kind kind READ kind NOTIFY asked)
    Q_PROPERTY(QString prompt READ prompt NOTIFY asked)   // what the button says; empty for the panel's own
    Q_PROPERTY(QString message READ message NOTIFY asked) // what it is for; may be empty
    Q_PROPERTY(QString folder READ folder NOTIFY asked)   // to begin in
    Q_PROPERTY(QString name READ name NOTIFY asked)       // to save under
    Q_PROPERTY(QString libraryFolder READ libraryFolder CONSTANT)

public:
    // The library must outlive it.
    explicit WindowPanels(const Library* library, QObject* parent = nullptr);

    // A request that comes while another is open takes its place, as if the user had cancelled that one.
    void openFiles(const QString& prompt, std::function<void(QList<Location>)> chosen) override;
    void chooseFolder(const QString& prompt, const QString& message, const std::optional<Location>& start,
                      std::function<void(std::optional<Location>)> chosen) override;
    void save(const QString& name, const Location& start, std::function<void(Location)> chosen) override;

    PathChoice::Kind kind() const { return m_request.kind; }
    bool asking() const { return m_request.chosen || m_request.cancelled; }
    QString prompt() const { return m_request.prompt; }
    QString message() const { return m_request.message; }
    QString folder() const { return m_request.folder.abbreviated(); }
    QString name() const { return m_request.name; }
    QString libraryFolder() const;

    Q_INVOKABLE void answer(const QStringList& paths);
    Q_INVOKABLE void cancel();

Q_SIGNALS:
    void asked();

private:
    struct Request {
        PathChoice::Kind kind = PathChoice::Open;
        QString prompt = {};
        QString message = {};
        Location folder = {};
        QString name = {};
        std::function<void(const QList<Location>&)> chosen = {};
        std::function<void()> cancelled = {};
    };

    void ask(Request request);

    const Library* m_library;
    Request m_request;
    std::optional<Location> m_lastOpened; // where files were opened last
};

} // namespace lumbra

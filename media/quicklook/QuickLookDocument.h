// The controller behind a document on show: reads it off the main thread, says how it is to be shown, and follows the
// file on disk.
//
// A file that changes is read anew, and what is shown stays until the new is there; one that vanishes, or can't be read
// any more, stays as it was. Another file shows nothing of the one before. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DocumentContent.h"
#include "DocumentPages.h"
#include "DocumentTable.h"
#include "DocumentText.h"
#include "media/MediaRequest.h"
#include "media/RegisteredThumbnails.h"
#include "platform/FileEvents.h"
#include "platform/Reader.h"

#include <QImage>
#include <QObject>
#include <QSize>
#include <QTimer>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>

namespace lumbra {

class QuickLookDocument : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(lumbra::Location path READ path WRITE setPath NOTIFY pathChanged)
    Q_PROPERTY(QSize pictureBox READ pictureBox WRITE setPictureBox NOTIFY pictureBoxChanged)
    Q_PROPERTY(QString stage READ stageName NOTIFY changed)
    Q_PROPERTY(bool isProse READ isProse NOTIFY changed)
    Q_PROPERTY(lumbra::DocumentPages* pages READ pages CONSTANT)
    Q_PROPERTY(lumbra::DocumentText* text READ text CONSTANT)
    Q_PROPERTY(lumbra::DocumentTable* table READ table CONSTANT)
    Q_PROPERTY(QImage picture READ picture NOTIFY changed)
    Q_PROPERTY(bool hasPicture READ hasPicture NOTIFY changed)
    Q_PROPERTY(QUrl url READ url NOTIFY pathChanged)
    Q_PROPERTY(QUrl folder READ folder NOTIFY pathChanged)
    Q_PROPERTY(int version READ version NOTIFY changed)
    Q_PROPERTY(QString notice READ notice NOTIFY changed)
    Q_PROPERTY(QString name READ name NOTIFY pathChanged)
    Q_PROPERTY(QString facts READ facts NOTIFY changed)

public:
    enum class Stage {
        nothing, // not read yet
        pages,
        text,
        table,
        webPage,
        picture, // what stands for it, maybe none, and its facts
        empty,   // there is nothing in the file
        locked,  // its password is not known
        broken,
    };
    Q_ENUM(Stage)

    explicit QuickLookDocument(QObject* parent = nullptr);
    ~QuickLookDocument() override;

    const Location& path() const { return m_path; }
    void setPath(const Location& path);

    // The pixels that a picture standing for the document is made to fit. None is made while it is empty.
    QSize pictureBox() const { return m_pictureBox; }
    void setPictureBox(const QSize& box);

    Stage stage() const { return m_stage; }
    QString stageName() const;

    // The text is written to be read, in columns of a width that is good to read.
    bool isProse() const;

    // Filled where the stage is theirs.
    DocumentPages* pages() { return &m_pages; }
    DocumentText* text() { return &m_text; }
    DocumentTable* table() { return &m_table; }
    QImage picture() const { return m_picture; }
    bool hasPicture() const { return !m_picture.isNull(); }

    QUrl url() const { return m_path.toUrl(); }
    QUrl folder() const { return m_path.parent().toUrl(); }

    // Rises whenever the file was read anew.
    int version() const { return m_version; }

    // A calm line, such as that this is not all; mostly empty.
    QString notice() const { return m_notice; }

    QString name() const { return m_path.name(); }

    // "Word document · 1.2 MB · saved 2 hours ago"
    QString facts() const;

    // Opens an address of the web in the user's browser; nothing for any other.
    Q_INVOKABLE static void openLink(const QString& address);

    // To the clipboard; what was there stays if there are no words.
    Q_INVOKABLE static void copy(const QString& words);

Q_SIGNALS:
    void pathChanged();
    void pictureBoxChanged();
    void changed();

private:
    // A file that is shown and becomes empty is mostly about to be written anew, for so many milliseconds at most.
    static constexpr int emptiness = 1000;

    // What tells one state of a file from another.
    struct Stamp {
        qint64 size = 0;
        Date modified = Date::distantPast();

        // As a text that nothing but its likes is equal to.
        QString text() const;

        friend bool operator==(const Stamp&, const Stamp&) = default;
    };

    struct Read {
        Location folder;            // canonical
        std::optional<Stamp> stamp; // absent for a file that is not there
        std::optional<DocumentContent> content;
    };

    static Read readFile(const Location& path, DocumentKind kind, const std::optional<Stamp>& known);
    void watch(const Location& folder);
    void load();
    void take(const Read& read);
    void loadPages();
    void loadPicture();
    void askForPicture();
    void show(Stage stage);
    void endLoad();

    Location m_path;
    DocumentKind m_kind = DocumentKind::other;
    QSize m_pictureBox;
    Stage m_stage = Stage::nothing;
    DocumentPages m_pages;
    DocumentText m_text;
    DocumentTable m_table;
    QImage m_picture;
    int m_version = 0;
    QString m_notice;
    std::optional<Stamp> m_stamp; // of what is shown
    MediaRequest m_request;
    bool m_isLoading = false;
    bool m_isStale = false; // the file changed while it was read
    QTimer m_emptiness;
    RegisteredThumbnails m_registered{Reader::shared()};
    Location m_watched;
    std::unique_ptr<FileEvents> m_events;
};

} // namespace lumbra

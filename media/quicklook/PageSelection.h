// What the user has marked of a document of pages: from one point of its pages to another. The readers tell which words
// lie between, page by page; of the pages that are near the view where they stand, of all of them what is copied.
//
// It goes when the document is read anew. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DocumentPages.h"
#include "media/MediaRequest.h"
#include "platform/Reader.h"

#include <QObject>
#include <QPointer>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <map>
#include <optional>
#include <utility>

namespace lumbra {

class PageSelection : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(lumbra::DocumentPages* pages READ pages WRITE setPages NOTIFY pagesChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
    Q_PROPERTY(int version READ version NOTIFY changed)

public:
    using QObject::QObject;

    DocumentPages* pages() const { return m_pages; }
    void setPages(DocumentPages* pages);

    bool isEmpty() const { return !m_isMarked; }

    // Rises whenever something else is marked, or it is known where it stands.
    int version() const { return m_version; }

    // The button goes down at a spot of the pages: with the first click nothing is marked there, with the second the
    // word.
    Q_INVOKABLE void begin(const QVariantMap& spot, int clicks = 1);

    // The pointer is there with the button still down.
    Q_INVOKABLE void extend(const QVariantMap& spot);

    Q_INVOKABLE void selectAll();
    Q_INVOKABLE void clear();

    // Where the marked words stand on a page, as far as known: rectangles in parts of its sides.
    Q_INVOKABLE QVariantList placesOn(int page) const;

    // To the clipboard, once the words of every page are known.
    Q_INVOKABLE void copy();

Q_SIGNALS:
    void pagesChanged();
    void changed();

private:
    struct Marked {
        std::optional<Reader::PageTextWish> made; // what `text` answers
        Reader::PageText text;
        std::optional<Reader::PageTextWish> asked;
        MediaRequest request;
    };

    std::pair<PageLayout::Spot, PageLayout::Spot> ends() const; // in order
    std::optional<Reader::PageTextWish> wishFor(int page) const;
    void remark();
    void ask(int page);
    void collect(int page, const QStringList& words);

    QPointer<DocumentPages> m_pages;
    bool m_isMarked = false;
    bool m_byWords = false;
    PageLayout::Spot m_from, m_to;  // as the pointer came to them
    std::map<int, Marked> m_marked; // by page
    MediaRequest m_copying;
    int m_version = 0;
};

} // namespace lumbra

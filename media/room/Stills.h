// The pictures of the screening room: the one on show and those beside it, decoded by the readers to the size of the
// stage. Nothing else is kept.
//
// What is on show comes first; its neighbours are read once it is there, so that the next press of an arrow finds its
// picture made. What has gone out of reach is forgotten, or taken back. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"
#include "media/MediaRequest.h"
#include "platform/Reader.h"

#include <QImage>
#include <QObject>
#include <QSize>

#include <map>
#include <optional>

namespace lumbra {

struct Still {
    QImage image; // null for a file that yields none
    QSize pixels; // the picture's own size in its file, upright; empty while that is not known
};

class Stills : public QObject {
    Q_OBJECT

public:
    // Pictures beside the one on show.
    static constexpr qsizetype mostNeighbours = 2;

    explicit Stills(Reader& reader, QObject* parent = nullptr) : QObject(parent), m_reader(reader) {}

    // Pixels that a picture is decoded to fit into. What was decoded for a smaller box is decoded anew, and stands
    // until then. Nothing is read while it is empty.
    QSize box() const { return m_box; }
    void setBox(const QSize& box);

    // While held back nothing new is begun: the player needs the machine.
    void setHeldBack(bool heldBack);

    // From now on: this on show, if it is an image, and these beside it, the nearest first. All else is forgotten.
    void want(const std::optional<Asset>& shown, const Assets& neighbours);

    // What has been made of it; absent for what is not wanted, or not there yet.
    std::optional<Still> find(const Asset& asset) const;

    // How many pictures are held.
    qsizetype count() const;

Q_SIGNALS:
    // Of what is on show.
    void made();

private:
    struct Entry {
        Location file;
        std::optional<Still> still;
        QSize decodedFor;              // the box of `still`
        std::optional<QSize> askedFor; // the box of what is under way
        MediaRequest request;
    };

    void makeNext();
    void make(const QString& key);
    void take(const QString& key, const QImage& image);
    void askForPixels(const QString& key);
    bool isGood(const Entry& entry) const;

    Reader& m_reader;
    QSize m_box;
    bool m_isHeldBack = false;
    QString m_shown;        // a key; empty for none
    QList<QString> m_order; // the keys of all, in the order in which they are made
    std::map<QString, Entry> m_entries;
};

} // namespace lumbra

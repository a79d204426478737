// The controller of the room that shows one file at a time over the whole window: what is on show, the walk through the
// files beside it, its player, its keys, and when its controls hide.
//
// The door makes one when the library has something to play, and does away with it when its view has faded. Whatever
// the views of the room decide by stands here. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "RoomKeys.h"
#include "RoomOrder.h"
#include "RoomText.h"
#include "Stills.h"
#include "library/Library.h"
#include "media/player/PlayerEngine.h"

#include <QBindable>
#include <QImage>
#include <QObject>
#include <QProperty>
#include <QTimer>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>
#include <optional>

namespace lumbra {

struct RoomOptions {
    Preferences* preferences = &Preferences::shared();
    Reader* reader = &Reader::shared();
    MpvHandle::Options player = {};      // stand over the player's own settings
    std::shared_ptr<MpvHandle> mpv = {}; // started ahead with them; if null, the room starts its own when it needs one
    std::function<Date()> clock = &Date::now;
};

class ScreeningRoom : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The door makes one for what the library plays.")

    Q_PROPERTY(lumbra::Library* library READ library CONSTANT)
    Q_PROPERTY(lumbra::PlayerEngine* engine READ engine CONSTANT)
    Q_PROPERTY(bool open READ isOpen NOTIFY openChanged)

    // What is on show.
    Q_PROPERTY(lumbra::Asset asset READ asset NOTIFY assetChanged)
    Q_PROPERTY(lumbra::Location path READ path NOTIFY assetChanged)
    Q_PROPERTY(QUrl url READ url NOTIFY assetChanged)
    Q_PROPERTY(QString name READ name NOTIFY assetChanged)
    Q_PROPERTY(QString kind READ kind NOTIFY assetChanged)
    Q_PROPERTY(bool starred READ isStarred NOTIFY assetChanged)
    Q_PROPERTY(bool usesEngine READ usesEngine NOTIFY assetChanged)
    Q_PROPERTY(QString stage READ stage NOTIFY assetChanged)
    Q_PROPERTY(QImage stillImage READ stillImage NOTIFY stillImageChanged BINDABLE bindableStillImage)
    Q_PROPERTY(QImage poster READ poster NOTIFY posterChanged BINDABLE bindablePoster)
    Q_PROPERTY(QImage ambient READ ambient NOTIFY ambientChanged BINDABLE bindableAmbient)
    Q_PROPERTY(QSize pixelSize READ pixelSize NOTIFY pixelSizeChanged BINDABLE bindablePixelSize)
    Q_PROPERTY(bool opening READ isOpening NOTIFY openingChanged BINDABLE bindableOpening)
    Q_PROPERTY(QString breadcrumb READ breadcrumb NOTIFY breadcrumbChanged BINDABLE bindableBreadcrumb)
    Q_PROPERTY(QString meta READ meta NOTIFY metaChanged BINDABLE bindableMeta)

    // The files beside it.
    Q_PROPERTY(lumbra::RoomOrder* order READ orderModel CONSTANT)
    Q_PROPERTY(bool nearsWebView READ nearsWebView NOTIFY nearsWebViewChanged BINDABLE bindableNearsWebView)
    Q_PROPERTY(int index READ index NOTIFY indexChanged BINDABLE bindableIndex)

    // What shows beside the stage.
    Q_PROPERTY(bool chrome READ chrome NOTIFY chromeChanged BINDABLE bindableChrome)
    Q_PROPERTY(bool pointerHidden READ pointerHidden NOTIFY pointerHiddenChanged BINDABLE bindablePointerHidden)
    Q_PROPERTY(bool showInfo READ showInfo WRITE setShowInfo NOTIFY showInfoChanged BINDABLE bindableShowInfo)
    Q_PROPERTY(bool showQueue READ showQueue WRITE setShowQueue NOTIFY showQueueChanged BINDABLE bindableShowQueue)
    Q_PROPERTY(bool autoplayNext READ autoplayNext WRITE setAutoplayNext NOTIFY autoplayNextChanged BINDABLE
                   bindableAutoplayNext)
    Q_PROPERTY(bool queueShown READ queueShown NOTIFY queueShownChanged)
    Q_PROPERTY(double capsuleWidth READ capsuleWidth NOTIFY stageWidthChanged)

    // What the view measures.
    Q_PROPERTY(
        double stageWidth READ stageWidth WRITE setStageWidth NOTIFY stageWidthChanged BINDABLE bindableStageWidth)
    Q_PROPERTY(double roomWidth READ roomWidth WRITE setRoomWidth NOTIFY roomWidthChanged BINDABLE bindableRoomWidth)
    Q_PROPERTY(QSize stagePixels READ stagePixels WRITE setStagePixels NOTIFY stagePixelsChanged)
    Q_PROPERTY(bool focused READ focused WRITE setFocused NOTIFY focusedChanged BINDABLE bindableFocused)

public:
    // The library must play something, unless this is but a rehearsal, and outlive it, as must what the options point
    // to.
    explicit ScreeningRoom(Library* library, const RoomOptions& options = {}, QObject* parent = nullptr);
    ~ScreeningRoom() override;

    Library* library() const { return m_library; }

    // Never null.
    PlayerEngine* engine() const { return m_engine.get(); }

    // False once the library plays nothing any more: the view fades, the player has stopped.
    bool isOpen() const { return m_open; }

    // The request that opened the room, or the last change of it.
    const PlayRequest& request() const { return m_request; }

    // What is on show, with the facts that the library has of it now; once it has none, with those of the request.
    Asset asset() const { return m_asset; }
    Location path() const { return m_asset.url; }
    QUrl url() const { return m_asset.url.toUrl(); }
    QString name() const { return m_asset.url.name(); }
    QString kind() const { return rawValue(m_asset.kind); } // "image", "video", "audio" or "document"
    bool isStarred() const { return m_asset.isStarred(); }

    // The player plays it; otherwise one of the other stages shows it.
    bool usesEngine() const { return lumbra::usesEngine(m_asset); }

    // Which stage shows it: "image", "video", "web", "audio" or "document".
    QString stage() const { return lumbra::stageOf(m_asset); }

    // The picture that is on show, decoded to the size of the stage; null while there is none, and for all but images.
    QImage stillImage() const { return m_stillImage; }
    QBindable<QImage> bindableStillImage() const { return &m_stillImage; }

    // How many pictures are held, neighbours included.
    int stillsHeld() const { return int(m_stills.count()); }

    // A small picture of it that is at hand, to stand for it until its stage has something to show; may be null.
    QImage poster() const { return m_poster; }
    QBindable<QImage> bindablePoster() const { return &m_poster; }

    // The picture that colours the room: the film as it stands, or the image. Where there is none yet but will be, the
    // one before stays, so that the room does not go dark between two files. A sound colours it without a picture.
    QImage ambient() const { return m_ambient; }
    QBindable<QImage> bindableAmbient() const { return &m_ambient; }

    // The image's own size in its file, upright; empty while not known, and for all but images.
    QSize pixelSize() const { return m_pixelSize; }
    QBindable<QSize> bindablePixelSize() const { return &m_pixelSize; }

    // A film or a sound is being opened: whatever is not needed for it waits until it runs.
    bool isOpening() const { return m_opening; }
    QBindable<bool> bindableOpening() const { return &m_opening; }

    // Where the file lies, in words.
    QString breadcrumb() const { return m_breadcrumb; }
    QBindable<QString> bindableBreadcrumb() const { return &m_breadcrumb; }

    // What is known of it, in one line.
    QString meta() const { return m_meta; }
    QBindable<QString> bindableMeta() const { return &m_meta; }

    // The files that the arrows walk through, in the request's order, as a list for views.
    RoomOrder* orderModel() { return &m_order; }
    const Assets& order() const { return m_request.order; }

    // Where the file stands in the order, from 0; -1 if it does not.
    int index() const { return m_index; }
    QBindable<int> bindableIndex() const { return &m_index; }

    // One of the two files beside it in the order needs a web view.
    bool nearsWebView() const { return m_nearsWebView; }
    QBindable<bool> bindableNearsWebView() const { return &m_nearsWebView; }

    // The controls show.
    bool chrome() const { return m_chrome; }
    QBindable<bool> bindableChrome() const { return &m_chrome; }

    // From the moment the controls hide by themselves until the pointer moves.
    bool pointerHidden() const { return m_pointerHidden; }
    QBindable<bool> bindablePointerHidden() const { return &m_pointerHidden; }

    // When the pointer last moved or a key was last pressed.
    Date lastMove() const { return m_lastMove; }

    // The drawer is open; the queue is wanted; the next file plays at the end of one. All survive a launch.
    bool showInfo() const { return m_showInfo; }
    QBindable<bool> bindableShowInfo() const { return &m_showInfo; }
    void setShowInfo(bool shown);
    bool showQueue() const { return m_showQueue; }
    QBindable<bool> bindableShowQueue() const { return &m_showQueue; }
    void setShowQueue(bool shown);
    bool autoplayNext() const { return m_autoplayNext; }
    QBindable<bool> bindableAutoplayNext() const { return &m_autoplayNext; }
    void setAutoplayNext(bool wanted);

    // The queue is wanted, has more than this one file, and finds room beside the drawer.
    bool queueShown() const { return m_queueShown; }

    // Of the controls under the stage: as wide as it, within bounds. Points.
    double capsuleWidth() const;

    // Points.
    double stageWidth() const { return m_stageWidth; }
    QBindable<double> bindableStageWidth() const { return &m_stageWidth; }
    void setStageWidth(double width) { m_stageWidth = width; }
    double roomWidth() const { return m_roomWidth; }
    QBindable<double> bindableRoomWidth() const { return &m_roomWidth; }
    void setRoomWidth(double width);

    // The place for a picture in pixels of the screen: how large stills are decoded.
    QSize stagePixels() const { return m_stills.box(); }
    void setStagePixels(const QSize& size);

    // The keys come here.
    bool focused() const { return m_focused; }
    QBindable<bool> bindableFocused() const { return &m_focused; }
    void setFocused(bool focused) { m_focused = focused; }

    // Of a room that is not open: has the stage, the controls and some light, as for this file, which is not touched.
    void rehearse(const Asset& asset);

    // To another entry of the order, counted from this one; nothing where there is none.
    Q_INVOKABLE void go(int delta);

    // To the entry of the order with this path; nothing if there is none.
    Q_INVOKABLE void pick(const lumbra::Location& path);

    // Plays the next entry of the same kind that the library still has; if there is none, all stays as it is.
    void advanceAfterEnd();

    Q_INVOKABLE void close();

    // A key press as an event tells of it; answers whether it meant something here.
    Q_INVOKABLE bool handle(int key, Qt::KeyboardModifiers modifiers, const QString& text, bool repeated = false);

    // The pointer is over the room, there; a report of the same place again counts as none.
    Q_INVOKABLE void pointerAt(const QPointF& position);

    Q_INVOKABLE void toggleStar();
    Q_INVOKABLE void toggleInfo() { setShowInfo(!m_showInfo); }
    Q_INVOKABLE void toggleQueue() { setShowQueue(!m_showQueue); }

    // Of the window that has the keys.
    Q_INVOKABLE void toggleFullScreen();

    Q_INVOKABLE void reveal() const;
    Q_INVOKABLE void copy() const;
    Q_INVOKABLE void openWith() const;
    Q_INVOKABLE void sendByMail() const;

Q_SIGNALS:
    void openChanged();
    void assetChanged();
    void stillImageChanged();
    void posterChanged();
    void ambientChanged();
    void pixelSizeChanged();
    void openingChanged();
    void breadcrumbChanged();
    void metaChanged();
    void indexChanged();
    void nearsWebViewChanged();
    void chromeChanged();
    void pointerHiddenChanged();
    void showInfoChanged();
    void showQueueChanged();
    void autoplayNextChanged();
    void queueShownChanged();
    void stageWidthChanged();
    void roomWidthChanged();
    void stagePixelsChanged();
    void focusedChanged();

private:
    void follow();
    void readSettings();
    void playingChanged();
    Asset freshAsset() const;
    void put(const Asset& asset, bool opens);
    void refreshAsset();
    void load();
    void takeStill();
    void readAhead();
    void light();
    void play(const Asset& asset);
    void perform(const RoomCommand& command);
    void stirred();
    void hideIfIdle();
    void followPlayer();
    void describe();
    void placeQueue();

    Library* const m_library;
    Preferences& m_preferences;
    const std::function<Date()> m_clock;
    const std::unique_ptr<PlayerEngine> m_engine;

    bool m_open = true;
    PlayRequest m_request;
    Asset m_asset;
    RoomOrder m_order;
    Stills m_stills;
    int m_direction = 1; // of the walk; there is read ahead first
    QTimer m_idleness;
    Date m_lastMove;
    std::optional<QPointF> m_pointer;
    bool m_queueShown = false;

    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ScreeningRoom, int, m_index, -1, &ScreeningRoom::indexChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ScreeningRoom, bool, m_nearsWebView, false,
                                         &ScreeningRoom::nearsWebViewChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ScreeningRoom, QImage, m_stillImage, &ScreeningRoom::stillImageChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ScreeningRoom, QImage, m_poster, &ScreeningRoom::posterChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ScreeningRoom, QImage, m_ambient, &ScreeningRoom::ambientChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ScreeningRoom, QSize, m_pixelSize, &ScreeningRoom::pixelSizeChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ScreeningRoom, bool, m_opening, false, &ScreeningRoom::openingChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ScreeningRoom, QString, m_breadcrumb, &ScreeningRoom::breadcrumbChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ScreeningRoom, QString, m_meta, &ScreeningRoom::metaChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ScreeningRoom, bool, m_chrome, true, &ScreeningRoom::chromeChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ScreeningRoom, bool, m_pointerHidden, false,
                                         &ScreeningRoom::pointerHiddenChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ScreeningRoom, bool, m_showInfo, false, &ScreeningRoom::showInfoChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ScreeningRoom, bool, m_showQueue, true, &ScreeningRoom::showQueueChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ScreeningRoom, bool, m_autoplayNext, true, &ScreeningRoom::autoplayNextChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ScreeningRoom, double, m_stageWidth, 0, &ScreeningRoom::stageWidthChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ScreeningRoom, double, m_roomWidth, 0, &ScreeningRoom::roomWidthChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ScreeningRoom, bool, m_focused, false, &ScreeningRoom::focusedChanged)
};

} // namespace lumbra

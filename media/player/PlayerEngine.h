// The controller of a player: loads one file at a time, publishes where it stands to the views, and moves it.
//
// One lives as long as its room and plays every file shown there. All fields belong to the main thread, and no call
// waits for the player: what a field says follows from what was asked for and from what the player has reported since.
// A file that can't be read, or breaks off, plays as far as it goes; no error is reported.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "LoadedFile.h"
#include "Movements.h"
#include "MpvHandle.h"
#include "platform/Location.h"
#include "platform/Preferences.h"

#include <QBindable>
#include <QImage>
#include <QObject>
#include <QProperty>
#include <QSize>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>
#include <optional>

struct mpv_node;

namespace lumbra {

class PictureInPicture;
class SurfaceSwitch;
class VideoSurface;

class PlayerEngine : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("one belongs to each room")

    Q_PROPERTY(double time READ time NOTIFY timeChanged BINDABLE bindableTime)
    Q_PROPERTY(double duration READ duration NOTIFY durationChanged BINDABLE bindableDuration)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY isPlayingChanged BINDABLE bindableIsPlaying)
    Q_PROPERTY(QSize videoSize READ videoSize NOTIFY videoSizeChanged BINDABLE bindableVideoSize)
    Q_PROPERTY(QString codec READ codec NOTIFY codecChanged BINDABLE bindableCodec)
    Q_PROPERTY(QImage glowFrame READ glowFrame NOTIFY glowFrameChanged BINDABLE bindableGlowFrame)
    Q_PROPERTY(double shuttle READ shuttle NOTIFY shuttleChanged BINDABLE bindableShuttle)
    Q_PROPERTY(double speed READ speed WRITE setSpeed NOTIFY speedChanged BINDABLE bindableSpeed)
    Q_PROPERTY(bool loop READ loop WRITE setLoop NOTIFY loopChanged BINDABLE bindableLoop)
    Q_PROPERTY(double volume READ volume WRITE setVolume NOTIFY volumeChanged BINDABLE bindableVolume)
    Q_PROPERTY(bool muted READ muted WRITE setMuted NOTIFY mutedChanged BINDABLE bindableMuted)
    Q_PROPERTY(bool isAvailable READ isAvailable NOTIFY isAvailableChanged BINDABLE bindableIsAvailable)
    Q_PROPERTY(lumbra::PictureInPicture* pip READ pip NOTIFY pipChanged)

public:
    // `options` stand over the player's own settings, by mpv's names.
    explicit PlayerEngine(Preferences& preferences = Preferences::shared(), const MpvHandle::Options& options = {},
                          QObject* parent = nullptr);

    // With an mpv that nobody has used yet, started ahead or not.
    PlayerEngine(Preferences& preferences, std::shared_ptr<MpvHandle> mpv, QObject* parent = nullptr);
    ~PlayerEngine() override;

    // Seconds. It follows thirty times a second while the file runs, and at once what is asked for.
    double time() const { return m_time; }
    QBindable<double> bindableTime() const { return &m_time; }

    // Seconds; 0 while not known.
    double duration() const { return m_duration; }
    QBindable<double> bindableDuration() const { return &m_duration; }

    bool isPlaying() const { return m_isPlaying; }
    QBindable<bool> bindableIsPlaying() const { return &m_isPlaying; }

    // Pixels as they are to be shown: upright, and wider or higher where the film's pixels are not square. Empty when
    // not known, as for sound.
    QSize videoSize() const { return m_videoSize; }
    QBindable<QSize> bindableVideoSize() const { return &m_videoSize; }

    // The name of the video's codec; empty when not known.
    QString codec() const { return m_codec; }
    QBindable<QString> bindableCodec() const { return &m_codec; }

    // A small picture of the film as it stands, 96 by 54, four a second while it moves and a surface shows it; null
    // until there is one. It outlives `stop`, so that the room's glow does not blink while a still is shown.
    QImage glowFrame() const { return m_glowFrame; }
    QBindable<QImage> bindableGlowFrame() const { return &m_glowFrame; }

    // The rate that the keys J, K and L have set, negative backward; 1 is no shuttling.
    double shuttle() const { return m_shuttle; }
    QBindable<double> bindableShuttle() const { return &m_shuttle; }

    // The rate that the user plays at.
    double speed() const { return m_speed; }
    QBindable<double> bindableSpeed() const { return &m_speed; }
    void setSpeed(double speed);

    // Whether the file begins again at its end; survives a launch.
    bool loop() const { return m_loop; }
    QBindable<bool> bindableLoop() const { return &m_loop; }
    void setLoop(bool loop);

    // 0 to 1; survives a launch.
    double volume() const { return m_volume; }
    QBindable<double> bindableVolume() const { return &m_volume; }
    void setVolume(double volume);

    // Leaves the volume alone and does not survive a launch.
    bool muted() const { return m_muted; }
    QBindable<bool> bindableMuted() const { return &m_muted; }
    void setMuted(bool muted);

    // False once it has turned out that there is no mpv on this machine: then every file is as one that can't be read.
    bool isAvailable() const { return m_isAvailable; }
    QBindable<bool> bindableIsAvailable() const { return &m_isAvailable; }

    // Called when the file has played to its end and does not loop.
    void setOnEnd(std::function<void()> onEnd) { m_onEnd = std::move(onEnd); }

    // Loads a file, and plays it if wanted; otherwise it stands at its beginning. Does nothing at all when the file is
    // loaded already, even if it has ended.
    void load(const Location& url, bool autoplay);

    // What is loaded next is a film for a surface: unless one draws already, it is opened only when one can, or after a
    // moment in vain. An mpv that is given another output begins to decode all over again, which takes longer than the
    // wait.
    void awaitSurface(bool awaited);
    const Location& url() const { return m_url; }

    // At the speed, and from the beginning if it stands less than 0.05 seconds before its end.
    Q_INVOKABLE void play();
    Q_INVOKABLE void pause() { setRate(0); }
    Q_INVOKABLE void toggle() { isPlaying() ? pause() : play(); }

    // Unloads.
    Q_INVOKABLE void stop();

    // To a position in the file: exactly there, or to the nearest picture that is cheap to show.
    Q_INVOKABLE void seek(double to, bool exact);

    // By pictures of a film that stands; backward if negative. Pauses.
    Q_INVOKABLE void step(int count);

    // J, K and L: backward, stand, forward. A file that can't run backward jumps back two seconds instead.
    void shuttle(int direction);

    // The player is where it was sent: nothing is being loaded or sought.
    bool isStanding() const { return m_file.isOpen && !m_movements.isUnderWay(); }

    // For the scrubber: whether to go on playing when it is let go.
    bool wasPlayingBeforeScrub = false;

    // The small window, from the first surface on where there can be one; otherwise null.
    PictureInPicture* pip() const { return m_pip.get(); }

    // Of surfaces.

    const std::shared_ptr<MpvHandle>& mpv() const { return m_mpv; }
    SurfaceSwitch& surfaces() const { return *m_surfaces; }
    void addSurface(VideoSurface* surface);

    // Whether what the player draws is to be seen, be it still the picture of the file before.
    bool hasPicture() const { return !m_url.isEmpty() && m_sight != Sight::nothing; }

    // The first file of all was opened with a surface to draw on: whatever picture the player gives out is of that
    // file.
    bool isFirst() const { return m_isFirst && !m_file.hasFailed; }

    // A tag of the file whose picture it is; 0 while that is not certain.
    quint64 pictureOf() const { return hasPicture() && m_sight == Sight::itself ? m_file.number : 0; }

    // A small picture of the file with the tag.
    void takeGlow(const QImage& image, quint64 file) {
        if (file == pictureOf())
            m_glowFrame = image;
    }

Q_SIGNALS:
    void timeChanged();
    void durationChanged();
    void isPlayingChanged();
    void videoSizeChanged();
    void codecChanged();
    void glowFrameChanged();
    void shuttleChanged();
    void speedChanged();
    void loopChanged();
    void volumeChanged();
    void mutedChanged();
    void isAvailableChanged();
    void pipChanged();

private:
    enum class Sight { nothing, before, itself };

    void start();

    // An answer that is dropped when the file is no longer the same by then.
    MpvHandle::Then ofThisFile(MpvHandle::Then then);
    void open();
    void send();
    void openWhenSeen();
    void openAgain();
    void askForTime();

    // What the player reports.
    void hearStart(bool runs);
    void hear(const mpv_event& event);
    void hearTime(double time);
    void hearTracks(const mpv_node& tracks);
    void fileLoaded();
    void arrived();
    void failed();
    void atEnd(bool isIt);
    void ended();

    void setRate(double rate);
    void turn(bool backward);
    void move();
    void setSight(Sight sight);

    Preferences& m_preferences;
    std::shared_ptr<MpvHandle> m_mpv;
    std::unique_ptr<SurfaceSwitch> m_surfaces;
    std::unique_ptr<PictureInPicture> m_pip;

    Location m_url;
    LoadedFile m_file;
    Sight m_sight = Sight::nothing;
    bool m_isFirst = false;
    bool m_hasSent = false; // a file to the player, ever

    double m_rate = 0;
    bool m_isBackward = false;
    Movements m_movements;
    QTimer m_clock; // asks for the position while it runs
    bool m_isTimeAsked = false;
    QTimer m_surfaceWait;      // runs while a surface is awaited
    bool m_isHeldBack = false; // the file is to be opened at the end of that
    bool m_isSetUp = false;    // mpv knows what it is to play with
    std::function<void()> m_onEnd;

    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PlayerEngine, double, m_time, 0, &PlayerEngine::timeChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PlayerEngine, double, m_duration, 0, &PlayerEngine::durationChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PlayerEngine, bool, m_isPlaying, false, &PlayerEngine::isPlayingChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PlayerEngine, QSize, m_videoSize, &PlayerEngine::videoSizeChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PlayerEngine, QString, m_codec, &PlayerEngine::codecChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PlayerEngine, QImage, m_glowFrame, &PlayerEngine::glowFrameChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PlayerEngine, double, m_shuttle, 1, &PlayerEngine::shuttleChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PlayerEngine, double, m_speed, 1, &PlayerEngine::speedChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PlayerEngine, bool, m_loop, false, &PlayerEngine::loopChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PlayerEngine, double, m_volume, 1, &PlayerEngine::volumeChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PlayerEngine, bool, m_muted, false, &PlayerEngine::mutedChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PlayerEngine, bool, m_isAvailable, true, &PlayerEngine::isAvailableChanged)
};

} // namespace lumbra

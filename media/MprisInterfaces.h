// The two interfaces of MPRIS 2, as the bus sees them. Their names and those of their members are given by it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Mpris.h"

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QStringList>

namespace lumbra {

class MprisRoot : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(bool CanQuit READ no CONSTANT)
    Q_PROPERTY(bool CanRaise READ yes CONSTANT)
    Q_PROPERTY(bool HasTrackList READ no CONSTANT)
    Q_PROPERTY(QString Identity READ identity CONSTANT)
    Q_PROPERTY(QString DesktopEntry READ desktopEntry CONSTANT)
    Q_PROPERTY(QStringList SupportedUriSchemes READ none CONSTANT)
    Q_PROPERTY(QStringList SupportedMimeTypes READ none CONSTANT)

public:
    explicit MprisRoot(Mpris& mpris) : QDBusAbstractAdaptor(&mpris) {}

    static bool yes() { return true; }
    static bool no() { return false; }
    static QString identity() { return QStringLiteral("Lumbra"); }
    static QString desktopEntry() { return QStringLiteral("com.lumbra.Lumbra"); }
    static QStringList none() { return {}; }

public Q_SLOTS:
    static void Raise();
    static void Quit() {}
};

class MprisPlayer : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ playbackStatus)
    Q_PROPERTY(QString LoopStatus READ loopStatus WRITE setLoopStatus)
    Q_PROPERTY(double Rate READ rate WRITE setRate)
    Q_PROPERTY(QVariantMap Metadata READ metadata)
    Q_PROPERTY(double Volume READ volume WRITE setVolume)
    Q_PROPERTY(qlonglong Position READ position)
    Q_PROPERTY(double MinimumRate READ minimumRate)
    Q_PROPERTY(double MaximumRate READ maximumRate)
    Q_PROPERTY(bool CanGoNext READ canGoNext)
    Q_PROPERTY(bool CanGoPrevious READ canGoPrevious)
    Q_PROPERTY(bool CanPlay READ canPlay)
    Q_PROPERTY(bool CanPause READ canPlay)
    Q_PROPERTY(bool CanSeek READ canPlay)
    Q_PROPERTY(bool CanControl READ canControl)

public:
    explicit MprisPlayer(Mpris& mpris) : QDBusAbstractAdaptor(&mpris), m_mpris(mpris) {}

    QString playbackStatus() const { return told("PlaybackStatus").toString(); }
    QString loopStatus() const { return told("LoopStatus").toString(); }
    void setLoopStatus(const QString& status);
    double rate() const { return told("Rate").toDouble(); }
    void setRate(double rate);
    QVariantMap metadata() const { return told("Metadata").toMap(); }
    double volume() const { return told("Volume").toDouble(); }
    void setVolume(double volume);
    qlonglong position() const { return m_mpris.position(); }
    double minimumRate() const { return told("MinimumRate").toDouble(); }
    double maximumRate() const { return told("MaximumRate").toDouble(); }
    bool canGoNext() const { return told("CanGoNext").toBool(); }
    bool canGoPrevious() const { return told("CanGoPrevious").toBool(); }
    bool canPlay() const { return told("CanPlay").toBool(); }
    static bool canControl() { return true; }

public Q_SLOTS:
    void Next();
    void Previous();
    void Pause();
    void PlayPause();
    void Stop();
    void Play();
    void Seek(qlonglong offset);
    void SetPosition(const QDBusObjectPath& track, qlonglong position);
    void OpenUri(const QString&) {} // what plays comes from the library alone

Q_SIGNALS:
    void Seeked(qlonglong position);

private:
    QVariant told(const char* property) const { return m_mpris.player().value(QLatin1String(property)); }

    Mpris& m_mpris;
};

} // namespace lumbra

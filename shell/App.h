// The application: it makes the one Library and the controllers over it, shows the one window, and routes what is
// opened from outside into the library. It holds no logic of the library.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Frame.h"
#include "Onboarding.h"
#include "SharedGraphics.h"
#include "StateDump.h"
#include "TransferProgress.h"
#include "UpdateCheck.h"
#include "WindowMemory.h"
#include "WindowPanels.h"
#include "browsing/browser/BrowserCommands.h"
#include "browsing/palette/Palette.h"
#include "browsing/sidebar/Sidebar.h"
#include "library/Library.h"
#include "media/room/RoomDoor.h"
#include "platform/Appearance.h"
#include "understanding/InsightEngine.h"

#include <QElapsedTimer>
#include <QObject>
#include <QQmlApplicationEngine>
#include <QQmlComponent>
#include <QQmlIncubator>
#include <QUrl>

#include <memory>

namespace lumbra {

class App : public QObject {
    Q_OBJECT

public:
    // `started` runs since the process began, for the timing of the first frame. The application object must exist.
    explicit App(const QElapsedTimer& started, QObject* parent = nullptr);
    ~App() override;

    // Made at the first call, so that a location that is opened before the window exists finds it.
    Library& library();

    // Shows the window, which gets its contents as soon as they are loaded; false when its views can't be had.
    bool show();

    // What was opened from outside: only the first location counts. A folder or file is revealed, a link followed, and
    // the window comes to the front, also if nothing is to be opened.
    void open(const QList<QUrl>& urls);

private:
    // The types of a view are loaded on a thread of the engine's; it is made with these properties once they are there.
    // One view at a time.
    void load(const char* view);
    void make(const QVariantMap& properties, QQmlIncubator::IncubationMode mode, void (App::*take)(QObject*));

    void makeControllers();
    void makeContents();
    void takeContents(QObject* contents);
    void firstFrameShown();
    void makeOverlays();
    void takeOverlays(QObject* overlays);
    QQuickWindow* window() const;
    void applyAppearance();
    void searchContent();

    QElapsedTimer m_started;
    std::unique_ptr<SharedGraphics> m_graphics;
    Appearance m_appearance;
    std::unique_ptr<Library> m_library;
    std::unique_ptr<InsightEngine> m_insights;
    std::unique_ptr<Browser> m_browser;
    std::unique_ptr<BrowserCommands> m_commands;
    std::unique_ptr<Sidebar> m_sidebar;
    std::unique_ptr<RoomDoor> m_door;
    std::unique_ptr<Palette> m_palette;
    std::unique_ptr<Frame> m_frame;
    std::unique_ptr<Onboarding> m_onboarding;
    std::unique_ptr<WindowPanels> m_panels;
    std::unique_ptr<TransferProgress> m_transfer;
    std::unique_ptr<WindowMemory> m_memory;
    std::unique_ptr<UpdateCheck> m_updater;
    std::unique_ptr<QQmlApplicationEngine> m_engine; // its views hold what stands above, so it dies before them
    std::unique_ptr<QQmlComponent> m_view;
    std::unique_ptr<QQmlIncubator> m_making; // of m_view
    bool m_isFilled = false;                 // the window, or about to be
    std::unique_ptr<QObject> m_contents;
    std::unique_ptr<QObject> m_overlays;
    std::unique_ptr<StateDump> m_stateDump;
};

} // namespace lumbra

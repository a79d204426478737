// SPDX-License-Identifier: GPL-3.0-or-later
#include "App.h"

#include "StateDump.h"
#include "core/Config.h"
#include "library/Actions.h"
#include "look/Look.h"
#include "media/player/GraphicsHardware.h"
#include "platform/Startup.h"

#include <QCoreApplication>
#include <QQuickGraphicsConfiguration>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>

#include <chrono>
#include <functional>
#include <utility>

namespace lumbra {

namespace {
constexpr auto longestStart = std::chrono::seconds(1);
constexpr auto firstPictures = std::chrono::milliseconds(150); // which are made before what nobody has asked for yet
constexpr auto firstTime = Qt::ConnectionType(Qt::DirectConnection | Qt::SingleShotConnection);

// What lies below the menus. A window of Qt Quick without menus calls something else its content.
QQuickItem* contentOf(const QQuickWindow& window) {
    return window.property("contentItem").value<QQuickItem*>();
}

// A view that is being made, at once or in steps between which the window goes on.
class Making : public QQmlIncubator {
public:
    Making(IncubationMode mode, std::function<void(QObject*)> take) : QQmlIncubator(mode), m_take(std::move(take)) {}

protected:
    void statusChanged(Status status) override {
        if (status == Error)
            qFatal("%s", qPrintable(errors().constFirst().toString()));
        if (status == Ready)
            m_take(object());
    }

private:
    std::function<void(QObject*)> m_take;
};

// Where the processor draws, to find out what is hidden takes it longer than to draw it all, and clearing buffers for
// depth and stencil takes it a fifth of each frame. Whatever is cut is cut to an upright rectangle, which needs
// neither.
void easeDrawing(QQuickWindow& window) {
    QQuickGraphicsConfiguration drawing = window.graphicsConfiguration();
    drawing.setDepthBufferFor2D(false);
    window.setGraphicsConfiguration(drawing);
    QSurfaceFormat format = window.requestedFormat();
    format.setDepthBufferSize(0);
    format.setStencilBufferSize(0);
    window.setFormat(format);
}

// What a module needs of this thread is done with its first import, so that later ones can go on beside it.
void importModules(QQmlEngine& engine) {
    QQmlComponent(&engine).setData("import QtQuick\nimport QtQuick.Layouts\nimport QtQuick.Templates\n"
                                   "import QtQuick.Window\nimport Lumbra.Look\nimport Lumbra.Media\n"
                                   "import Lumbra.Browsing\nimport Lumbra.Shell\nQtObject {}",
                                   QUrl());
}

QUrl viewAt(const char* name) {
    return QUrl(QStringLiteral("qrc:/qml/Lumbra/Shell/%1.qml").arg(QLatin1String(name)));
}
} // namespace

App::App(const QElapsedTimer& started, QObject* parent) : QObject(parent), m_started(started) {
    connect(&m_appearance, &Appearance::changed, this, &App::applyAppearance);
}

App::~App() {
    Actions::usePanels(nullptr);
    // Whoever closes the window early closes it on views that are still loaded or made. What has been begun is ended:
    // Qt lets go of half a view without deleting all of it.
    if (m_making)
        m_making->forceCompletion();
    m_view.reset();
    // A tile that its view has let go while it was being made ends the program if it outlives the engine.
    if (m_engine && !m_engine->rootObjects().isEmpty())
        delete window();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

Library& App::library() {
    if (!m_library)
        m_library = std::make_unique<Library>(LumbraConfig::library().canonical(), LumbraConfig::isConfigured());
    return *m_library;
}

bool App::show() {
    m_engine = std::make_unique<QQmlApplicationEngine>();
    Look::prepareEngine(*m_engine);
    importModules(*m_engine);
    // The types of the contents are loaded on a thread of the engine's, while this one gets the graphics going.
    load("WindowContents");
    m_graphics = std::make_unique<SharedGraphics>();
    applyAppearance();
    m_engine->load(viewAt("MainWindow"));
    if (m_engine->rootObjects().isEmpty())
        return false;
    makeControllers();
    if (!hasGraphicsHardware())
        easeDrawing(*window());
    // Shown here and not by the view, so that it comes in the state that it has.
    m_memory->attach(*window());
    // The first frame, which this thread waits for, is empty. While the second prepares the shaders there is time to
    // make the contents; it need not wait for the pause that the window leaves between frames.
    connect(
        window(), &QQuickWindow::frameSwapped, this,
        [this] {
            QEvent frame(QEvent::UpdateRequest);
            QCoreApplication::sendEvent(window(), &frame);
            makeContents();
        },
        Qt::SingleShotConnection);
    window()->setVisible(true);
    // In a minimised window nothing is drawn.
    QTimer::singleShot(longestStart, this, [this] {
        Startup::end();
        makeContents();
    });
    return true;
}

void App::makeContents() {
    if (std::exchange(m_isFilled, true))
        return;
    make({{QStringLiteral("parent"), QVariant::fromValue(contentOf(*window()))},
          {QStringLiteral("library"), QVariant::fromValue(m_library.get())},
          {QStringLiteral("browser"), QVariant::fromValue(m_browser.get())},
          {QStringLiteral("commands"), QVariant::fromValue(m_commands.get())},
          {QStringLiteral("sidebar"), QVariant::fromValue(m_sidebar.get())},
          {QStringLiteral("door"), QVariant::fromValue(m_door.get())},
          {QStringLiteral("memory"), QVariant::fromValue(m_memory.get())},
          {QStringLiteral("updater"), QVariant::fromValue(m_updater.get())}},
         QQmlIncubator::Synchronous, &App::takeContents);
}

void App::makeControllers() {
    m_insights = std::make_unique<InsightEngine>(&library());
    connect(m_insights.get(), &InsightEngine::storeOpened, this, &App::searchContent);
    m_browser = std::make_unique<Browser>(&library());
    m_browser->prepare();
    m_commands = std::make_unique<BrowserCommands>(m_browser.get());
    m_sidebar = std::make_unique<Sidebar>(&library());
    m_sidebar->setInsights(m_insights.get());
    m_door = std::make_unique<RoomDoor>(&library());
    connect(m_browser.get(), &Browser::selectedChanged, m_door.get(), [this] {
        if (m_browser->selectedCount() > 0)
            m_door->expect(m_browser->firstSelected());
    });
    m_palette = std::make_unique<Palette>(&library());
    connect(m_palette.get(), &Palette::arrived, m_browser.get(), [this] { m_browser->setGridFocused(true); });
    m_frame = std::make_unique<Frame>(&library());
    m_onboarding = std::make_unique<Onboarding>(&library());
    m_panels = std::make_unique<WindowPanels>(&library());
    m_transfer = std::make_unique<TransferProgress>(&library());
    m_memory = std::make_unique<WindowMemory>();
    m_updater = std::make_unique<UpdateCheck>(UpdateCheck::feedFor(Location(QCoreApplication::applicationFilePath())),
                                              QVersionNumber::fromString(QCoreApplication::applicationVersion()));
    Actions::usePanels(m_panels.get());
    m_sidebar->setNamePrompt([this](const NamePrompt& prompt) { m_frame->ask(prompt); });
    m_browser->setNamePrompt([this](const NamePrompt& prompt) { m_frame->ask(prompt); });
    m_sidebar->setConfirmation([this](const Confirmation& question) { m_frame->confirm(question); });
}

void App::load(const char* view) {
    m_view = std::make_unique<QQmlComponent>(m_engine.get(), viewAt(view), QQmlComponent::Asynchronous);
}

void App::make(const QVariantMap& properties, QQmlIncubator::IncubationMode mode, void (App::*take)(QObject*)) {
    if (m_view->isLoading()) {
        connect(m_view.get(), &QQmlComponent::statusChanged, this, [=, this] { make(properties, mode, take); });
        return;
    }
    if (m_view->isError())
        qFatal("%s", qPrintable(m_view->errorString()));
    m_making = std::make_unique<Making>(mode, [this, take](QObject* made) { (this->*take)(made); });
    m_making->setInitialProperties(properties);
    m_view->create(*m_making);
}

void App::takeContents(QObject* contents) {
    m_contents.reset(contents);
    window()->setProperty("contents", QVariant::fromValue(contents));
    if (const QString socket = qEnvironmentVariable(StateDump::variable); !socket.isEmpty()) {
        m_stateDump = std::make_unique<StateDump>(library(), *m_browser, *window(), m_started);
        m_stateDump->listen(socket);
    }
    // Their first frame is the one after the next synchronisation.
    connect(
        window(), &QQuickWindow::afterSynchronizing, this,
        [this] { connect(window(), &QQuickWindow::frameSwapped, this, &App::firstFrameShown, firstTime); }, firstTime);
}

// On the thread that renders.
void App::firstFrameShown() {
    Startup::end();
    QMetaObject::invokeMethod(
        this, [this] { QTimer::singleShot(firstPictures, this, &App::makeOverlays); }, Qt::QueuedConnection);
}

void App::makeOverlays() {
    load("WindowOverlays");
    make({{QStringLiteral("parent"), QVariant::fromValue(contentOf(*window())->parentItem())},
          {QStringLiteral("door"), QVariant::fromValue(m_door.get())},
          {QStringLiteral("jumpTo"), QVariant::fromValue(m_palette.get())},
          {QStringLiteral("frame"), QVariant::fromValue(m_frame.get())},
          {QStringLiteral("panels"), QVariant::fromValue(m_panels.get())},
          {QStringLiteral("transfer"), QVariant::fromValue(m_transfer.get())},
          {QStringLiteral("updater"), QVariant::fromValue(m_updater.get())},
          {QStringLiteral("onboarding"), QVariant::fromValue(m_onboarding.get())}},
         QQmlIncubator::Asynchronous, &App::takeOverlays);
}

void App::takeOverlays(QObject* overlays) {
    m_overlays.reset(overlays);
    window()->setProperty("overlays", QVariant::fromValue(overlays));
}

void App::open(const QList<QUrl>& urls) {
    if (!urls.isEmpty()) {
        const QUrl& url = urls.first();
        if (url.scheme() == QLatin1String("lumbra") || url.scheme() == QLatin1String("folia-app"))
            library().handleLink(url);
        else
            library().reveal(Location(url.isLocalFile() ? url.toLocalFile() : url.path()));
    }
    if (!m_engine)
        return;
    window()->setWindowStates(window()->windowStates() & ~Qt::WindowMinimized);
    window()->requestActivate();
}

QQuickWindow* App::window() const {
    return qobject_cast<QQuickWindow*>(m_engine->rootObjects().first());
}

// Pages and the palette find files by what is in them as soon as there is a store to ask.
void App::searchContent() {
    m_browser->setContentSearch(
        [store = m_insights->store()](const QString& query, const std::optional<QString>& prefix, int limit) {
            return store->search(query, prefix, limit);
        });
    m_palette->setInsights(
        {.search = [store = m_insights->store()](const QString& query,
                                                 int limit) { return store->search(query, std::nullopt, limit); },
         .title =
             [store = m_insights->store()](const Asset& asset) {
                 const auto insight = store->lookup(asset.url.toString(), asset.size, asset.modified.seconds);
                 return insight ? insight->title : QString();
             }});
}

void App::applyAppearance() {
    if (m_engine)
        Look::setAppearance(*m_engine, m_appearance.highContrast(), m_appearance.reducedMotion());
}

} // namespace lumbra

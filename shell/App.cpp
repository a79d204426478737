// SPDX-License-Identifier: GPL-3.0-or-later
#include "App.h"

#include "StateDump.h"
#include "core/Config.h"
#include "library/Actions.h"
#include "look/Look.h"
#include "platform/Startup.h"

#include <QCoreApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>

#include <chrono>

namespace lumbra {

namespace {
constexpr auto longestStart = std::chrono::seconds(1);

QUrl viewAt(const char* name) {
    return QUrl(QStringLiteral("qrc:/qml/Lumbra/Shell/%1.qml").arg(QLatin1String(name)));
}
} // namespace

App::App(const QElapsedTimer& started, QObject* parent) : QObject(parent), m_started(started) {
    connect(&m_appearance, &Appearance::changed, this, &App::applyAppearance);
}

App::~App() {
    Startup::end(); // what still waits for it could not be joined
    Actions::usePanels(nullptr);
}

Library& App::library() {
    if (!m_library)
        m_library = std::make_unique<Library>(LumbraConfig::library().canonical(), LumbraConfig::isConfigured());
    return *m_library;
}

bool App::show() {
    m_engine = std::make_unique<QQmlApplicationEngine>();
    Look::prepareEngine(*m_engine);
    m_engine->load(viewAt("MainWindow"));
    if (m_engine->rootObjects().isEmpty())
        return false;
    applyAppearance(); // its module is known to the engine only now
    // Its types are loaded on a thread of their own, meanwhile the controllers are made and the window comes up.
    m_contents = std::make_unique<QQmlComponent>(m_engine.get(), viewAt("WindowContents"), QQmlComponent::Asynchronous);
    makeControllers();
    // Shown here and not by the view, so that it comes in the state that it has.
    m_memory->attach(*window());
    window()->setVisible(true);
    QTimer::singleShot(longestStart, this, &Startup::end); // nothing is drawn in a minimised window
    if (!m_contents->isLoading())
        return fillWindow();
    connect(m_contents.get(), &QQmlComponent::statusChanged, this, [this] {
        if (!fillWindow())
            QCoreApplication::exit(1);
    });
    return true;
}

void App::makeControllers() {
    m_insights = std::make_unique<InsightEngine>(&library());
    connect(m_insights.get(), &InsightEngine::storeOpened, this, &App::searchContent);
    m_browser = std::make_unique<Browser>(&library());
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

bool App::fillWindow() {
    QObject* const contents = m_contents->createWithInitialProperties(
        {{QStringLiteral("parent"), QVariant::fromValue(window()->contentItem())},
         {QStringLiteral("window"), QVariant::fromValue(window())},
         {QStringLiteral("library"), QVariant::fromValue(m_library.get())},
         {QStringLiteral("browser"), QVariant::fromValue(m_browser.get())},
         {QStringLiteral("commands"), QVariant::fromValue(m_commands.get())},
         {QStringLiteral("sidebar"), QVariant::fromValue(m_sidebar.get())},
         {QStringLiteral("door"), QVariant::fromValue(m_door.get())},
         {QStringLiteral("jumpTo"), QVariant::fromValue(m_palette.get())},
         {QStringLiteral("frame"), QVariant::fromValue(m_frame.get())},
         {QStringLiteral("panels"), QVariant::fromValue(m_panels.get())},
         {QStringLiteral("transfer"), QVariant::fromValue(m_transfer.get())},
         {QStringLiteral("memory"), QVariant::fromValue(m_memory.get())},
         {QStringLiteral("updater"), QVariant::fromValue(m_updater.get())},
         {QStringLiteral("onboarding"), QVariant::fromValue(m_onboarding.get())}});
    if (!contents) {
        qCritical("%s", qPrintable(m_contents->errorString()));
        return false;
    }
    contents->setParent(window());
    window()->setProperty("contents", QVariant::fromValue(contents));
    if (const QString socket = qEnvironmentVariable(StateDump::variable); !socket.isEmpty()) {
        m_stateDump = std::make_unique<StateDump>(library(), *m_browser, *window(), m_started);
        m_stateDump->listen(socket);
    }
    // The library is gone through from the first frame on that holds something.
    connect(
        window(), &QQuickWindow::afterSynchronizing, this,
        [this] {
            connect(window(), &QQuickWindow::frameSwapped, this, &Startup::end,
                    Qt::ConnectionType(Qt::DirectConnection | Qt::SingleShotConnection));
        },
        Qt::ConnectionType(Qt::DirectConnection | Qt::SingleShotConnection));
    return true;
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

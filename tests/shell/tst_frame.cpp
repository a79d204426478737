// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Config.h"
#include "shell/Frame.h"
#include "shell/Onboarding.h"
#include "support/QmlWindow.h"
#include "support/Strings.h"
#include "support/TestHome.h"

#include <QAccessible>

Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_BrowsingPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_ShellPlugin)

using namespace lumbra;

class tst_frame : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }
    void init();
    void cleanup();

    void aNameIsTypedOverTheInitialTextAndCommittedByReturn();
    void theButtonCommitsToo();
    void aRefusedNameSaysWhyAndDisablesTheButton();
    void aNameOfBlanksDisablesTheButtonWithoutAWord();
    void escapeDismissesTheNameSheet();
    void theActionRunsAfterTheSheetHasGone();
    void aSecondRequestStartsWithItsOwnText();
    void aToastShowsAndGoes();
    void theUndoButtonRunsTheAction();
    void aToastWithoutAnUndoHasNoButton();
    void anErrorIsAcknowledged();
    void anErrorThatComesLaterReplacesTheText();
    void anErrorOnScreenAtTheStartShows();
    void onboardingCannotBeDismissed();
    void onboardingOpensTheLibraryByReturn();
    void theFolderPanelChangesTheFolder();
    void theFolderPanelIsUsedByKey();
    void tabGoesThroughTheNameSheetAndStaysInIt();
    void assistiveTechnologyReadsTheNameSheet();
    void assistiveTechnologyReadsTheAlert();
    void assistiveTechnologyReadsTheToast();
    void assistiveTechnologyReadsTheFirstRun();
    void theToastsSymbolBouncesOnce();

private:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<Library> m_library;
    std::unique_ptr<Frame> m_frame;
    std::unique_ptr<Onboarding> m_onboarding;
    std::unique_ptr<QmlWindow> m_window;

    void show();
    void request(const QString& heading, const QString& initial, NamePrompt::Action action = {}) {
        m_frame->ask(NamePrompt::request(heading, initial, std::move(action)));
        QTRY_VERIFY(m_window->value("nameSheet", "opened").toBool());
    }
    // What assistive technology finds in the window by its role and name.
    const QAccessibleInterface* read(QAccessible::Role role, const QString& name) {
        const QAccessibleInterface* found = nullptr;
        const auto isThere = [&] {
            found = below(QAccessible::queryAccessibleInterface(m_window->window()), role, name);
            return found != nullptr;
        };
        return QTest::qWaitFor(isThere, patience) ? found : nullptr;
    }
    static const QAccessibleInterface* below(const QAccessibleInterface* parent, QAccessible::Role role,
                                             const QString& name) {
        for (int number = 0; number < parent->childCount(); ++number) {
            const QAccessibleInterface* const child = parent->child(number);
            if (child->role() == role && child->text(QAccessible::Name) == name && !child->state().invisible)
                return child;
            if (const auto* const found = below(child, role, name))
                return found;
        }
        return nullptr;
    }
    void type(const char* letters) {
        for (; *letters; ++letters)
            QTest::keyClick(m_window->window(), *letters);
    }
};

void tst_frame::init() {
    m_home = std::make_unique<TestHome>();
    m_home->folder("media/agents");
    m_home->folder("media/sounds");
    m_home->folder("media/stills");
    m_library = std::make_unique<Library>(m_home->folder("library"), true);
    m_frame = std::make_unique<Frame>(m_library.get());
    m_onboarding = std::make_unique<Onboarding>(m_library.get(), [] {});
}

void tst_frame::cleanup() {
    m_window.reset();
    m_onboarding.reset();
    m_frame.reset();
    m_library.reset();
    m_home.reset();
}

void tst_frame::show() {
    m_window = std::make_unique<QmlWindow>(
        "id: root\n"
        "required property Frame frame\n"
        "required property Onboarding onboarding\n"
        "NameSheet { objectName: 'nameSheet'; prompts: root.frame.prompts }\n"
        "ToastView { objectName: 'toast'; toasts: root.frame.toasts }\n"
        "ErrorAlert { objectName: 'alert'; frame: root.frame }\n"
        "OnboardingSheet { objectName: 'onboarding'; onboarding: root.onboarding }",
        "import Lumbra.Shell\n",
        QVariantMap{{QStringLiteral("frame"), QVariant::fromValue(m_frame.get())},
                    {QStringLiteral("onboarding"), QVariant::fromValue(m_onboarding.get())}},
        QSize(900, 640));
}

void tst_frame::aNameIsTypedOverTheInitialTextAndCommittedByReturn() {
    show();
    QString taken;
    request(QStringLiteral("New Folder"), QStringLiteral("untitled folder"),
            [&](const QString& name) { taken = name; });
    QCOMPARE(m_window->value("nameField", "text").toString(), QStringLiteral("untitled folder"));
    QVERIFY(m_window->value("nameField", "activeFocus").toBool());
    type("stills");
    QCOMPARE(m_window->value("nameField", "text").toString(), QStringLiteral("stills"));
    m_window->press(Qt::Key_Return);
    QTRY_COMPARE(taken, QStringLiteral("stills"));
    QTRY_VERIFY(!m_window->value("nameSheet", "visible").toBool());
}

void tst_frame::theButtonCommitsToo() {
    show();
    QString taken;
    request(QStringLiteral("Rename Folder"), QStringLiteral("stills"), [&](const QString& name) { taken = name; });
    QCOMPARE(m_window->value("nameConfirm", "text").toString(), QStringLiteral("Rename"));
    m_window->click("nameConfirm");
    QTRY_COMPARE(taken, QStringLiteral("stills"));
}

void tst_frame::aRefusedNameSaysWhyAndDisablesTheButton() {
    show();
    request(QStringLiteral("New Folder"), QString());
    type("a/b");
    QCOMPARE(m_window->value("nameProblem", "text").toString(), QStringLiteral("Names can't contain / or :."));
    QVERIFY(!m_window->value("nameConfirm", "enabled").toBool());
    m_window->press(Qt::Key_Return);
    QVERIFY(m_window->value("nameSheet", "opened").toBool());
}

void tst_frame::aNameOfBlanksDisablesTheButtonWithoutAWord() {
    show();
    request(QStringLiteral("New Folder"), QString());
    type("   ");
    QVERIFY(!m_window->value("nameProblem", "visible").toBool());
    QVERIFY(!m_window->value("nameConfirm", "enabled").toBool());
}

void tst_frame::escapeDismissesTheNameSheet() {
    show();
    int runs = 0;
    request(QStringLiteral("New Folder"), QStringLiteral("a"), [&](const QString&) { ++runs; });
    m_window->press(Qt::Key_Escape);
    QTRY_VERIFY(!m_window->value("nameSheet", "visible").toBool());
    QVERIFY(!m_frame->prompts()->asking());
    QCOMPARE(runs, 0);
}

void tst_frame::theActionRunsAfterTheSheetHasGone() {
    show();
    bool wasOpen = true;
    bool ran = false;
    request(QStringLiteral("New Folder"), QStringLiteral("a"), [&](const QString&) {
        ran = true;
        wasOpen = m_window->value("nameSheet", "opened").toBool();
    });
    m_window->press(Qt::Key_Return);
    QTRY_VERIFY(ran);
    QVERIFY(!wasOpen);
}

void tst_frame::aSecondRequestStartsWithItsOwnText() {
    show();
    request(QStringLiteral("New Folder"), QStringLiteral("a"));
    type("typed");
    m_window->press(Qt::Key_Escape);
    QTRY_VERIFY(!m_window->value("nameSheet", "visible").toBool());
    request(QStringLiteral("New Folder"), QStringLiteral("a"));
    QCOMPARE(m_window->value("nameField", "text").toString(), QStringLiteral("a"));
    QCOMPARE(m_window->value("nameField", "selectedText").toString(), QStringLiteral("a"));
}

void tst_frame::aToastShowsAndGoes() {
    show();
    QVERIFY(!m_window->value("toast", "visible").toBool());
    m_library->setToast(Toast{.text = QStringLiteral("Copied 3 files. Paste it anywhere.")});
    auto* toast = m_window->find<QQuickItem>("toast");
    QTRY_COMPARE(toast->opacity(), 1.0);
    QTRY_COMPARE(toast->y() + toast->height(), 640.0 - 44);
    QCOMPARE(toast->property("text").toString(), QStringLiteral("Copied 3 files. Paste it anywhere."));
    m_library->setToast(std::nullopt);
    QTRY_VERIFY(!toast->isVisible());
}

void tst_frame::theUndoButtonRunsTheAction() {
    show();
    int runs = 0;
    m_library->setToast(Toast{.text = QStringLiteral("Moved"), .undo = [&] { ++runs; }});
    auto* toast = m_window->find<QQuickItem>("toast");
    QTRY_COMPARE(toast->y() + toast->height(), 640.0 - 44);
    m_window->click("capsuleButton");
    QCOMPARE(runs, 1);
}

void tst_frame::aToastWithoutAnUndoHasNoButton() {
    show();
    m_library->setToast(Toast{.text = QStringLiteral("Moved")});
    QTRY_VERIFY(m_window->value("toast", "visible").toBool());
    QVERIFY(!m_window->value("capsuleButton", "visible").toBool());
}

void tst_frame::anErrorIsAcknowledged() {
    show();
    m_library->setLastError(QStringLiteral("The disk is full."));
    QTRY_VERIFY(m_window->value("alert", "opened").toBool());
    QCOMPARE(m_window->value("alert", "title").toString(), QStringLiteral("Something went wrong"));
    QCOMPARE(m_window->value("alert", "message").toString(), QStringLiteral("The disk is full."));
    m_window->press(Qt::Key_Return);
    QTRY_VERIFY(!m_window->value("alert", "visible").toBool());
    QVERIFY(!m_library->lastError());
}

void tst_frame::anErrorThatComesLaterReplacesTheText() {
    show();
    m_library->setLastError(QStringLiteral("one"));
    QTRY_VERIFY(m_window->value("alert", "opened").toBool());
    m_library->setLastError(QStringLiteral("two"));
    QCOMPARE(m_window->value("alert", "message").toString(), QStringLiteral("two"));
    QVERIFY(m_window->value("alert", "opened").toBool());
}

void tst_frame::anErrorOnScreenAtTheStartShows() {
    m_library->setLastError(QStringLiteral("one"));
    show();
    QTRY_VERIFY(m_window->value("alert", "opened").toBool());
}

void tst_frame::onboardingCannotBeDismissed() {
    m_library->setOnboarding(true);
    show();
    QTRY_VERIFY(m_window->value("onboarding", "opened").toBool());
    m_window->press(Qt::Key_Escape);
    QTest::mouseClick(m_window->window(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    QVERIFY(m_window->value("onboarding", "opened").toBool());
    QVERIFY(m_library->onboarding());
}

void tst_frame::onboardingOpensTheLibraryByReturn() {
    show();
    m_library->setOnboarding(true);
    QTRY_VERIFY(m_window->value("onboarding", "opened").toBool());
    m_onboarding->choose(m_library->root().toString());
    m_window->press(Qt::Key_Return);
    QTRY_VERIFY(!m_window->value("onboarding", "visible").toBool());
    QVERIFY(!m_library->onboarding());
}

void tst_frame::theFolderPanelChangesTheFolder() {
    LumbraConfig::setLibrary(m_home->path().child("media").child("agents"));
    m_library->setOnboarding(true);
    show();
    QTRY_VERIFY(m_window->value("onboarding", "opened").toBool());
    QCOMPARE(m_window->value("onboardingFolder", "text").toString(), QStringLiteral("~/media/agents"));
    m_window->click("onboardingChange");
    QTRY_COMPARE(m_window->value("panelList", "count").toInt(), 3);
    QCOMPARE(m_window->value("panelChoose", "text").toString(), QStringLiteral("Use This Folder"));
    m_window->click("sounds");
    QCOMPARE(m_window->value("panelSummary", "text").toString(), QStringLiteral("~/media/sounds"));
    m_window->click("panelChoose");
    QTRY_COMPARE(m_window->value("onboardingFolder", "text").toString(), QStringLiteral("~/media/sounds"));
}

void tst_frame::theFolderPanelIsUsedByKey() {
    LumbraConfig::setLibrary(m_home->path().child("media").child("agents"));
    m_library->setOnboarding(true);
    show();
    QTRY_VERIFY(m_window->value("onboarding", "opened").toBool());
    m_window->find<QQuickItem>("onboardingChange")->forceActiveFocus();
    m_window->press(Qt::Key_Return);
    QTRY_COMPARE(m_window->value("panelList", "count").toInt(), 3);
    QVERIFY(m_window->value("panelPath", "activeFocus").toBool());
    type("so");
    QTRY_COMPARE(m_window->value("panelList", "count").toInt(), 1); // what the second letter leaves
    m_window->press(Qt::Key_Tab);                                   // completes
    QCOMPARE(m_window->value("panelPath", "text").toString(), QStringLiteral("~/media/sounds/"));
    m_window->press(Qt::Key_Return);
    QTRY_COMPARE(m_window->value("onboardingFolder", "text").toString(), QStringLiteral("~/media/sounds"));
}

void tst_frame::tabGoesThroughTheNameSheetAndStaysInIt() {
    show();
    request(QStringLiteral("New Folder"), QStringLiteral("a"));
    const auto focused = [this] { return m_window->window()->activeFocusItem()->property("text").toString(); };
    QStringList order;
    for (int step = 0; step < 4; ++step) {
        order.append(focused());
        m_window->press(Qt::Key_Tab);
    }
    QCOMPARE(order, strings({"a", "Cancel", "Create", "a"}));
    m_window->press(Qt::Key_Tab);
    m_window->press(Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(focused(), QStringLiteral("Cancel"));
    QVERIFY(m_window->window()->activeFocusItem()->property("visualFocus").toBool());
    m_window->press(Qt::Key_Space);
    QTRY_VERIFY(!m_frame->prompts()->asking());
}

void tst_frame::assistiveTechnologyReadsTheNameSheet() {
    QAccessible::setActive(true);
    show();
    request(QStringLiteral("New Folder"), QString());
    QVERIFY(read(QAccessible::Dialog, QStringLiteral("New Folder")));
    const auto* const field = read(QAccessible::EditableText, QStringLiteral("Name"));
    QVERIFY(field);
    QVERIFY(field->state().focused);
    QVERIFY(read(QAccessible::Button, QStringLiteral("Cancel")));
    const auto* const confirm = read(QAccessible::Button, QStringLiteral("Create"));
    QVERIFY(confirm);
    QVERIFY(confirm->state().disabled);
    type("a/b");
    QVERIFY(read(QAccessible::AlertMessage, QStringLiteral("Names can't contain / or :.")));
    m_window->press(Qt::Key_Backspace);
    m_window->press(Qt::Key_Backspace);
    QVERIFY(!confirm->state().disabled);
}

void tst_frame::assistiveTechnologyReadsTheAlert() {
    QAccessible::setActive(true);
    show();
    m_library->setLastError(QStringLiteral("The disk is full."));
    QVERIFY(read(QAccessible::Dialog, QStringLiteral("Something went wrong")));
    QVERIFY(read(QAccessible::StaticText, QStringLiteral("The disk is full.")));
    const auto* const button = read(QAccessible::Button, QStringLiteral("OK"));
    QVERIFY(button);
    QTRY_VERIFY(button->state().focused);
}

void tst_frame::assistiveTechnologyReadsTheFirstRun() {
    QAccessible::setActive(true);
    show();
    m_onboarding->choose(QStringLiteral("~/Media"));
    m_library->setOnboarding(true);
    QVERIFY(read(QAccessible::Dialog, QStringLiteral("Welcome to Lumbra")));
    QVERIFY(read(QAccessible::Heading, QStringLiteral("Welcome to Lumbra")));
    QVERIFY(read(QAccessible::StaticText, QStringLiteral("Library folder")));
    QVERIFY(read(QAccessible::StaticText, m_onboarding->folderText()));
    QVERIFY(read(QAccessible::Button, QStringLiteral("Change…")));
    const auto* const open = read(QAccessible::Button, QStringLiteral("Open Library"));
    QVERIFY(open);
    QTRY_VERIFY(open->state().focused);
}

void tst_frame::assistiveTechnologyReadsTheToast() {
    QAccessible::setActive(true);
    show();
    int runs = 0;
    m_library->setToast(Toast{.text = QStringLiteral("Moved"), .undo = [&] { ++runs; }});
    QVERIFY(read(QAccessible::AlertMessage, QStringLiteral("Moved")));
    const auto* const button = read(QAccessible::Button, QStringLiteral("Undo"));
    QVERIFY(button);
    const_cast<QAccessibleInterface*>(button)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(runs, 1);
}

void tst_frame::theToastsSymbolBouncesOnce() {
    show();
    const auto symbolOf = [this] {
        const QList<QQuickItem*> items = m_window->find<QQuickItem>("toast")->findChildren<QQuickItem*>();
        for (QQuickItem* item : items)
            if (item->property("name").toString() == u"star.fill")
                return item;
        return static_cast<QQuickItem*>(nullptr);
    };
    m_library->setToast(Toast{.text = QStringLiteral("Starred"), .starred = true});
    QTRY_VERIFY(symbolOf());
    QQuickItem* const symbol = symbolOf();
    QList<double> scales;
    connect(symbol, &QQuickItem::scaleChanged, this, [&] { scales.append(symbol->scale()); });
    QTRY_VERIFY(!scales.isEmpty() && symbol->scale() == 1.0);
    QVERIFY(*std::max_element(scales.begin(), scales.end()) > 1.2);
    scales.clear();
    m_library->setToast(Toast{.text = QStringLiteral("Starred"), .starred = true}); // the next one does it again
    QTRY_VERIFY(!scales.isEmpty() && symbol->scale() == 1.0);
}

QTEST_MAIN(tst_frame)
#include "tst_frame.moc"

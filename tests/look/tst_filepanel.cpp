// SPDX-License-Identifier: GPL-3.0-or-later
#include "look/panel/PathChoice.h"
#include "support/QmlWindow.h"
#include "support/TestHome.h"

#include <QSignalSpy>

using namespace lumbra;

// The panel in a window, by real keys and clicks.
class FilePanelTest : public QObject {
    Q_OBJECT

    using enum PathChoice::Kind;

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }

    void init() {
        m_home = std::make_unique<TestHome>();
        m_home->folder("Downloads");
        m_home->folder("media/stills");
        m_home->folder("media/sounds");
        for (const char* file : {"media/a.png", "media/b.png", "media/c.png"})
            m_home->file(file);
        m_window = std::make_unique<QmlWindow>(
            "id: root; property var places: []\n"
            "FilePanel { objectName: 'panel'; morePlaces: root.places }",
            "",
            QVariantMap{{QStringLiteral("places"),
                         QVariantList{QVariantMap{{QStringLiteral("text"), QStringLiteral("Elsewhere")},
                                                  {QStringLiteral("symbol"), QStringLiteral("archivebox")},
                                                  {QStringLiteral("path"), paths({"media"}).first()}}}}},
            QSize(900, 540));
    }
    void cleanup() { m_window.reset(); }

    void filesAndFoldersAreClickedTogether() {
        open(Open);
        click("b.png");
        click("stills", Qt::ControlModifier);
        QCOMPARE(text("panelSummary"), QStringLiteral("2 items"));
        m_window->click("panelChoose");
        QCOMPARE(chosen(), paths({"media/stills", "media/b.png"}));
        QTRY_VERIFY(!m_window->value("panel", "visible").toBool());
        QCOMPARE(m_cancelled->size(), 0);
    }

    void aRangeIsClicked() {
        open(Open);
        click("a.png");
        click("c.png", Qt::ShiftModifier);
        QCOMPARE(text("panelSummary"), QStringLiteral("3 items"));
    }

    void aDoubleClickGoesIntoAFolderAndChoosesAFile() {
        open(Open);
        doubleClick("stills");
        QTRY_COMPARE(text("panelPath"), QStringLiteral("~/media/stills/"));
        QTRY_COMPARE(text("panelEmpty"), QStringLiteral("Nothing inside"));
        m_window->click("panelUp");
        settle();
        doubleClick("b.png");
        QCOMPARE(chosen(), paths({"media/b.png"}));
    }

    void aTypedPathCompletesOnTab() {
        open(Open);
        QVERIFY(hasFocus("panelPath"));
        type("so");
        QTRY_VERIFY(!isListed("stills") && isListed("sounds"));
        m_window->press(Qt::Key_Tab);
        QCOMPARE(text("panelPath"), QStringLiteral("~/media/sounds/"));
        QTRY_COMPARE(m_window->value("panelList", "count").toInt(), 0);
        m_window->press(Qt::Key_Tab); // there is nothing more to complete
        QVERIFY(!hasFocus("panelPath"));
    }

    void aTypedPathIsChosenByReturn() {
        open(Open);
        type("b.png");
        m_window->press(Qt::Key_Return); // at once, before the disk has answered
        QTRY_COMPARE(chosen(), paths({"media/b.png"}));
    }

    void whatIsNotThereCannotBeOpened() {
        open(Open);
        type("nothing");
        QTRY_VERIFY(!m_window->value("panelChoose", "enabled").toBool());
        QTRY_COMPARE(text("panelEmpty"), QStringLiteral("Nothing is called so"));
        m_window->press(Qt::Key_Return);
        QVERIFY(m_window->value("panel", "opened").toBool());
    }

    void theListIsUsedByKeysAlone() {
        open(Open);
        m_window->press(Qt::Key_Down); // into the list
        m_window->press(Qt::Key_Down);
        m_window->press(Qt::Key_Return); // into stills
        QCOMPARE(text("panelPath"), QStringLiteral("~/media/stills/"));
        settle();
        m_window->press(Qt::Key_Left);
        settle();
        m_window->press(Qt::Key_End);
        m_window->press(Qt::Key_Up, Qt::ShiftModifier);
        m_window->press(Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(chosen(), paths({"media/b.png", "media/c.png"}));
    }

    void everythingIsSelectedByKey() {
        open(Open);
        m_window->press(Qt::Key_Down);
        m_window->press(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(text("panelSummary"), QStringLiteral("5 items"));
        m_window->press(Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(text("panelSummary"), QStringLiteral("4 items"));
    }

    void lettersTypedInTheListGoToThePath() {
        open(Open);
        m_window->press(Qt::Key_Down);
        type("b.");
        QVERIFY(hasFocus("panelPath"));
        QCOMPARE(text("panelPath"), QStringLiteral("~/media/b."));
        QTRY_COMPARE(m_window->value("panelList", "count").toInt(), 1);
    }

    void aPlaceIsGoneTo() {
        open(Open);
        m_window->click("place Downloads");
        QTRY_COMPARE(text("panelEmpty"), QStringLiteral("Nothing inside"));
        QTRY_VERIFY(m_window->value("place Downloads", "checked").toBool());
        m_window->click("place Elsewhere");
        QTRY_VERIFY(isListed("stills"));
    }

    void keysGoUpAndToThePath() {
        open(Open);
        m_window->press(Qt::Key_Down);
        m_window->press(Qt::Key_Up, Qt::AltModifier);
        QTRY_VERIFY(isListed("Downloads"));
        m_window->press(Qt::Key_L, Qt::ControlModifier);
        QVERIFY(hasFocus("panelPath"));
        type("/");
        QCOMPARE(text("panelPath"), QStringLiteral("/"));
    }

    void tabReachesEveryControl() {
        open(Open);
        QSet<QString> reached;
        for (int presses = 0; presses < 20; ++presses) {
            m_window->press(Qt::Key_Tab);
            reached.insert(m_window->window()->activeFocusItem()->objectName());
        }
        for (const char* control :
             {"panelUp", "panelPath", "panelNewFolder", "place Downloads", "panelList", "panelCancel", "panelChoose"})
            QVERIFY2(reached.contains(QLatin1String(control)), control);
    }

    void aFolderIsMadeByKey() {
        open(Open);
        m_window->press(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
        QTRY_VERIFY(hasFocus("newFolderName"));
        type("stills");
        m_window->press(Qt::Key_Return);
        QTRY_COMPARE(text("newFolderProblem"), QStringLiteral("There is already something called “stills” here."));
        type(" 2");
        m_window->press(Qt::Key_Return);
        QTRY_COMPARE(text("panelPath"), QStringLiteral("~/media/stills 2/"));
        QVERIFY(m_home->path().child("media/stills 2").isFolder());
        QVERIFY(m_window->value("panel", "opened").toBool());
    }

    void escapeLeavesOnlyTheQuestionForAFolder() {
        open(Open);
        m_window->click("panelNewFolder");
        QTRY_VERIFY(m_window->value("newFolderSheet", "opened").toBool());
        m_window->press(Qt::Key_Escape);
        QTRY_VERIFY(hasFocus("panelPath"));
        QVERIFY(m_window->value("panel", "opened").toBool());
        QCOMPARE(m_cancelled->size(), 0);
    }

    void escapeCancels() {
        open(Open);
        m_window->press(Qt::Key_Escape);
        QTRY_VERIFY(!m_window->value("panel", "visible").toBool());
        QCOMPARE(m_cancelled->size(), 1);
        QCOMPARE(m_chosen->size(), 0);
    }

    void theCancelButtonCancels() {
        open(Folder);
        m_window->click("panelCancel");
        QTRY_VERIFY(!m_window->value("panel", "visible").toBool());
        QCOMPARE(m_cancelled->size(), 1);
    }

    void aNameIsSavedUnderWithItsExtensionKept() {
        open(Save, "old.png");
        QVERIFY(hasFocus("panelName"));
        QCOMPARE(m_window->value("panelName", "selectedText").toString(), QStringLiteral("old"));
        type("new");
        QCOMPARE(text("panelSummary"), QStringLiteral("~/media/new.png"));
        m_window->press(Qt::Key_Return);
        QTRY_COMPARE(chosen(), paths({"media/new.png"}));
    }

    void savingOverAFileAsksFirst() {
        open(Save, "a.png");
        m_window->press(Qt::Key_Return);
        QTRY_VERIFY(m_window->value("replaceAlert", "opened").toBool());
        m_window->press(Qt::Key_Escape);
        QTRY_VERIFY(!m_window->value("replaceAlert", "visible").toBool());
        QVERIFY(m_window->value("panel", "opened").toBool());
        QCOMPARE(m_chosen->size(), 0);

        QTRY_VERIFY(hasFocus("panelName"));
        m_window->press(Qt::Key_Return);
        QTRY_VERIFY(m_window->value("replaceAlert", "opened").toBool());
        m_window->press(Qt::Key_Tab);
        m_window->press(Qt::Key_Return);
        QTRY_COMPARE(chosen(), paths({"media/a.png"}));
        QTRY_VERIFY(!m_window->value("panel", "visible").toBool());
    }

    void aClickOnAFileTakesItsName() {
        open(Save, "old.png");
        click("c.png");
        QCOMPARE(text("panelName"), QStringLiteral("c.png"));
    }

    void onlyFoldersAreListedWhereAFolderIsChosen() {
        open(Folder);
        QCOMPARE(m_window->value("panelList", "count").toInt(), 2);
        click("stills");
        m_window->click("panelChoose");
        QCOMPARE(chosen(), paths({"media/stills"}));
    }

    void aFolderIsMadeByItsTypedName() {
        open(Folder);
        type("new one");
        QTRY_COMPARE(text("panelEmpty"), QStringLiteral("A new folder"));
        m_window->press(Qt::Key_Return);
        QTRY_COMPARE(chosen(), paths({"media/new one"}));
        QVERIFY(m_home->path().child("media/new one").isFolder());
    }

    void itBeginsAnewEachTime() {
        open(Open);
        click("b.png");
        m_window->press(Qt::Key_Escape);
        QTRY_VERIFY(!m_window->value("panel", "visible").toBool());
        m_home->file("media/later.png");
        open(Open);
        QTRY_VERIFY(isListed("later.png"));
        QCOMPARE(text("panelSummary"), QStringLiteral("~/media"));
    }

private:
    void open(PathChoice::Kind kind, const char* name = "") {
        auto* const panel = m_window->find("panel");
        panel->setProperty("kind", kind);
        m_chosen = std::make_unique<QSignalSpy>(panel, SIGNAL(chosen(QVariant)));
        m_cancelled = std::make_unique<QSignalSpy>(panel, SIGNAL(cancelled()));
        QMetaObject::invokeMethod(panel, "openAt", Q_ARG(QString, QStringLiteral("~/media")),
                                  Q_ARG(QVariant, QString::fromUtf8(name)));
        QTRY_VERIFY(m_window->value("panel", "opened").toBool());
        settle();
    }
    void settle() {
        const auto* const listing = m_window->value("panelList", "model").value<QObject*>();
        QTRY_VERIFY(!listing->property("reading").toBool());
    }
    void type(const char* keys) {
        for (const char* key = keys; *key; ++key)
            QTest::keyClick(m_window->window(), *key);
    }
    bool hasFocus(const char* name) { return m_window->value(name, "activeFocus").toBool(); }
    bool isListed(const char* name) {
        const auto* const list = m_window->find<QQuickItem>("panelList");
        const auto rows = list->property("contentItem").value<QQuickItem*>()->childItems();
        return std::any_of(rows.begin(), rows.end(), [name](const QQuickItem* row) {
            return row->isVisible() && row->objectName() == QLatin1String(name);
        });
    }
    void click(const char* name, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(m_window->window(), Qt::LeftButton, modifiers, m_window->centreOf(name));
    }
    void doubleClick(const char* name) {
        const QPoint at = m_window->centreOf(name);
        QTest::mouseClick(m_window->window(), Qt::LeftButton, Qt::NoModifier, at);
        QTest::mouseDClick(m_window->window(), Qt::LeftButton, Qt::NoModifier, at);
    }
    QString text(const char* name) { return m_window->value(name, "text").toString(); }
    QStringList chosen() const { return m_chosen->isEmpty() ? QStringList() : m_chosen->last().first().toStringList(); }
    QStringList paths(std::initializer_list<const char*> relative) const {
        QStringList all;
        for (const char* path : relative)
            all.append(m_home->path().child(path).toString());
        return all;
    }

    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<QmlWindow> m_window;
    std::unique_ptr<QSignalSpy> m_chosen;
    std::unique_ptr<QSignalSpy> m_cancelled;
};

QTEST_MAIN(FilePanelTest)
#include "tst_filepanel.moc"

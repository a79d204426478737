// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/chrome/GroupCards.h"
#include "support/Strings.h"
#include "support/TestHome.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace lumbra;

namespace {

struct Page {
    TestHome home;
    std::unique_ptr<Library> library;
    std::unique_ptr<GroupCards> cards;
    std::unique_ptr<QAbstractItemModelTester> tester;

    void open() {
        library = std::make_unique<Library>(home.folder("Library"), true);
        cards = std::make_unique<GroupCards>(library.get());
        tester = std::make_unique<QAbstractItemModelTester>(cards.get());
    }

    QStringList names() const {
        QStringList names;
        for (int row = 0; row < cards->rowCount(); ++row)
            names << cards->data(cards->index(row), GroupCards::nameRole).toString();
        return names;
    }

    QVariant first(int role) const { return cards->data(cards->index(0), role); }
};

} // namespace

class TestGroupCards : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void projectsStandInTheOrderOfTheirGroup() {
        Page page;
        for (const char* name : {"a", "b", "c"})
            page.home.folder(std::string("Library/") + name);
        page.open();
        const ProjectGroup group = page.library->newGroup(u"G"_qs, strings({"c", "gone", "a"}));
        QVERIFY(page.names().isEmpty());
        page.library->setPlace(Place::group(group.id));
        QCOMPARE(page.names(), strings({"c", "a"}));
        page.library->add(u"b"_qs, group.id);
        QCOMPARE(page.names(), strings({"c", "a", "b"}));
        page.library->hide(*page.library->projectContaining(page.home.path().child("Library/c")));
        QCOMPARE(page.names(), strings({"a", "b"}));
    }

    void aGroupThatIsGoneHasNoCards() {
        Page page;
        page.home.folder("Library/a");
        page.open();
        page.library->setPlace(Place::group(QUuid::createUuid()));
        QCOMPARE(page.cards->rowCount(), 0);
    }

    void aCardFollowsWhatItsProjectHoldsInPlace() {
        Page page;
        page.home.file("Library/a/1.png");
        page.home.file("Library/a/2.mp4");
        page.open();
        const ProjectGroup group = page.library->newGroup(u"G"_qs, strings({"a"}));
        page.library->setPlace(Place::group(group.id));
        const QSignalSpy reset(page.cards.get(), &QAbstractItemModel::modelReset);
        QTRY_COMPARE(page.first(GroupCards::subtitleRole).toString(), u"2 items"_qs);
        QCOMPARE(page.first(GroupCards::newestRole).toList().size(), 2);
        QCOMPARE(page.first(GroupCards::hueRole).toInt(), page.library->hueFor(u"a"_qs));
        QVERIFY(reset.isEmpty());
    }

    void subtitles() {
        const TestHome home;
        QCOMPARE(GroupCards::subtitle({1, {}}, {}), u"1 items"_qs);
        QCOMPARE(GroupCards::subtitle({12, {}}, home.path().child("code/site")),
                 QStringLiteral("12 items · linked to ~/code/site"));
    }
};

QTEST_GUILESS_MAIN(TestGroupCards)
#include "tst_groupcards.moc"

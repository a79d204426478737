// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/events/WatchTree.h"

#include <QTest>

using lumbra::events::WatchTree;

class tst_WatchTree : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aWatchLeadsToItsFoldersPath();
    void aMovedFolderTakesWhatIsBelowAlong();
    void aDetachedFolderHasNoPathButKeepsItsWatches();
    void aTicketEndsWhenTheFolderIsBack();
    void removedFoldersStayInMemoryUntilTheyAreBuried();
    void chainsOfThousandsOfFoldersEndWithoutRecursion();
};

void tst_WatchTree::aWatchLeadsToItsFoldersPath() {
    WatchTree tree;
    auto& slash = tree.addRoot("/");
    auto& root = tree.addRoot("/home/root");
    auto& a = tree.add(root, "a");
    auto& b = tree.add(a, "b");
    tree.setWatch(b, 7);
    QCOMPARE(tree.find(7), &b);
    QCOMPARE(tree.path(*tree.find(7)), std::optional<std::string>("/home/root/a/b"));
    QCOMPARE(tree.path(tree.add(slash, "etc")), std::optional<std::string>("/etc"));
    QCOMPARE(tree.child(root, "a"), &a);
    QVERIFY(!tree.child(root, "b"));
    QVERIFY(WatchTree::isAtOrBelow(b, root));
    QVERIFY(!WatchTree::isAtOrBelow(a, b));

    tree.setWatch(b, 8);
    QVERIFY(!tree.find(7));
    QCOMPARE(tree.watchCount(), size_t(1));
}

void tst_WatchTree::aMovedFolderTakesWhatIsBelowAlong() {
    WatchTree tree;
    auto& root = tree.addRoot("/r");
    auto& a = tree.add(root, "a");
    auto& deep = tree.add(tree.add(a, "b"), "c");
    auto& other = tree.add(root, "other");
    tree.attach(a, other, "renamed");
    QCOMPARE(tree.path(deep), std::optional<std::string>("/r/other/renamed/b/c"));
    QVERIFY(!tree.child(root, "a"));
    QCOMPARE(tree.child(other, "renamed"), &a);
}

void tst_WatchTree::aDetachedFolderHasNoPathButKeepsItsWatches() {
    WatchTree tree;
    auto& root = tree.addRoot("/r");
    auto& a = tree.add(root, "a");
    auto& b = tree.add(a, "b");
    tree.setWatch(b, 3);
    const auto ticket = tree.detach(a);
    QVERIFY(!tree.path(b));
    QCOMPARE(tree.find(3), &b);
    QCOMPARE(tree.detached(ticket), &a);
    tree.attach(a, root, "back");
    QCOMPARE(tree.path(b), std::optional<std::string>("/r/back/b"));
}

void tst_WatchTree::aTicketEndsWhenTheFolderIsBack() {
    WatchTree tree;
    auto& root = tree.addRoot("/r");
    auto& a = tree.add(root, "a");
    const auto first = tree.detach(a);
    tree.attach(a, root, "a");
    QVERIFY(!tree.detached(first));
    const auto second = tree.detach(a);
    QVERIFY(first != second);
    tree.remove(a, [](const auto&) {});
    QVERIFY(!tree.detached(second));
}

void tst_WatchTree::removedFoldersStayInMemoryUntilTheyAreBuried() {
    WatchTree tree;
    auto& root = tree.addRoot("/r");
    auto& a = tree.add(root, "a");
    auto& b = tree.add(a, "b");
    tree.setWatch(a, 1);
    tree.setWatch(b, 2);
    std::vector<int> watches;
    tree.remove(a, [&](const WatchTree::Folder& gone) { watches.push_back(gone.watch); });
    QCOMPARE(watches, (std::vector{1, 2}));
    QCOMPARE(tree.watchCount(), size_t(0));
    QVERIFY(!tree.path(b));
    QCOMPARE(b.standing, WatchTree::Folder::Standing::removed);
    tree.bury();
    QVERIFY(!tree.child(root, "a"));
}

void tst_WatchTree::chainsOfThousandsOfFoldersEndWithoutRecursion() {
    WatchTree tree;
    for (int chain = 0; chain < 2; ++chain) {
        auto* folder = &tree.addRoot("/r" + std::to_string(chain));
        for (int i = 0; i < 500'000; ++i)
            folder = &tree.add(*folder, "d");
        QVERIFY(tree.path(*folder)->size() > 1'000'000);
    }
}

QTEST_APPLESS_MAIN(tst_WatchTree)
#include "tst_watchtree.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/events/FolderPicture.h"
#include "support/TestHome.h"

#include <QTest>

#include <sys/xattr.h>

#include <filesystem>
#include <fstream>

using namespace lumbra;
using events::FolderPicture;
using Kind = FolderPicture::Difference::Kind;
namespace fs = std::filesystem;

namespace {

std::string text(const Location& location) {
    return std::string(location.view());
}

// A picture of files that have not changed just now, and so need no second look.
FolderPicture settledPicture(const std::string& folder) {
    for (;;) {
        auto picture = FolderPicture::take(folder);
        if (picture.differencesTo(FolderPicture::take(folder)).empty())
            return picture;
    }
}

} // namespace

class tst_FolderPicture : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void differs_data();
    void differs();
    void aFileThatChangedJustNowIsLookedAtTwice();
    void aFolderThatIsNotThereIsEmpty();
};

void tst_FolderPicture::differs_data() {
    using Differences = std::vector<FolderPicture::Difference>;
    using Change = std::function<void(const std::string&)>;
    QTest::addColumn<Change>("change");
    QTest::addColumn<Differences>("differences");

    const auto row = [](const char* name, Change change, Differences differences) {
        QTest::newRow(name) << std::move(change) << std::move(differences);
    };
    row("nothing happens", [](const std::string&) {}, {});
    row("a file appears", [](const std::string& f) { std::ofstream(f + "/b") << "x"; },
        {{"b", Kind::appeared, false, false}});
    row("a folder appears", [](const std::string& f) { fs::create_directory(f + "/zz"); },
        {{"zz", Kind::appeared, false, true}});
    row("a file goes", [](const std::string& f) { fs::remove(f + "/a"); }, {{"a", Kind::vanished, false, false}});
    row("a folder goes", [](const std::string& f) { fs::remove_all(f + "/folder"); },
        {{"folder", Kind::vanished, true, false}});
    row("a file grows", [](const std::string& f) { std::ofstream(f + "/a", std::ios::app) << "y"; },
        {{"a", Kind::changed, false, false}});
    row("a file gets a star", [](const std::string& f) { ::setxattr((f + "/a").c_str(), "user.star", "1", 1, 0); },
        {{"a", Kind::changed, false, false}});
    row("a file is renamed", [](const std::string& f) { fs::rename(f + "/a", f + "/0"); },
        {{"0", Kind::appeared, false, false}, {"a", Kind::vanished, false, false}});
    row("something happens inside a folder", [](const std::string& f) { std::ofstream(f + "/folder/new") << "x"; }, {});
    row("a folder is replaced by another",
        [](const std::string& f) {
            fs::create_directory(f + "/t");
            fs::remove_all(f + "/folder");
            fs::rename(f + "/t", f + "/folder");
        },
        {{"folder", Kind::changed, true, true}});
    row("a file becomes a folder",
        [](const std::string& f) {
            fs::remove(f + "/a");
            fs::create_directory(f + "/a");
        },
        {{"a", Kind::changed, false, true}});
}

void tst_FolderPicture::differs() {
    QFETCH(std::function<void(const std::string&)>, change);
    QFETCH(std::vector<FolderPicture::Difference>, differences);
    TestHome home;
    home.file("place/a");
    home.file("place/folder/inside");
    home.file("place/z");
    const std::string folder = text(home.path().child("place"));
    const auto before = settledPicture(folder);
    change(folder);
    QVERIFY(before.differencesTo(FolderPicture::take(folder)) == differences);
}

void tst_FolderPicture::aFileThatChangedJustNowIsLookedAtTwice() {
    TestHome home;
    const Location file = home.file("place/a");
    const std::string folder = text(home.path().child("place"));
    const auto before = FolderPicture::take(folder);
    // Written again within one step of the disk's clock it may look the same, so it counts as changed once more.
    QVERIFY(before.differencesTo(FolderPicture::take(folder))
            == (std::vector<FolderPicture::Difference>{{"a", Kind::changed, false, false}}));
    QTRY_VERIFY(FolderPicture::take(folder).differencesTo(FolderPicture::take(folder)).empty());
}

void tst_FolderPicture::aFolderThatIsNotThereIsEmpty() {
    TestHome home;
    home.file("place/a");
    const std::string folder = text(home.path().child("place"));
    const auto before = settledPicture(folder);
    fs::remove_all(folder);
    QVERIFY(before.differencesTo(FolderPicture::take(folder))
            == (std::vector<FolderPicture::Difference>{{"a", Kind::vanished, false, false}}));
}

QTEST_APPLESS_MAIN(tst_FolderPicture)
#include "tst_folderpicture.moc"

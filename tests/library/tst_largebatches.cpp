// SPDX-License-Identifier: GPL-3.0-or-later
//
// Changes so large that they are applied off the main thread, and what happens meanwhile.
#include "OpenLibrary.h"
#include "library/Scanner.h"

#include <filesystem>

using namespace lumbra;
namespace fs = std::filesystem;

class LargeBatchesTest : public QObject {
    Q_OBJECT

private:
    static constexpr int many = 4000;

    TestHome m_home;
    std::unique_ptr<OpenLibrary> m_library;

    Location filled(const char* name) const {
        for (int i = 0; i < many; ++i)
            m_library->outside(name + std::string("/") + std::to_string(i) + ".png");
        return m_library->root().parent().child(std::string_view(name));
    }

    // The library holds what a walk would find now.
    bool isTrue() const {
        const AssetIndex walked = Scanner::index({m_library->at("one")}, 1);
        const AssetIndex index = (*m_library)->index();
        return index.assetsUnder(m_library->root()) == walked.assetsUnder(m_library->root());
    }

private Q_SLOTS:
    void init() { m_library = std::make_unique<OpenLibrary>(m_home); }
    void cleanup() { m_library.reset(); }

    void aFolderOfThousandsThatComesAndGoes() {
        OpenLibrary& library = *m_library;
        library.file("one/a.png");
        const Location aside = filled("aside");
        library.open();
        for (int round = 0; round < 3; ++round) {
            fs::rename(aside.view(), library.at("one/many").view());
            QTRY_COMPARE(library->index().count(), many + 1);
            QVERIFY(isTrue());
            fs::rename(library.at("one/many").view(), aside.view());
            QTRY_COMPARE(library->index().count(), 1);
        }
    }

    // Small changes overtake the large one, which must neither lose nor undo them.
    void whatHappensWhileThousandsAreTakenInIsNotLost() {
        OpenLibrary& library = *m_library;
        const Location star = library.file("one/star.png");
        const Location aside = filled("aside");
        library.open();
        const auto pass = [] { QCoreApplication::processEvents(); };
        for (int round = 0; round < 3; ++round) {
            fs::rename(aside.view(), library.at("one/many").view());
            for (int i = 0; i < 300; ++i) {
                const std::string name = std::to_string(round * 1000 + i) + ".png";
                fs::remove(library.at("one/many/" + name).view());
                library.file("one/beside-" + name);
                library->toggleStar({star});
                pass();
                QCOMPARE(library->isStarred(star), Stars::read(star).has_value());
            }
            QTRY_VERIFY(isTrue());
            fs::rename(library.at("one/many").view(), aside.view());
            pass();
        }
        QTRY_VERIFY(isTrue());
        QVERIFY(!library->index().contains(library.at("one/many/3999.png")));
    }
};

QTEST_GUILESS_MAIN(LargeBatchesTest)
#include "tst_largebatches.moc"

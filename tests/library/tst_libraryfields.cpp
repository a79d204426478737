// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/Library.h"
#include "support/TestHome.h"

#include <QSignalSpy>
#include <QtTest>

#include <map>

using namespace lumbra;

namespace {

using Change = std::function<void(Library& library)>;

Asset someAsset() {
    return {Location(QByteArray("/a/b.png")), AssetKind::image, 1, Date{2}, std::nullopt};
}

} // namespace

// What observers of the library are promised.
class LibraryFieldsTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<Library> m_library;

private Q_SLOTS:
    void init() {
        m_home = std::make_unique<TestHome>();
        m_home->file("Library/site/a.png");
        m_library = std::make_unique<Library>(m_home->path().child("Library"), true);
    }
    void cleanup() {
        m_library.reset();
        m_home.reset();
    }

    void fieldsStartAsNothingIsKnown() {
        QVERIFY(m_library->state() == LibraryState());
        QVERIFY(m_library->index().isEmpty());
        QVERIFY(m_library->indexing());
        QCOMPARE(m_library->revision(), 0);
        QVERIFY(m_library->derived() == DerivedIndex());
        QVERIFY(!m_library->pendingReveal());
        QVERIFY(m_library->place() == Place::recent());
        QVERIFY(!m_library->lastError());
        QVERIFY(!m_library->toast());
        QVERIFY(!m_library->playing());
        QVERIFY(!m_library->paletteOpen());
        QVERIFY(!m_library->onboarding());
        QCOMPARE(m_library->projects().size(), 1);
    }

    void theWalkIsUnderWayOnce() {
        QSignalSpy indexing(m_library.get(), &Library::indexingChanged);
        QTRY_VERIFY(!m_library->indexing());
        QTRY_VERIFY(m_library->derived() != DerivedIndex());
        QCOMPARE(indexing.count(), 1);
    }

    void aChangeIsToldToWhoReadThatFieldAndAnEqualValueToNobody_data() {
        QTest::addColumn<QByteArray>("signal");
        QTest::addColumn<Change>("change");
        const Toast toast{.text = QStringLiteral("Moved")};
        const auto row = [](const char* field, const Change& change) {
            QTest::newRow(field) << QByteArray(field) + "Changed" << change;
        };
        row("place", [](Library& library) { library.setPlace(Place::starred()); });
        row("pendingReveal", [](Library& library) { library.setPendingReveal(Location(QByteArray("/a"))); });
        row("lastError", [](Library& library) { library.setLastError(QStringLiteral("It failed.")); });
        row("toast", [toast](Library& library) { library.setToast(toast); });
        row("playing", [](Library& library) { library.setPlaying(PlayRequest{someAsset(), {someAsset()}}); });
        row("paletteOpen", [](Library& library) { library.setPaletteOpen(true); });
        row("onboarding", [](Library& library) { library.setOnboarding(true); });
    }

    void aChangeIsToldToWhoReadThatFieldAndAnEqualValueToNobody() {
        QFETCH(QByteArray, signal);
        QFETCH(Change, change);
        QTRY_VERIFY(m_library->derived() != DerivedIndex()); // nothing else is under way
        std::map<QByteArray, std::unique_ptr<QSignalSpy>> spies;
        const QMetaObject& meta = Library::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            if (meta.method(i).methodType() == QMetaMethod::Signal)
                spies[meta.method(i).name()] = std::make_unique<QSignalSpy>(m_library.get(), meta.method(i));
        QVERIFY(spies.contains(signal));
        change(*m_library);
        change(*m_library);
        for (const auto& [name, spy] : spies)
            QVERIFY2(spy->count() == (name == signal ? 1 : 0), name.constData());
    }

    void aRepeatedTextIsToldAsANewToast() {
        QSignalSpy told(m_library.get(), &Library::toastChanged);
        m_library->setToast(Toast{.text = QStringLiteral("Moved")});
        m_library->setToast(Toast{.text = QStringLiteral("Moved")});
        QCOMPARE(told.count(), 2);
    }

    void aChangeOfStateIsOneOfContent() {
        QTRY_VERIFY(!m_library->indexing());
        const int revision = m_library->revision();
        LibraryState state;
        state.pins.append(QStringLiteral("site"));
        QSignalSpy told(m_library.get(), &Library::stateChanged);
        m_library->setState(state);
        m_library->setState(state);
        QCOMPARE(told.count(), 1);
        QCOMPARE(m_library->revision(), revision + 1);
    }

    void reloadingProjectsIsNoChangeOfContent() {
        QTRY_VERIFY(!m_library->indexing());
        const int revision = m_library->revision();
        QSignalSpy told(m_library.get(), &Library::projectsChanged);
        m_library->reloadProjects();
        QCOMPARE(told.count(), 0); // the same ones
        m_home->folder("Library/another");
        m_library->reloadProjects();
        QCOMPARE(told.count(), 1);
        QCOMPARE(m_library->projects().size(), 2);
        QCOMPARE(m_library->revision(), revision);
    }

    void aStoredStateIsTheFirstChange() {
        QTRY_VERIFY(!m_library->indexing());
        LibraryState state;
        state.hidden.append(QStringLiteral("site"));
        m_library->setState(state);
        const Library next(m_library->root(), true);
        QVERIFY(next.state() == state);
        QCOMPARE(next.revision(), 1);
        QTRY_VERIFY(!next.indexing());
    }
};

QTEST_GUILESS_MAIN(LibraryFieldsTest)
#include "tst_libraryfields.moc"

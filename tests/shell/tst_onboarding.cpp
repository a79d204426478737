// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Config.h"
#include "shell/Onboarding.h"
#include "shell/Relaunch.h"
#include "support/TestHome.h"

#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace lumbra;

class tst_onboarding : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_home = std::make_unique<TestHome>();
        m_relaunches = 0;
    }
    void cleanup() {
        m_onboarding.reset();
        m_library.reset();
        m_home.reset();
    }

    void withoutAConfigurationTheSuggestedFolderIsOffered();
    void theConfiguredFolderIsOffered();
    void theHomeFolderIsShortened();
    void openingTheFolderInUseDoesNotRelaunch();
    void openingTheFolderInUseUnderAnotherNameDoesNotRelaunch();
    void openingAnotherFolderRecordsItAndRelaunches();
    void aFolderThatCannotBeRecordedKeepsTheSheet();
    void anotherShowingStartsFromWhatIsConfigured();
    void theNewProcessStartsOnceTheOldOneHasEnded();
    void anEndedProcessThatNobodyCollectedCountsAsEnded();

private:
    void open(const Location& root) {
        m_library = std::make_unique<Library>(root, LumbraConfig::isConfigured());
        m_library->setOnboarding(true);
        m_onboarding = std::make_unique<Onboarding>(m_library.get(), [this] { ++m_relaunches; });
    }

    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<Library> m_library;
    std::unique_ptr<Onboarding> m_onboarding;
    int m_relaunches = 0;
};

void tst_onboarding::withoutAConfigurationTheSuggestedFolderIsOffered() {
    open(LumbraConfig::library());
    QVERIFY(m_onboarding->shown());
    QCOMPARE(m_onboarding->folder(), LumbraConfig::suggestedLibrary());
}

void tst_onboarding::theConfiguredFolderIsOffered() {
    LumbraConfig::setLibrary(m_home->folder("media"));
    open(LumbraConfig::library());
    QCOMPARE(m_onboarding->folder(), m_home->path().child("media"));
}

void tst_onboarding::theHomeFolderIsShortened() {
    open(LumbraConfig::library());
    m_onboarding->choose(m_home->folder("media/agents").toString());
    QCOMPARE(m_onboarding->folderText(), QStringLiteral("~/media/agents"));
    QCOMPARE(m_onboarding->startFolder(), QStringLiteral("~/media"));
}

void tst_onboarding::openingTheFolderInUseDoesNotRelaunch() {
    open(m_home->folder("media"));
    m_onboarding->choose(m_home->path().child("media").toString());
    m_onboarding->finish();
    QVERIFY(!m_library->onboarding());
    QVERIFY(!m_onboarding->shown());
    QCOMPARE(m_relaunches, 0);
    QCOMPARE(LumbraConfig::library(), m_home->path().child("media"));
}

void tst_onboarding::openingTheFolderInUseUnderAnotherNameDoesNotRelaunch() {
    const Location media = m_home->folder("media");
    const Location link = m_home->path().child("link");
    QVERIFY(QFile::link(media.toString(), link.toString()));
    open(media.canonical());
    m_onboarding->choose(link.toString());
    m_onboarding->finish();
    QCOMPARE(m_relaunches, 0);
}

void tst_onboarding::openingAnotherFolderRecordsItAndRelaunches() {
    open(m_home->folder("media"));
    const Location other = m_home->path().child("other");
    m_onboarding->choose(other.toString());
    m_onboarding->finish();
    QCOMPARE(m_relaunches, 1);
    QVERIFY(!m_library->onboarding());
    QCOMPARE(LumbraConfig::library(), other);
    QVERIFY(other.isFolder()); // made on the way
}

void tst_onboarding::aFolderThatCannotBeRecordedKeepsTheSheet() {
    open(m_home->folder("media"));
    m_home->file("file");
    m_onboarding->choose(m_home->path().child("file").child("below").toString());
    m_onboarding->finish();
    QVERIFY(m_library->onboarding());
    QVERIFY(m_library->lastError() && !m_library->lastError()->isEmpty());
    QCOMPARE(m_relaunches, 0);
}

void tst_onboarding::anotherShowingStartsFromWhatIsConfigured() {
    open(m_home->folder("media"));
    m_onboarding->choose(m_home->folder("other").toString());
    m_library->setOnboarding(false);
    m_library->setOnboarding(true);
    QCOMPARE(m_onboarding->folder(), LumbraConfig::library());
}

void tst_onboarding::theNewProcessStartsOnceTheOldOneHasEnded() {
    const Location trace = m_home->path().child("started");
    const Location program = m_home->file("program", "#!/bin/sh\n: > \"" + trace.path() + "\"\n");
    QVERIFY(QFile::setPermissions(program.toString(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QProcess old;
    old.start(QStringLiteral("/bin/cat"), {}); // ends when its input does
    QVERIFY(old.waitForStarted());
    QVERIFY(Relaunch::startAfter(old.processId(), program.toString()));
    // Time enough for a helper that does not wait.
    QProcess pause;
    pause.start(QStringLiteral("/bin/sleep"), {QStringLiteral("0.3")});
    QVERIFY(pause.waitForFinished());
    QVERIFY(!trace.exists());
    old.closeWriteChannel();
    QVERIFY(old.waitForFinished());
    QTRY_VERIFY(trace.exists());
}

void tst_onboarding::anEndedProcessThatNobodyCollectedCountsAsEnded() {
    const Location trace = m_home->path().child("started");
    const Location program = m_home->file("program", "#!/bin/sh\n: > \"" + trace.path() + "\"\n");
    QVERIFY(QFile::setPermissions(program.toString(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    // The shell leaves its child uncollected while it reads.
    QProcess parent;
    parent.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), QStringLiteral("(exit 0) & echo $!; exec cat")});
    QVERIFY(parent.waitForReadyRead());
    const qint64 child = parent.readLine().trimmed().toLongLong();
    QVERIFY(child > 0);
    QVERIFY(Relaunch::startAfter(child, program.toString()));
    QTRY_VERIFY(trace.exists());
    parent.closeWriteChannel();
    QVERIFY(parent.waitForFinished());
}

QTEST_GUILESS_MAIN(tst_onboarding)
#include "tst_onboarding.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TemporaryFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>

using namespace lumbra;

class tst_TemporaryFolder : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void itIsItsOwnersAlone() {
        const QFileInfo folder(temporaryFolder().toString());
        QVERIFY(folder.isDir());
        constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther
                                | QFile::WriteOther | QFile::ExeOther;
        QVERIFY(!(folder.permissions() & others));
        QCOMPARE(temporaryFolder(), temporaryFolder());
    }

    void itIsMadeAgainWhenItWasTakenAway() {
        const Location before = temporaryFolder();
        QVERIFY(QDir(before.toString()).removeRecursively());
        QVERIFY(temporaryFolder().exists());
        QVERIFY(temporaryFolder() != before);
    }

    void itLiesInTheSessionsFolderAndGoesWithTheProcess() {
        const QTemporaryDir session;
        const QString made = madeWith(session.path());
        QVERIFY2(made.startsWith(session.path() + u'/'), qPrintable(made));
        QVERIFY(!QFileInfo::exists(made));
    }

    void withoutASessionItLiesWithAllOthers() {
        for (const QString& session : {QString(), QStringLiteral("/nowhere/at/all")}) {
            const QString made = madeWith(session);
            QVERIFY2(made.startsWith(QDir::tempPath() + u'/'), qPrintable(made));
        }
    }

private:
    // Where another process has made its folder, and written a file into it.
    static QString madeWith(const QString& session) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), session);
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("make")});
        process.waitForFinished();
        return QString::fromUtf8(process.readAllStandardOutput());
    }
};

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc == 2 && qstrcmp(argv[1], "make") == 0) {
        QFile file(temporaryFolder().child("file").toString());
        std::fputs(file.open(QIODevice::WriteOnly) ? temporaryFolder().path().constData() : "", stdout);
        return 0;
    }
    tst_TemporaryFolder test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_temporaryfolder.moc"

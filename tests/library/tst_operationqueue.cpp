// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/operations/OperationQueue.h"

#include <QStringList>
#include <QTest>

#include <map>

using namespace lumbra;

class OperationQueueTest : public QObject {
    Q_OBJECT

private:
    OperationQueue m_queue;
    QStringList m_begun;
    std::map<QString, OperationQueue::Done> m_unfinished;

    // An operation on the locations named by single letters.
    void add(const char* name, const char* claims) {
        QList<Location> locations;
        for (const char* letter = claims; *letter; ++letter)
            locations.append(Location(QByteArray("/") + *letter));
        m_queue.add(locations, [this, name = QString::fromLatin1(name)](const OperationQueue::Done& done) {
            m_begun.append(name);
            m_unfinished[name] = done;
        });
    }

    void end(const char* name) {
        const auto found = m_unfinished.find(QString::fromLatin1(name));
        const auto done = found->second;
        m_unfinished.erase(found);
        done();
    }

    QString begun() const { return m_begun.join(u' '); }

private Q_SLOTS:
    void init() {
        m_queue = {};
        m_begun.clear();
        m_unfinished.clear();
    }

    void oneAloneBeginsWithinTheCall() {
        add("first", "a");
        QCOMPARE(begun(), QStringLiteral("first"));
    }

    void thoseOnOneThingFollowEachOther() {
        add("1", "a");
        add("2", "a");
        add("3", "a");
        QCOMPARE(begun(), QStringLiteral("1"));
        end("1");
        QCOMPARE(begun(), QStringLiteral("1 2"));
        end("2");
        QCOMPARE(begun(), QStringLiteral("1 2 3"));
        end("3");
        add("4", "a");
        QCOMPARE(begun(), QStringLiteral("1 2 3 4"));
    }

    void othersGoOnBeside() {
        add("1", "a");
        add("2", "b");
        QCOMPARE(begun(), QStringLiteral("1 2"));
    }

    void oneOnTwoThingsWaitsForBothAndHoldsBoth() {
        add("1", "a");
        add("2", "b");
        add("3", "ab");
        add("4", "b"); // overtakes nobody
        end("2");
        QCOMPARE(begun(), QStringLiteral("1 2"));
        end("1");
        QCOMPARE(begun(), QStringLiteral("1 2 3"));
        end("3");
        QCOMPARE(begun(), QStringLiteral("1 2 3 4"));
    }

    void anOperationMayEndWithinItsCallAndGiveAnother() {
        QStringList order;
        m_queue.add({Location(QByteArray("/a"))}, [&](const OperationQueue::Done& done) {
            m_queue.add({Location(QByteArray("/a"))}, [&order](const OperationQueue::Done& innerDone) {
                order.append(QStringLiteral("inner"));
                innerDone();
            });
            order.append(QStringLiteral("outer"));
            done();
        });
        QCOMPARE(order, (QStringList{QStringLiteral("outer"), QStringLiteral("inner")}));
    }
};

QTEST_GUILESS_MAIN(OperationQueueTest)
#include "tst_operationqueue.moc"

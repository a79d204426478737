// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/reader/Queue.h"

#include <QtTest>

using namespace lumbra::reader;

class tst_Queue : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { m_cancelled.clear(); }

    void amongEqualsTheLastComesFirst() {
        Queue queue;
        for (const quint32 number : {1, 2, 3})
            queue.push(job(number));
        QCOMPARE(order(queue), (QList<quint32>{3, 2, 1}));
    }

    void theMoreUrgentComesFirstWheneverItWasAsked() {
        Queue queue;
        queue.push(job(1, 2));
        queue.push(job(2));
        queue.push(job(3, 1));
        queue.push(job(4));
        QCOMPARE(order(queue), (QList<quint32>{4, 2, 3, 1}));
    }

    void whatNobodyWaitsForIsDropped() {
        Queue queue;
        for (const quint32 number : {1, 2, 3})
            queue.push(job(number));
        m_cancelled = {3, 1};
        QCOMPARE(order(queue), (QList<quint32>{2}));
    }

    void pruningLetsGoOfWhatIsDeepDown() {
        Queue queue;
        queue.push(job(1));
        queue.push(job(2, 2));
        queue.push(job(3, 2));
        m_cancelled = {1, 2};
        queue.prune();
        QCOMPARE(queue.size(), size_t(1));
    }

private:
    Job job(quint32 number, size_t level = 0) {
        return {.request = {.number = number},
                .level = level,
                .isCancelled = [this, number] { return m_cancelled.contains(number); },
                .makesSense = [](const Found&) { return true; },
                .deliver = [](const std::optional<Found>&) {}};
    }

    static QList<quint32> order(Queue& queue) {
        QList<quint32> numbers;
        while (const auto next = queue.pop())
            numbers.append(next->request.number);
        return numbers;
    }

    QSet<quint32> m_cancelled;
};

QTEST_GUILESS_MAIN(tst_Queue)
#include "tst_queue.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/NaturalOrder.h"

#include <QTest>

using namespace lumbra;

class NaturalOrderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void namesCompareAsPeopleExpect_data() {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::addColumn<int>("order");
        const auto row = [](const char* name, const char* locale, const char* first, const char* second, int order) {
            QTest::newRow(name) << QString::fromUtf8(locale) << QString::fromUtf8(first) << QString::fromUtf8(second)
                                << order;
        };
        row("numbers by value", "en_US.UTF-8", "take 2.png", "take 10.png", -1);
        row("numbers by value in the C locale", "C", "take 2.png", "take 10.png", -1);
        row("numbers by value in the C locale of UTF-8", "C.UTF-8", "take 2.png", "take 10.png", -1);
        row("numbers by value without a locale", "", "take 2.png", "take 10.png", -1);
        row("long numbers by value", "C", "9", "100000000000000000000000000000", -1);
        row("leading zeros do not count", "C", "shot 007", "shot 7", 0);
        row("case does not count", "en_US.UTF-8", "Render.png", "render.PNG", 0);
        row("case does not count in the C locale", "POSIX", "b", "A", 1);
        row("accents do count", "en_US.UTF-8", "resume", "r\u00e9sum\u00e9", -1);
        row("an accent is a lesser difference than a letter", "C", "\u00e9a", "eb", -1);
        row("a letter of its own in Swedish", "sv_SE.UTF-8", "\u00e4", "z", 1);
        row("the same letter elsewhere", "de_DE@euro", "\u00e4", "z", -1);
        row("an unknown locale is the common order", "xx_YY.UTF-8", "take 2", "take 10", -1);
        row("equal names", "C", "a", "a", 0);
        row("nothing comes first", "C", "", "a", -1);
    }

    void namesCompareAsPeopleExpect() {
        QFETCH(QString, locale);
        QFETCH(QString, first);
        QFETCH(QString, second);
        QFETCH(int, order);
        const NaturalOrder natural(locale.toStdString());
        const auto sign = [](std::weak_ordering ordering) { return std::is_gt(ordering) - std::is_lt(ordering); };
        QCOMPARE(sign(natural.compare(first, second)), order);
        QCOMPARE(sign(natural.compare(second, first)), -order);
        const int ofKeys = natural.sortKey(first).compare(natural.sortKey(second));
        QCOMPARE((ofKeys > 0) - (ofKeys < 0), order);
    }

    void aVeryLongNameHasAWholeKey() {
        const NaturalOrder natural("C");
        const QString longName = QString(3000, u'\u4e2d');
        QVERIFY(natural.sortKey(longName) < natural.sortKey(longName + u'a'));
    }

    void sortingIsStable() {
        struct Item {
            QString name;
            int number;
        };
        QList<Item> items{{QStringLiteral("b 10"), 0}, {QStringLiteral("B 2"), 1}, {QStringLiteral("a"), 2},
                          {QStringLiteral("b 2"), 3},  {QStringLiteral("A"), 4},   {QString(600, u'\u4e2d'), 5}};
        const QList<Item> shared = items;
        NaturalOrder("C").sort(items, [](const Item& item) { return item.name; });
        QList<int> numbers;
        for (const Item& item : std::as_const(items))
            numbers.append(item.number);
        QCOMPARE(numbers, (QList<int>{2, 4, 1, 3, 0, 5}));
        QCOMPARE(shared.first().name, QStringLiteral("b 10"));
    }

    void namesMayBeGivenAsUtf8() {
        std::vector<std::string> names{"z", "\xc3\xa4", "take 10", "take 9"};
        NaturalOrder("C").sort(names, [](const std::string& name) { return std::string_view(name); });
        QCOMPARE(names, (std::vector<std::string>{"\xc3\xa4", "take 9", "take 10", "z"}));
    }
};

QTEST_GUILESS_MAIN(NaturalOrderTest)
#include "tst_naturalorder.moc"

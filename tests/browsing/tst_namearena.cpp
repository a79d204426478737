// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/palette/NameArena.h"

#include <QRandomGenerator>
#include <QTest>

using namespace lumbra;

class tst_namearena : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsTheNamesThatHoldAllWords_data();
    void findsTheNamesThatHoldAllWords();
    void namesAreComparedWithoutTheirCaseAndWithAccentsComposed_data();
    void namesAreComparedWithoutTheirCaseAndWithAccentsComposed();
    void nothingIsFoundAcrossTwoNames();
    void aWordThatNoNameCanHoldIsFoundNowhere();
    void stopsWhenItIsToldTo();
    void findsTheSameAsALookAtEachName();

private:
    static NameArena arenaOf(const std::vector<std::string>& names) {
        NameArena arena;
        for (const std::string& name : names)
            arena.add(name);
        return arena;
    }
    static QList<qsizetype> found(const NameArena& arena, const std::vector<std::string>& words) {
        QList<qsizetype> positions;
        arena.find(words, [&](size_t position) {
            positions.append(qsizetype(position));
            return true;
        });
        return positions;
    }
};

using Words = std::vector<std::string>;
using Positions = QList<qsizetype>;

void tst_namearena::findsTheNamesThatHoldAllWords_data() {
    QTest::addColumn<QString>("words");
    QTest::addColumn<Positions>("positions");
    QTest::newRow("in any order") << QStringLiteral("demo final") << Positions{1, 4};
    QTest::newRow("the other way round") << QStringLiteral("final demo") << Positions{1, 4};
    QTest::newRow("one letter") << QStringLiteral("x") << Positions{5};
    QTest::newRow("two letters") << QStringLiteral("mp") << Positions{0, 1};
    QTest::newRow("at the beginning") << QStringLiteral("final") << Positions{1, 3, 4};
    QTest::newRow("at the end") << QStringLiteral("x.md") << Positions{5};
    QTest::newRow("a word twice") << QStringLiteral("demo demo") << Positions{0, 1, 4};
    QTest::newRow("a word within another") << QStringLiteral("final-demo nal") << Positions{1};
    QTest::newRow("a whole name") << QStringLiteral("final-demo.mp4") << Positions{1};
    QTest::newRow("longer than every name")
        << QStringLiteral("final-demo.mp4 and more and more and more") << Positions{};
    QTest::newRow("one word missing everywhere") << QStringLiteral("demo zebra") << Positions{};
    QTest::newRow("words that never meet") << QStringLiteral("md mp4") << Positions{};
}

void tst_namearena::findsTheNamesThatHoldAllWords() {
    QFETCH(QString, words);
    QFETCH(Positions, positions);
    const NameArena arena =
        arenaOf({"demo.mp4", "final-demo.mp4", "a", "final.png", "Final cut of the long demo.mov", "x.md"});
    Words asked;
    for (const QString& word : words.split(u' '))
        asked.push_back(word.toStdString());
    QCOMPARE(found(arena, asked), positions);
}

void tst_namearena::namesAreComparedWithoutTheirCaseAndWithAccentsComposed_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("word");
    QTest::newRow("capital letters") << QStringLiteral("DEMO.PNG") << QStringLiteral("demo.png");
    QTest::newRow("beyond ASCII") << QStringLiteral("ÜBER.png") << QStringLiteral("über");
    QTest::newRow("accents apart in the name") << QStringLiteral("cafe\u0301.png") << QStringLiteral("café");
    QTest::newRow("accents apart in the word") << QStringLiteral("café.png") << QStringLiteral("cafe\u0301");
    QTest::newRow("Hebrew") << QStringLiteral("שלום.png") << QStringLiteral("לום");
    QTest::newRow("Chinese") << QStringLiteral("夜景照片.jpg") << QStringLiteral("景照");
    QTest::newRow("emoji") << QStringLiteral("launch 🚀.mp4") << QStringLiteral("🚀");
}

void tst_namearena::namesAreComparedWithoutTheirCaseAndWithAccentsComposed() {
    QFETCH(QString, name);
    QFETCH(QString, word);
    const NameArena arena = arenaOf({"first", name.toStdString(), "last"});
    QCOMPARE(found(arena, {NameArena::folded(word)}), Positions{1});
}

void tst_namearena::nothingIsFoundAcrossTwoNames() {
    const NameArena arena = arenaOf({"night", "fall.png"});
    QCOMPARE(found(arena, {"nightfall"}), Positions{});
    QCOMPARE(found(arena, {std::string("t\0f", 3)}), Positions{});
}

void tst_namearena::aWordThatNoNameCanHoldIsFoundNowhere() {
    const NameArena arena = arenaOf({"a", "b"});
    QCOMPARE(found(arena, {}), Positions{});
    QCOMPARE(found(arena, {std::string(1, '\0')}), Positions{});
    QCOMPARE(found(NameArena(), {"a"}), Positions{});
}

void tst_namearena::stopsWhenItIsToldTo() {
    const NameArena arena = arenaOf({"a1", "a2", "a3", "a4"});
    int visits = 0;
    arena.find({"a"}, [&](size_t) { return ++visits < 2; });
    QCOMPARE(visits, 2);
}

void tst_namearena::findsTheSameAsALookAtEachName() {
    // Short names of few letters, so that words lie at every place of a block of sixteen, and within each other.
    QRandomGenerator random(7);
    const auto text = [&](int least, int most) {
        std::string made;
        for (int length = random.bounded(least, most + 1); length > 0; --length)
            made += char('a' + random.bounded(3));
        return made;
    };
    std::vector<std::string> names;
    for (int number = 0; number < 2000; ++number)
        names.push_back(text(0, 40));
    const NameArena arena = arenaOf(names);
    for (int round = 0; round < 300; ++round) {
        Words words;
        for (int count = random.bounded(1, 4); count > 0; --count)
            words.push_back(text(1, 9));
        Positions expected;
        for (size_t position = 0; position < names.size(); ++position)
            if (std::ranges::all_of(
                    words, [&](const std::string& word) { return names[position].find(word) != std::string::npos; }))
                expected.append(qsizetype(position));
        QCOMPARE(found(arena, words), expected);
    }
}

QTEST_GUILESS_MAIN(tst_namearena)
#include "tst_namearena.moc"

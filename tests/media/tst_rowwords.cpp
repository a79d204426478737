// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/quicklook/MarkdownRows.h"
#include "media/quicklook/RowWords.h"
#include "media/quicklook/TextRows.h"

#include <QtTest>

using namespace lumbra;

class tst_RowWords : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void richTextHasItsWordsAlone_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("words");
        const auto row = [](const char* text, const char* words) {
            QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(words);
        };
        row("a <b>bold</b> <i>one</i>", "a bold one");
        row("a <a href=\"https://b.example/?c=1&amp;d=2\">link</a>", "a link");
        row("1 &lt; 2 &amp;&amp; 3 &gt; 2 &quot;yes&quot;", "1 < 2 && 3 > 2 \"yes\"");
        row("&copy; x", "© x");
        row("one<br>two", "one\ntwo");
        row("a & b; c", "a & b; c");
        row("ends with <", "ends with ");
        row("", "");
    }
    void richTextHasItsWordsAlone() {
        QFETCH(QString, text);
        QTEST(wordsOf({.text = text, .isRich = true}), "words");
    }

    void plainTextIsItself() {
        const QString text = QStringLiteral("<b>&amp;");
        QCOMPARE(wordsOf({.text = text}), text);
    }

    void linesStayLines() {
        const DocumentRows rows = textRows(QStringLiteral("one\n\ntwo\nthree"), DocumentRow::Style::body);
        QCOMPARE(wordsBetween(rows, {0, 1}, {3, 2}), QStringLiteral("ne\n\ntwo\nth"));
        QCOMPARE(wordsBetween(rows, {2, 1}, {2, 2}), QStringLiteral("w"));
        QCOMPARE(wordsBetween(rows, {2, 3}, {3, 0}), QStringLiteral("\n"));
        QCOMPARE(wordsBetween(rows, {2, 2}, {2, 2}), QString());
    }

    void aLongLineIsOneAgain() {
        const QString line(3 * longestRow, u'x');
        const DocumentRows rows = textRows(line + u'\n' + u'y', DocumentRow::Style::line);
        QCOMPARE(rows.size(), 4);
        QCOMPARE(wordsBetween(rows, {0, 0}, {3, 1}), line + QStringLiteral("\ny"));
    }

    void tabsAreCopiedAsTabs() {
        const DocumentRows rows = textRows(QStringLiteral("\tif\tx\nab\t\ty\x01z\n"), DocumentRow::Style::line);
        QCOMPARE(wordsOf(rows[0]), QStringLiteral("    if  x"));
        QCOMPARE(wordsOf(rows[1]), QStringLiteral("ab      y z"));
        QCOMPARE(wordsBetween(rows, {0, 0}, {1, 11}), QStringLiteral("\tif\tx\nab\t\ty z"));
        QCOMPARE(wordsBetween(rows, {0, 4}, {0, 6}), QStringLiteral("if"));
        QCOMPARE(wordsBetween(rows, {0, 2}, {0, 9}), QStringLiteral("\tif\tx")); // of the first tab a part
        QCOMPARE(wordsBetween(rows, {0, 5}, {0, 7}), QStringLiteral("f\t"));
        QCOMPARE(wordsBetween(rows, {0, 2}, {0, 2}), QString());
        QCOMPARE(wordsBetween(rows, {1, 3}, {1, 9}), QStringLiteral("\t\ty"));
    }

    void tabsOfCodeAreCopiedAsTabs() {
        const DocumentRows rows =
            markdownRows(QStringLiteral("```\nall:\n  cc\ta.c\nab\tc\n```\n\n```\nplain  one\n```\n"), {});
        QCOMPARE(rows.size(), 2);
        QCOMPARE(wordsOf(rows[0]), QStringLiteral("all:\n  cc    a.c\nab  c"));
        QCOMPARE(wordsBetween(rows, {0, 0}, {1, 10}), QStringLiteral("all:\n  cc\ta.c\nab\tc\n\nplain  one"));
        QCOMPARE(wordsBetween(rows, {0, 7}, {0, 14}), QStringLiteral("cc\ta"));
    }

    void tabsThatCodeBeginsWithAreCopiedAsTabs_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("copied");
        const auto row = [](const char* name, const char* text, const char* shown, const char* copied) {
            QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(shown) << QString::fromUtf8(copied);
        };
        row("fenced", "```\nall:\n\tcc a.c\n\t\tld\n```", "all:\n    cc a.c\n        ld", "all:\n\tcc a.c\n\t\tld");
        row("its first line", "```\n\tcc a.c\n```", "    cc a.c", "\tcc a.c");
        row("blanks before a tab", "```\n  \tcc\n```", "    cc", "  \tcc");
        row("blanks alone", "```\n    cc\n```", "    cc", "    cc");
        row("indented by a tab", "\tif\n\t\tx\n", "if\n    x", "if\n\tx");
        row("indented by blanks", "    if\n    \tx\n", "if\n    x", "if\n\tx");
        row("a tab that is the block's in part", "  ```\n\tx\n  ```\n", "  x", "  x");
        row("of a quote", "> ```\n> \tx\n> ```\n", "  x", "  x");
        row("of an item", "- a\n\n    ```\n    if\n    \tx\n    ```\n", "a\n\nif\n    x", "a\n\nif\n\tx");
    }
    void tabsThatCodeBeginsWithAreCopiedAsTabs() {
        QFETCH(QString, text);
        QFETCH(QString, shown);
        const DocumentRows rows = markdownRows(text, {});
        QStringList words;
        for (const DocumentRow& row : rows)
            words.append(wordsOf(row));
        QCOMPARE(words.join(QStringLiteral("\n\n")), shown);
        const int last = int(rows.size()) - 1;
        QTEST(wordsBetween(rows, {0, 0}, {last, lengthOf(rows[last])}), "copied");
    }

    void tabsOfALongLineStayInIt() {
        const QString line = QStringLiteral("a\tbc\t").repeated(longestRow);
        const DocumentRows rows = textRows(line, DocumentRow::Style::line);
        QVERIFY(rows.size() > 1);
        const int last = int(rows.size()) - 1;
        QCOMPARE(wordsBetween(rows, {0, 0}, {last, lengthOf(rows[last])}), line);
    }

    void paragraphsArePartedByALineAndItemsAreNot() {
        const DocumentRows rows = markdownRows(QStringLiteral("# a\n\n**b** c\n\n- d\n- e\n"), {});
        QCOMPARE(wordsBetween(rows, {0, 0}, {3, 1}), QStringLiteral("a\n\nb c\n\nd\ne"));
    }

    void aRowOfATableIsCopiedWholeWithItsCellsPartedByTabs() {
        const DocumentRows rows = markdownRows(QStringLiteral("| a | b |\n|---|---|\n| 1 | *2* |"), {});
        QCOMPARE(lengthOf(rows[1]), 1);
        QCOMPARE(wordsBetween(rows, {0, 0}, {1, 1}), QStringLiteral("a\tb\n1\t2"));
        QCOMPARE(wordsBetween(rows, {0, 1}, {1, 0}), QStringLiteral("\n"));
    }

    void spotsBeyondTheTextAreItsEnds() {
        const DocumentRows rows = textRows(QStringLiteral("one\ntwo"), DocumentRow::Style::body);
        QCOMPARE(wordsBetween(rows, {-3, 0}, {9, 9}), QStringLiteral("one\ntwo"));
        QCOMPARE(wordsBetween({}, {0, 0}, {3, 3}), QString());
    }

    void aWordIsFoundFromWithin_data() {
        QTest::addColumn<QString>("words");
        QTest::addColumn<int>("at");
        QTest::addColumn<QString>("word");
        QTest::newRow("at its beginning") << QStringLiteral("one two three") << 4 << QStringLiteral("two");
        QTest::newRow("within") << QStringLiteral("one two three") << 5 << QStringLiteral("two");
        QTest::newRow("a blank") << QStringLiteral("one two three") << 3 << QStringLiteral(" ");
        QTest::newRow("behind the last") << QStringLiteral("one two three") << 13 << QStringLiteral("three");
        QTest::newRow("beyond it") << QStringLiteral("one") << 99 << QStringLiteral("one");
        QTest::newRow("in nothing") << QString() << 0 << QString();
    }
    void aWordIsFoundFromWithin() {
        QFETCH(QString, words);
        QFETCH(int, at);
        const auto [begin, end] = wordAt(words, at);
        QTEST(words.mid(begin, end - begin), "word");
    }
};

QTEST_GUILESS_MAIN(tst_RowWords)
#include "tst_rowwords.moc"

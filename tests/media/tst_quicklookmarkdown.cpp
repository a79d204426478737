// Markdown as rows: what each piece of it becomes, and that nothing of it reaches out.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/quicklook/MarkdownRows.h"
#include "support/Strings.h"
#include "support/TestHome.h"

#include <QElapsedTimer>
#include <QMetaEnum>
#include <QtTest>

#include <unistd.h>

using namespace lumbra;

namespace {

// "title: words", "body 1 •: words" for an item, "picture: name".
QStringList told(const DocumentRows& rows) {
    QStringList lines;
    for (const DocumentRow& row : rows) {
        QString line = QString::fromLatin1(QMetaEnum::fromType<DocumentRow::Style>().valueToKey(int(row.style)));
        if (row.indent > 0)
            line += u' ' + QString::number(row.indent);
        if (!row.mark.isEmpty())
            line += u' ' + row.mark;
        if (!row.picture.isEmpty())
            line += u' ' + row.picture.name();
        lines.append(line + QStringLiteral(": ") + (row.cells.isEmpty() ? row.text : row.cells.join(u'|')));
    }
    return lines;
}

} // namespace

class tst_QuickLookMarkdown : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyPieceIsARow_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("rows");
        const auto row = [](const char* label, const char* text, std::initializer_list<const char*> rows) {
            QTest::newRow(label) << QString::fromUtf8(text) << strings(rows);
        };
        row("paragraphs", "one\ntwo\n\nthree", {"body: one two", "body: three"});
        row("headings", "# a\n## b\n### c\n###### d", {"title: a", "heading: b", "subheading: c", "subheading: d"});
        row("marks", "a *b* **c** `d` ~~e~~", {"body: a <i>b</i> <b>c</b> <code>d</code> <s>e</s>"});
        row("a link", "[a](https://b.example/?c=1&d=2)", {"body: <a href=\"https://b.example/?c=1&amp;d=2\">a</a>"});
        row("a bare link", "https://b.example", {"body: <a href=\"https://b.example\">https://b.example</a>"});
        row("a list", "- a\n- b\n  - c\n- d", {"body 1 •: a", "body 1 •: b", "body 2 •: c", "body 1 •: d"});
        row("a list with room", "- a\n\n- b\n\n  c", {"body 1 •: a", "body 1 •: b", "body 1: c"});
        row("numbers", "3. a\n4. b", {"body 1 3.: a", "body 1 4.: b"});
        row("boxes", "- [ ] a\n- [x] b", {"body 1 ☐: a", "body 1 ☑: b"});
        row("an empty item", "-\n- b", {"body 1 •: ", "body 1 •: b"});
        row("a quote", "> a\n> b", {"quote: a b"});
        row("a quote in a quote", "> a\n>> b", {"quote: a", "quote 1: b"});
        row("code", "```js\nlet a = 1\n  b < c\n```", {"code: let a = 1\n  b < c"});
        row("code by its indent", "    a\n    b", {"code: a\nb"});
        row("a rule", "a\n\n---\n\nb", {"body: a", "rule: ", "body: b"});
        row("a table", "| a | b |\n|---|---|\n| 1 | *2* |", {"tableHead: a|b", "tableRow: 1|<i>2</i>"});
        row("blanks", "a   b\tc `d  e`", {"body: a b c <code>d  e</code>"});
        row("a hard line end", "a  \nb", {"body: a<br>b"});
        row("an entity", "a &amp; b &copy;", {"body: a &amp; b &copy;"});
        row("a head for programs", "---\ntitle: x\n---\n# a", {"title: a"});
        row("nothing", "", {});
    }
    void everyListStandsApartFromTheOneBefore() {
        const DocumentRows rows = markdownRows(QStringLiteral("- a\n- b\n  - c\n\n1. d\n2. e"), m_home.path());
        QList<bool> tight;
        for (const DocumentRow& row : rows)
            tight.append(row.isTight);
        QCOMPARE(tight, (QList<bool>{false, true, true, false, true}));
    }

    void theCellsOfATableStandWhereItSays() {
        const DocumentRows rows =
            markdownRows(QStringLiteral("| a | b | c |\n|---|--:|:-:|\n| 1 | 2 | 3 |"), m_home.path());
        QCOMPARE(rows.size(), 2);
        for (const DocumentRow& row : rows)
            QCOMPARE(row.alignments, (QList<int>{Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter}));
    }

    void everyPieceIsARow() {
        QFETCH(QString, text);
        QTEST(told(markdownRows(text, m_home.path())), "rows");
    }

    void markupIsDroppedButForItsWords_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("rows");
        const auto row = [](const char* label, const char* text, std::initializer_list<const char*> rows) {
            QTest::newRow(label) << QString::fromUtf8(text) << strings(rows);
        };
        row("a block", "<div align=\"center\"><img src=\"http://a.example/b.png\"> words</div>", {"body: words"});
        row("a block without words", "<p><img src='file:///etc/passwd'></p>", {});
        row("within a line", "a <img src=x onerror=alert(1)> b <b>c</b>", {"body: a  b c"});
        row("a line end", "a<br/>b", {"body: a<br>b"});
        row("what only looks like it", "1 < 2 & 3 > 2", {"body: 1 &lt; 2 &amp; 3 &gt; 2"});
        row("in a link's address", "[a](<x\"onclick=\"y>)", {"body: <a href=\"x&quot;onclick=&quot;y\">a</a>"});
        row("in code", "`<img src=x>`", {"body: <code>&lt;img src=x&gt;</code>"});
    }
    void markupIsDroppedButForItsWords() {
        QFETCH(QString, text);
        QTEST(told(markdownRows(text, m_home.path())), "rows");
    }

    void onlyPicturesInTheFoldersOwnTreeAreShown_data() {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("isShown");
        QTest::newRow("beside it") << QStringLiteral("a.png") << true;
        QTest::newRow("below it") << QStringLiteral("below/b%20c.png") << true;
        QTest::newRow("beside it, by a dot") << QStringLiteral("./a.png") << true;
        QTest::newRow("through its own folder") << QStringLiteral("below/../a.png") << true;
        QTest::newRow("of the web") << QStringLiteral("https://a.example/a.png") << false;
        QTest::newRow("of the web, without a scheme") << QStringLiteral("//a.example/a.png") << false;
        QTest::newRow("by its path") << m_home.path().child("docs/a.png").toString() << false;
        QTest::newRow("by its address") << m_home.path().child("docs/a.png").toUrl().toString() << false;
        QTest::newRow("above it") << QStringLiteral("../out.png") << false;
        QTest::newRow("above it, in disguise") << QStringLiteral("%2e%2e/out.png") << false;
        QTest::newRow("behind a link") << QStringLiteral("link.png") << false;
        QTest::newRow("below a linked folder") << QStringLiteral("away/out.png") << false;
        QTest::newRow("missing") << QStringLiteral("missing.png") << false;
        QTest::newRow("no picture") << QStringLiteral("text.txt") << false;
        QTest::newRow("with a question") << QStringLiteral("a.png?b") << false;
        QTest::newRow("nothing") << QStringLiteral("") << false;
    }
    void onlyPicturesInTheFoldersOwnTreeAreShown() {
        QFETCH(QString, address);
        QFETCH(bool, isShown);
        m_home.file("out.png");
        m_home.file("docs/a.png");
        m_home.file("docs/below/b c.png");
        m_home.file("docs/text.txt");
        const Location folder = m_home.path().child("docs");
        [[maybe_unused]] const int linked = ::symlink("../out.png", folder.child("link.png").path().constData());
        [[maybe_unused]] const int folderLinked = ::symlink("..", folder.child("away").path().constData());
        const DocumentRows rows = markdownRows(QStringLiteral("![what it shows](<%1>)").arg(address), folder);
        QCOMPARE(rows.size(), 1);
        QVERIFY(rows[0].text.contains(QStringLiteral("what it shows")));
        QCOMPARE(rows[0].style == DocumentRow::Style::picture, isShown);
        QCOMPARE(rows[0].picture.isEmpty(), !isShown);
    }

    void aPictureAmongWordsStandsBetweenThem() {
        m_home.file("docs/a.png");
        const Location folder = m_home.path().child("docs");
        QCOMPARE(told(markdownRows(QStringLiteral("before ![p](a.png) **after**"), folder)),
                 strings({"body: before", "picture a.png: p", "body: <b>after</b>"}));
        QCOMPARE(told(markdownRows(QStringLiteral("[![p](a.png)](https://a.example)"), folder)),
                 strings({"picture a.png: p"}));
        QCOMPARE(told(markdownRows(QStringLiteral("| a |\n|---|\n| ![p](a.png) |"), folder)),
                 strings({"tableHead: a", "tableRow: p"}));
    }

    void aParagraphWithoutAnEndIsSeveralRows() {
        const DocumentRows rows =
            markdownRows(QStringLiteral("**") + QStringLiteral("word ").repeated(3000) + QStringLiteral("end**"), {});
        QVERIFY(rows.size() >= 1);
        QString all;
        for (const DocumentRow& row : rows) {
            QCOMPARE(row.text.count(QStringLiteral("<b>")), row.text.count(QStringLiteral("</b>")));
            all += row.text;
        }
        QCOMPARE(all.count(QStringLiteral("word")), 3000);
    }

    void codeWithoutAnEndIsSeveralRows() {
        const DocumentRows rows = markdownRows(QStringLiteral("```\n") + QStringLiteral("line\n").repeated(950), {});
        QCOMPARE(rows.size(), 10);
        QVERIFY(!rows[0].isTight && rows[1].isTight);
    }

    // Each of these has made parsers slow, or their stack overflow.
    void hostileTextsAreReadQuickly_data() {
        QTest::addColumn<QString>("text");
        const auto row = [](const char* label, const char* piece, int times) {
            QTest::newRow(label) << QString::fromLatin1(piece).repeated(times);
        };
        row("quotes in quotes", "> ", 50'000);
        row("lists in lists", "- ", 50'000);
        row("open brackets", "[", 100'000);
        row("open pictures", "![a](", 50'000);
        row("stars", "*a ", 100'000);
        row("underscores", "__a", 100'000);
        row("backticks", "`a``", 100'000);
        row("open tags", "<a ", 100'000);
        row("entities", "&a", 100'000);
        row("a wide table", "a|", 50'000);
    }
    void hostileTextsAreReadQuickly() {
        QFETCH(QString, text);
        QElapsedTimer timer;
        timer.start();
        const DocumentRows rows = markdownRows(text, {});
        QVERIFY2(timer.elapsed() < 5000, QByteArray::number(timer.elapsed()));
        QVERIFY(rows.size() <= mostRows);
    }

private:
    TestHome m_home;
};

QTEST_GUILESS_MAIN(tst_QuickLookMarkdown)
#include "tst_quicklookmarkdown.moc"

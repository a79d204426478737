// What is read of texts before it is drawn, and that a page is drawn of it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureFiles.h"
#include "reader/pictures/RichText.h"
#include "reader/pictures/WebPage.h"

#include <QtTest>

using namespace lumbra;
using reader::Paragraph;
using reader::Paragraphs;

namespace {

QStringList textsOf(const Paragraphs& paragraphs) {
    QStringList texts;
    for (const Paragraph& paragraph : paragraphs)
        texts.append(paragraph.text);
    return texts;
}

} // namespace

class tst_TextPictures : public QObject, private PictureFiles {
    Q_OBJECT

private Q_SLOTS:
    void aPageOfTheWebIsItsWords_data() {
        QTest::addColumn<QString>("markup");
        QTest::addColumn<QStringList>("texts");
        const auto row = [](const char* name, const char* markup, const QStringList& texts) {
            QTest::newRow(name) << QString::fromUtf8(markup) << texts;
        };
        row("paragraphs", "<p>one</p><p>two", {QStringLiteral("one"), QStringLiteral("two")});
        row("marks inside a line", "<p>a <b>bold</b> <i>word</i></p>", {QStringLiteral("a bold word")});
        row("white space", "<p>\n  a\n  b\n</p>", {QStringLiteral("a b")});
        row("scripts and styles", "<script>alert('<p>x')</script>a<style>p{}</style>b", {QStringLiteral("ab")});
        row("an open script", "a<script>b", {QStringLiteral("a")});
        row("comments", "a<!-- <p>x</p> -->b", {QStringLiteral("ab")});
        row("an open comment", "a<!-- b", {QStringLiteral("a")});
        row("characters by name", "<p>caf&eacute; &lt;3 &amp; &#8364;</p>", {QStringLiteral("café <3 & €")});
        row("comparisons", "<p>1 < 2 and 3 > 2</p>", {QStringLiteral("1 < 2 and 3 > 2")});
        row("capitals", "<H1>One</H1><P>two</P>", {QStringLiteral("One"), QStringLiteral("two")});
        row("attributes", "<p class='a' title=\"b\">one</p>", {QStringLiteral("one")});
        row("an open tag", "one<p class='", {QStringLiteral("one")});
        row("a document's head", "<!DOCTYPE html><html><head><title>t</title></head><body>one</body></html>",
            {QStringLiteral("one")});
    }

    void aPageOfTheWebIsItsWords() {
        QFETCH(QString, markup);
        QTEST(textsOf(reader::webPageText(markup)), "texts");
    }

    void headingsAndItemsOfAPageKeepTheirStyle() {
        const Paragraphs page = reader::webPageText(QStringLiteral("<h1>a</h1><h2>b</h2><ul><li>c</li></ul><p>d</p>"));
        QCOMPARE(page.size(), 4);
        QCOMPARE(page[0].style, Paragraph::Style::title);
        QCOMPARE(page[1].style, Paragraph::Style::heading);
        QCOMPARE(page[2].style, Paragraph::Style::item);
        QCOMPARE(page[3].style, Paragraph::Style::body);
    }

    void richTextIsItsWords_data() {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QStringList>("texts");
        const auto row = [](const char* name, const char* inside, const QStringList& texts) {
            QTest::newRow(name) << QByteArray("{\\rtf1\\ansi ") + inside + "}" << texts;
        };
        row("paragraphs", "one\\par two\\par", {QStringLiteral("one"), QStringLiteral("two")});
        row("the last without an end", "one", {QStringLiteral("one")});
        row("groups", "{\\b one} {\\i two}", {QStringLiteral("one two")});
        row("fonts and colours", "{\\fonttbl{\\f0 Arial;}}{\\colortbl;\\red0;}one", {QStringLiteral("one")});
        row("what is for newer readers", "{\\*\\generator x;}one", {QStringLiteral("one")});
        row("characters of the code page", "\\'e9\\'80", {QStringLiteral("é€")});
        row("characters and what stands in for them", "\\u8364?\\uc0\\u233 x", {QStringLiteral("€éx")});
        row("signs by name", "a\\emdash b\\~c", {QStringLiteral("a—b c")});
        row("braces", "\\{a\\}\\\\", {QStringLiteral("{a}\\")});
        row("pictures", "{\\pict\\pngblip 89504e47}one", {QStringLiteral("one")});
        row("bytes", "\\bin3 }}}one", {QStringLiteral("one")});
    }

    void richTextIsItsWords() {
        QFETCH(QByteArray, document);
        QTEST(textsOf(reader::richText(document)), "texts");
    }

    void largeLettersOfRichTextAreHeadings() {
        const Paragraphs page = reader::richText("{\\rtf1{\\fs40 a\\par}{\\fs30 b\\par}\\fs24 c}");
        QCOMPARE(page.size(), 3);
        QCOMPARE(page[0].style, Paragraph::Style::title);
        QCOMPARE(page[1].style, Paragraph::Style::heading);
        QCOMPARE(page[2].style, Paragraph::Style::body);
    }

    void aPageIsPaperOfThreeByFour() {
        write("a.txt", "Some words.\n");
        const QImage image = thumbnail("a.txt");
        QCOMPARE(image.size(), QSize(180, 240));
        QCOMPARE(image.format(), QImage::Format_RGB32);
        QCOMPARE(at(image, 0.02, 0.02), QColor(Qt::white));
        QCOMPARE(at(image, 0.5, 0.9), QColor(Qt::white));
    }

    void allEncodingsDrawTheSame() {
        const QString text = QStringLiteral("Grüße\n");
        write("a.txt", text.toUtf8());
        const QImage expected = thumbnail("a.txt");
        write("b.txt", "\xef\xbb\xbf" + text.toUtf8());
        write("c.txt", text.toLatin1());
        write("d.txt", QByteArray("\xff\xfe")
                           + QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * qsizetype(2)));
        for (const char* name : {"b.txt", "c.txt", "d.txt"})
            QVERIFY2(thumbnail(name) == expected, name);
    }

    void separatorsOfTablesAreFound() {
        write("comma.csv", "a,b\n1,2\n");
        const QImage expected = thumbnail("comma.csv");
        write("semicolon.csv", "a;b\n1;2\n");
        write("tab.csv", "a\tb\n1\t2\n");
        write("quoted.csv", "\"a\",\"b\"\n\"1\",2\n");
        for (const char* name : {"semicolon.csv", "tab.csv", "quoted.csv"})
            QVERIFY2(thumbnail(name) == expected, name);
    }

    void whatIsBelowThePageIsNotDrawn() {
        const QByteArray page = QByteArray("word\n").repeated(60);
        write("a.txt", page);
        write("b.txt", page + QByteArray("other\n").repeated(10'000));
        QVERIFY(thumbnail("a.txt") == thumbnail("b.txt"));
    }
};

QTEST_MAIN(tst_TextPictures)
#include "tst_textpictures.moc"

// How texts, subtitles and tables are cut into rows.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/quicklook/DocumentContent.h"
#include "media/quicklook/DocumentTable.h"
#include "media/quicklook/DocumentText.h"
#include "media/quicklook/TableCells.h"
#include "media/quicklook/TextHead.h"
#include "media/quicklook/TextRows.h"
#include "support/Strings.h"
#include "support/TestHome.h"

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QtTest>

#include <sys/stat.h>

using namespace lumbra;

namespace {

QStringList textsOf(const DocumentRows& rows) {
    QStringList texts;
    for (const DocumentRow& row : rows)
        texts.append(row.text);
    return texts;
}

DocumentRows linesOf(const QString& text) {
    return textRows(text, DocumentRow::Style::body);
}

} // namespace

class tst_QuickLookRows : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theKindFollowsTheName_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<DocumentKind>("kind");
        QTest::addColumn<QString>("words");
        const auto row = [](const char* name, DocumentKind kind, const char* words) {
            QTest::newRow(name) << QString::fromLatin1(name) << kind << QString::fromLatin1(words);
        };
        row("a.pdf", DocumentKind::pages, "PDF document");
        row("a.PDF", DocumentKind::pages, "PDF document");
        row("a.txt", DocumentKind::text, "Plain text");
        row("a.md", DocumentKind::markdown, "Markdown text");
        row("a.csv", DocumentKind::table, "Table of comma-separated values");
        row("a.srt", DocumentKind::subtitles, "Subtitles");
        row("a.vtt", DocumentKind::subtitles, "Subtitles");
        row("a.html", DocumentKind::webPage, "Web page");
        row("a.docx", DocumentKind::other, "Word document");
        row("a.xyz", DocumentKind::other, "XYZ file");
        row("a", DocumentKind::other, "File");
    }
    void theKindFollowsTheName() {
        QFETCH(QString, name);
        const Location file = m_home.path().child(name);
        QTEST(documentKindOf(file), "kind");
        QTEST(documentKindInWords(file), "words");
    }

    void aSmallFileIsReadWhole() {
        const auto head = TextHead::read(m_home.file("small.txt", "one\r\ntwo"), 1000);
        QVERIFY(head);
        QCOMPARE(head->text, QStringLiteral("one\ntwo"));
        QCOMPARE(head->size, 8);
        QVERIFY(head->isWhole);
    }

    void ofALargeFileTheBeginningIsReadAndNoLineInHalf() {
        const auto head = TextHead::read(m_home.file("large.txt", "first\nsecond\nthird\n"), 15);
        QVERIFY(head);
        QCOMPARE(head->text, QStringLiteral("first\nsecond\n"));
        QVERIFY(!head->isWhole);
    }

    void oneLineWithoutAnEndIsCutWhereTheReadingEnds() {
        const auto head = TextHead::read(m_home.file("line.txt", QByteArray(100, 'a')), 10);
        QCOMPARE(head->text.size(), 10);
    }

    void anEmptyFileIsAnEmptyText() {
        const auto head = TextHead::read(m_home.file("empty.txt", ""), 10);
        QVERIFY(head);
        QVERIFY(head->text.isEmpty());
        QVERIFY(head->isWhole);
    }

    void whatIsNoFileHasNoText() {
        QVERIFY(!TextHead::read(m_home.path().child("missing"), 10));
        QVERIFY(!TextHead::read(m_home.path(), 10));
        const Location pipe = m_home.path().child("pipe.txt");
        QCOMPARE(::mkfifo(pipe.path().constData(), 0600), 0);
        QVERIFY(!TextHead::read(pipe, 10)); // and returns
    }

    void aFileOfTwoHundredMegabytesOpensAtOnce() {
        const Location file =
            m_home.file("huge.log", QByteArray("A line of a log that goes on and on\n").repeated(1000));
        QFile huge(file.toString());
        QVERIFY(huge.resize(200'000'000)); // zeros behind
        QElapsedTimer timer;
        timer.start();
        const auto content = DocumentContent::read(file, DocumentKind::source);
        QVERIFY2(timer.elapsed() < 3000, QByteArray::number(timer.elapsed()));
        QVERIFY(content);
        QCOMPARE(content->rows.first().text, QStringLiteral("A line of a log that goes on and on"));
        QCOMPARE(content->notice, QStringLiteral("This is the beginning of a file of 200 MB."));
    }

    void everyLineIsARow() {
        QCOMPARE(textsOf(linesOf(QStringLiteral("one\n\ntwo\n\n\n"))), strings({"one", "", "two"}));
        QVERIFY(linesOf(QStringLiteral("\n\n")).isEmpty());
    }

    void aLongLineIsSeveralRows() {
        const QString word = QStringLiteral("word ");
        const DocumentRows rows = linesOf(word.repeated(1000) + QStringLiteral("\nnext"));
        QCOMPARE(rows.size(), 4);
        QVERIFY(rows[0].text.endsWith(word));
        QVERIFY(!rows[0].isTight && rows[1].isTight && rows[2].isTight && !rows[3].isTight);
        QCOMPARE(textsOf(rows).mid(0, 3).join(QString()), word.repeated(1000));
    }

    void noCharacterIsCutInHalf() {
        const QString pair = QString::fromUcs4(U"\U0001F600");
        for (const DocumentRow& row : linesOf(u'a' + pair.repeated(3000)))
            QVERIFY(!row.text.front().isLowSurrogate() && !row.text.back().isHighSurrogate());
    }

    void endlessLinesEnd() { QCOMPARE(linesOf(QStringLiteral("a\n").repeated(mostRows + 10)).size(), mostRows); }

    void whatHasNoShapeIsBlank() {
        QCOMPARE(printableText(QStringLiteral("a\tb")), QStringLiteral("a   b"));
        QCOMPARE(printableText(QStringLiteral("abcd\te")), QStringLiteral("abcd    e"));
        QCOMPARE(printableText(QStringLiteral("a\u0000\u001b[31mb")), QStringLiteral("a  [31mb"));
    }

    void subtitlesAreTheirCues_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<QStringList>("marks");
        QTest::newRow("numbered") << QStringLiteral("1\n00:00:01,500 --> 00:00:03,000\nHello\n\n2\n00:00:04,000 --> "
                                                    "00:00:05,000\nTwo\nlines\n")
                                  << strings({"Hello", "Two\nlines"}) << strings({"00:00:01", "00:00:04"});
        QTest::newRow("of the web") << QStringLiteral(
            "WEBVTT - a title\n\nNOTE a note\n\nintro\n00:01.000 --> 00:02.000 "
            "align:left\n<v Ann>Hi <i>there</i>\n")
                                    << strings({"Hi there"}) << strings({"00:01"});
        QTest::newRow("with marks of another player")
            << QStringLiteral("1\n00:00:01,000 --> 00:00:02,000\n{\\an8}Above\n") << strings({"Above"})
            << strings({"00:00:01"});
        QTest::newRow("without a blank between") << QStringLiteral("1\n0:01 --> 0:02\na\n2\n0:03 --> 0:04\nb\n")
                                                 << strings({"a", "b"}) << strings({"0:01", "0:03"});
        QTest::newRow("words alone") << QStringLiteral("no times\n") << QStringList() << QStringList();
    }
    void subtitlesAreTheirCues() {
        QFETCH(QString, text);
        const DocumentRows rows = subtitleRows(text);
        QTEST(textsOf(rows), "texts");
        QStringList marks;
        for (const DocumentRow& row : rows)
            marks.append(row.mark);
        QTEST(marks, "marks");
    }

    void aTableIsItsCells_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QList<QStringList>>("rows");
        using Cells = std::initializer_list<const char*>;
        const auto row = [](const char* label, const char* text, std::initializer_list<Cells> cells) {
            QList<QStringList> rows;
            for (const Cells& texts : cells)
                rows.append(strings(texts));
            QTest::newRow(label) << QString::fromUtf8(text) << rows;
        };
        row("plain", "a,b\n1,2\n", {{"a", "b"}, {"1", "2"}});
        row("no line end at the end", "a,b\n1,2", {{"a", "b"}, {"1", "2"}});
        row("semicolons", "a;b\n1,5;2", {{"a", "b"}, {"1,5", "2"}});
        row("tabs", "a\tb\n1\t2", {{"a", "b"}, {"1", "2"}});
        row("a separator in quotes", "a,b\n\"1,2\",3", {{"a", "b"}, {"1,2", "3"}});
        row("quotes in quotes", "a\n\"say \"\"hi\"\"\"", {{"a"}, {"say \"hi\""}});
        row("a line end in quotes", "a,b\n\"1\n2\",3", {{"a", "b"}, {"1 2", "3"}});
        row("separators in a quoted head", "\"a;b;c\",d\n1,2", {{"a;b;c", "d"}, {"1", "2"}});
        row("a quote that never ends", "a,b\n\"1,2\n3,4", {{"a", "b"}, {"1,2 3,4"}});
        row("empty rows", "a,b\n\n,\n1,2", {{"a", "b"}, {"1", "2"}});
        row("rows of different lengths", "a,b,c\n1\n1,2,3,4", {{"a", "b", "c"}, {"1"}, {"1", "2", "3", "4"}});
        row("nothing", "", {});
    }
    void aTableIsItsCells() {
        QFETCH(QString, text);
        QTEST(TableCells::of(text).rows, "rows");
    }

    void anEndlessTableEnds() {
        const TableCells table = TableCells::of(QStringLiteral("a,b\n").repeated(TableCells::mostRows + 5));
        QCOMPARE(table.rows.size(), TableCells::mostRows);
        QVERIFY(!table.isWhole);
        QVERIFY(TableCells::of(QStringLiteral("a,b\n").repeated(5)).isWhole);
        QCOMPARE(TableCells::of(QString(1000, u',')).rows.size(), 0);
        QCOMPARE(TableCells::of(QString(1000, u',') + u'x' + QStringLiteral("\ny")).rows.size(), 1);
        QCOMPARE(TableCells::of(QStringLiteral("a,") + QString(5000, u'b')).rows[0][1].size(), TableCells::longestCell);
    }

    void aTableForViewsHasItsHeadApart() {
        DocumentTable table;
        const QAbstractItemModelTester tester(&table);
        table.setRows({strings({"name", "price"}), strings({"a long name", "1.50"}), strings({"b", "$20", "more"})});
        QCOMPARE(table.head(), strings({"name", "price"}));
        QCOMPARE(table.rowCount(), 2);
        QCOMPARE(table.columnCount(), 3);
        QCOMPARE(table.data(table.index(0, 1), Qt::DisplayRole).toString(), QStringLiteral("1.50"));
        QCOMPARE(table.data(table.index(0, 2), Qt::DisplayRole).toString(), QString());
        QCOMPARE(table.charactersOf(0), 11);
        QVERIFY(!table.isNumeric(0) && table.isNumeric(1) && !table.isNumeric(2));
    }

    void numbersAreTold_data() {
        QTest::addColumn<QString>("cell");
        QTest::addColumn<bool>("isNumber");
        for (const char* cell : {"1", "-1.5", "1,000,000", "$20", "15 %", "3 €", "+4"})
            QTest::newRow(cell) << QString::fromUtf8(cell) << true;
        for (const char* cell : {"2026-11-01", "a1", "1a", "10:30", "-", "1.2.3-4", "%"})
            QTest::newRow(cell) << QString::fromUtf8(cell) << false;
    }
    void numbersAreTold() {
        QFETCH(QString, cell);
        DocumentTable table;
        table.setRows({{QStringLiteral("head")}, {cell}});
        QTEST(table.isNumeric(0), "isNumber");
    }

    void cellsThatChangeAreNoOtherTable() {
        DocumentTable table;
        table.setRows({strings({"a"}), strings({"1"}), strings({"2"})});
        const QSignalSpy reset(&table, &QAbstractItemModel::modelReset);
        const QSignalSpy changed(&table, &QAbstractItemModel::dataChanged);
        table.setRows({strings({"a"}), strings({"1"}), strings({"3"})});
        QCOMPARE(changed.size(), 1);
        QCOMPARE(reset.size(), 0);
        table.setRows({strings({"a"}), strings({"1"}), strings({"3"})});
        QCOMPARE(changed.size(), 1);
        table.setRows({strings({"a"}), strings({"1"})});
        QCOMPARE(reset.size(), 1);
    }

    // What a view keeps: the rows that were there before and are there still.
    void aTextThatGrowsChangesAtItsEnd_data() {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("changes");
        QTest::newRow("grows") << "a\nb"
                               << "a\nb\nc\nd"
                               << "+2-3";
        QTest::newRow("shrinks") << "a\nb\nc"
                                 << "a"
                                 << "-1-2";
        QTest::newRow("in the middle") << "a\nb\nc"
                                       << "a\nx\nc"
                                       << "~1-1";
        QTest::newRow("more in the middle") << "a\nb\nc"
                                            << "a\nx\ny\nc"
                                            << "~1-1+2-2";
        QTest::newRow("less in the middle") << "a\nb\nc\nd"
                                            << "a\nx\nd"
                                            << "-2-2~1-1";
        QTest::newRow("the same line twice") << "a\na"
                                             << "a\na\na"
                                             << "+2-2";
        QTest::newRow("nothing") << "a\nb"
                                 << "a\nb"
                                 << "";
        QTest::newRow("all") << "a"
                             << "b\nc"
                             << "~0-0+1-1";
        QTest::newRow("from nothing") << ""
                                      << "a\nb"
                                      << "+0-1";
        QTest::newRow("to nothing") << "a\nb"
                                    << ""
                                    << "-0-1";
    }
    void aTextThatGrowsChangesAtItsEnd() {
        QFETCH(QString, before);
        QFETCH(QString, after);
        DocumentText text;
        const QAbstractItemModelTester tester(&text);
        text.setRows(linesOf(before));
        QString changes;
        connect(&text, &QAbstractItemModel::rowsInserted, &text, [&](const QModelIndex&, int first, int last) {
            changes += QStringLiteral("+%1-%2").arg(first).arg(last);
        });
        connect(&text, &QAbstractItemModel::rowsRemoved, &text, [&](const QModelIndex&, int first, int last) {
            changes += QStringLiteral("-%1-%2").arg(first).arg(last);
        });
        connect(&text, &QAbstractItemModel::dataChanged, &text, [&](const QModelIndex& first, const QModelIndex& last) {
            changes += QStringLiteral("~%1-%2").arg(first.row()).arg(last.row());
        });
        text.setRows(linesOf(after));
        QCOMPARE(text.rows(), linesOf(after));
        QTEST(changes, "changes");
    }

private:
    TestHome m_home;
};

QTEST_GUILESS_MAIN(tst_QuickLookRows)
#include "tst_quicklookrows.moc"

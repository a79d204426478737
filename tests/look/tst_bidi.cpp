// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/QmlWindow.h"

#include <QTextLayout>

using namespace lumbra;

// Names that are written from right to left, among others that are not.
class tst_bidi : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }

    void aLabelStandsAtTheLeftWhateverItsScript_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("Latin") << QStringLiteral("hero.png");
        QTest::newRow("Hebrew") << QStringLiteral("תמונה.png");
        QTest::newRow("Arabic") << QStringLiteral("صورة.png");
        QTest::newRow("Chinese") << QStringLiteral("照片.png");
    }
    void aLabelStandsAtTheLeftWhateverItsScript() {
        QFETCH(QString, text);
        QmlWindow window("Label { objectName: 'label'; width: 400 }");
        window.find("label")->setProperty("text", text);
        QCOMPARE(window.value("label", "effectiveHorizontalAlignment").toInt(), int(Qt::AlignLeft));
    }

    void thePartsOfALineKeepTheirOrder_data() {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("parts"); // as they are to be seen from the left
        QTest::newRow("a count after a name") << QStringLiteral("names / תיקייה · 12 items")
                                              << QStringList{QStringLiteral("names"), QStringLiteral("תיקייה"),
                                                             QStringLiteral("12"), QStringLiteral("items")};
        QTest::newRow("a name first") << QStringLiteral("תיקייה / names · 5 items")
                                      << QStringList{QStringLiteral("תיקייה"), QStringLiteral("names"),
                                                     QStringLiteral("5")};
        QTest::newRow("two such names") << QStringLiteral("קבוצה / תיקייה · 3 days ago")
                                        << QStringList{QStringLiteral("קבוצה"), QStringLiteral("תיקייה"),
                                                       QStringLiteral("3")};
    }
    void thePartsOfALineKeepTheirOrder() {
        QFETCH(QString, line);
        QFETCH(QStringList, parts);
        QmlWindow window("property string line\nproperty string ordered: Bidi.inOrder(line)");
        window.root()->setProperty("line", line);
        const QString ordered = window.root()->property("ordered").toString();
        QTextLayout layout(ordered);
        layout.beginLayout();
        QTextLine drawn = layout.createLine();
        layout.endLayout();
        double before = -1;
        for (const QString& part : parts) {
            const auto from = int(ordered.indexOf(part));
            const double x = std::min(drawn.cursorToX(from), drawn.cursorToX(from + int(part.size())));
            QVERIFY2(x > before, qPrintable(part));
            before = x;
        }
    }

    void aLineOfOnePartIsItself() {
        QmlWindow window("property string line: Bidi.inOrder('1 items')");
        QVERIFY(window.root()->property("line").toString().endsWith(QLatin1String("1 items")));
    }

    void aNameStaysInItsLine_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("line");
        QTest::newRow("plain") << QStringLiteral("a  b.png") << QStringLiteral("a  b.png");
        QTest::newRow("a line break") << QStringLiteral("a\nb.png") << QStringLiteral("a b.png");
        QTest::newRow("a tab and a line break") << QStringLiteral("a\t\r\nb.png") << QStringLiteral("a b.png");
        QTest::newRow("a break between paragraphs") << QStringLiteral("a\u2029b.png") << QStringLiteral("a b.png");
        QTest::newRow("Hebrew") << QStringLiteral("תמונה\nא.png") << QStringLiteral("תמונה א.png");
    }
    void aNameStaysInItsLine() {
        QFETCH(QString, name);
        QmlWindow window("property string name\nproperty string line: Bidi.inOneLine(name)");
        window.root()->setProperty("name", name);
        QTEST(window.root()->property("line").toString(), "line");
    }
};

QTEST_MAIN(tst_bidi)
#include "tst_bidi.moc"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/QmlWindow.h"

#include <QImage>

using namespace lumbra;

// Where the letters of a label are drawn.
class tst_label : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Look::prepareApplication(); }

    void lettersStandInTheMiddleOfTheirLine_data();
    void lettersStandInTheMiddleOfTheirLine();
    void twoLinesStandInTheMiddleOfTheirHeight();
    void aBalancedSentenceHasLinesOfAboutTheSameLength();
    void aBalancedSentenceOfOneLineIsAsLongAsItIs();

private:
    struct Rows {
        int first = -1;
        int last = -1;
        double middle() const { return (first + last + 1) / 2.0; }
    };
    static Rows drawn(QmlWindow& window);
};

// The rows of pixels that are mostly as bright as the text.
tst_label::Rows tst_label::drawn(QmlWindow& window) {
    const QImage picture = window->grabWindow();
    Rows rows;
    for (int y = 0; y < picture.height(); ++y) {
        int brightest = 0;
        for (int x = 0; x < picture.width(); ++x)
            brightest = std::max(brightest, qGray(picture.pixel(x, y)));
        if (brightest < 128)
            continue;
        if (rows.first < 0)
            rows.first = y;
        rows.last = y;
    }
    return rows;
}

void tst_label::lettersStandInTheMiddleOfTheirLine_data() {
    QTest::addColumn<QString>("style");
    QTest::addColumn<int>("line");
    QTest::newRow("body") << QStringLiteral("Body") << 18;
    QTest::newRow("fact") << QStringLiteral("Fact") << 16;
    QTest::newRow("section") << QStringLiteral("Section") << 18;
    QTest::newRow("title of a sheet") << QStringLiteral("SheetTitle") << 20;
    QTest::newRow("title of a page") << QStringLiteral("PageTitle") << 26;
    QTest::newRow("heading") << QStringLiteral("Heading") << 36;
}

void tst_label::lettersStandInTheMiddleOfTheirLine() {
    QFETCH(QString, style);
    QFETCH(int, line);
    const QByteArray body = "Rectangle { anchors.fill: parent; color: 'black' }\n"
                            "Label { objectName: 'label'; y: 20; color: 'white'; text: 'H'; style: Label."
                            + style.toUtf8() + " }";
    QmlWindow window(body.constData());
    QCOMPARE(window.value("label", "height").toInt(), line);
    const double middle = drawn(window).middle() - 20;
    QVERIFY2(std::abs(middle - line / 2.0) <= 0.5, qPrintable(QString::number(middle)));
}

void tst_label::twoLinesStandInTheMiddleOfTheirHeight() {
    QmlWindow window(
        "Rectangle { anchors.fill: parent; color: 'black' }\n"
        "Label { objectName: 'label'; y: 20; color: 'white'; text: 'H H'; width: 12; wrapMode: Text.Wrap }");
    QCOMPARE(window.value("label", "height").toInt(), 36);
    const double middle = drawn(window).middle() - 20;
    QVERIFY2(std::abs(middle - 18) <= 0.5, qPrintable(QString::number(middle)));
}

void tst_label::aBalancedSentenceHasLinesOfAboutTheSameLength() {
    QmlWindow window("property string words: '10 projects start with birch. Group them?'\n"
                     "Label { objectName: 'plain'; text: parent.words }\n"
                     "BalancedLabel { objectName: 'label'; text: parent.words; available: 0 }");
    const double all = window.value("plain", "implicitWidth").toDouble();
    window.find<QQuickItem>("label")->setProperty("available", std::floor(all - 4)); // only the last word is too much
    QTRY_COMPARE(window.value("label", "lineCount").toInt(), 2);
    QVERIFY(window.value("label", "width").toDouble() < 0.7 * all);
}

void tst_label::aBalancedSentenceOfOneLineIsAsLongAsItIs() {
    QmlWindow window("BalancedLabel { objectName: 'label'; text: 'Group them?'; available: 400 }");
    QTRY_COMPARE(window.value("label", "lineCount").toInt(), 1);
}

QTEST_MAIN(tst_label)
#include "tst_label.moc"

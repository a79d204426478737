// SPDX-License-Identifier: GPL-3.0-or-later
#include "look/Fonts.h"

#include <QFile>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QStandardPaths>
#include <QTest>
#include <QTextLayout>

using namespace lumbra;

class tst_fonts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void textIsInterToTheLetter_data();
    void textIsInterToTheLetter();
    void namesShowTheLettersThatTheyAreWrittenWith_data();
    void namesShowTheLettersThatTheyAreWrittenWith();

    void everyDigitIsAsWideAsTheOthers_data();
    void everyDigitIsAsWideAsTheOthers();
    void lettersStayAsTheyAre();
    void aFontThatIsNoneIsRefused_data();
    void aFontThatIsNoneIsRefused();
};

void tst_fonts::textIsInterToTheLetter_data() {
    QTest::addColumn<int>("weight");
    QTest::newRow("regular") << int(QFont::Normal);
    QTest::newRow("semibold") << int(QFont::DemiBold);
}

void tst_fonts::textIsInterToTheLetter() {
    QFETCH(int, weight);
    QFont text(Fonts::text()), inter(QStringLiteral("Inter"));
    for (QFont* font : {&text, &inter}) {
        font->setPixelSize(100);
        font->setWeight(QFont::Weight(weight));
    }
    QCOMPARE(QFontInfo(text).family(), Fonts::text());
    QCOMPARE(QFontInfo(text).weight(), weight);
    const QString sample = QStringLiteral("Understanding AVAT 2025, To. Wave");
    QCOMPARE(QFontMetricsF(text).horizontalAdvance(sample), QFontMetricsF(inter).horizontalAdvance(sample));
}

void tst_fonts::namesShowTheLettersThatTheyAreWrittenWith_data() {
    QTest::addColumn<QString>("family");
    QTest::newRow("text") << Fonts::text();
    QTest::newRow("digits") << Fonts::digits();
}

void tst_fonts::namesShowTheLettersThatTheyAreWrittenWith() {
    QFETCH(QString, family);
    QFont font(family);
    font.setPixelSize(100);
    const auto glyphs = [&font](const QString& text) {
        QTextLayout layout(text, font);
        layout.beginLayout();
        layout.createLine();
        layout.endLayout();
        QList<quint32> all;
        for (const QGlyphRun& run : layout.glyphRuns())
            all += run.glyphIndexes();
        return all;
    };
    for (const QString& name : {QStringLiteral("1920x1080"), QStringLiteral("a->b"), QStringLiteral("3-4 (2)")}) {
        QList<quint32> single;
        for (const QChar letter : name)
            single += glyphs(QString(letter));
        QCOMPARE(glyphs(name), single);
    }
}

void tst_fonts::everyDigitIsAsWideAsTheOthers_data() {
    QTest::addColumn<int>("weight");
    QTest::newRow("regular") << int(QFont::Normal);
    QTest::newRow("semibold") << int(QFont::DemiBold);
}

void tst_fonts::everyDigitIsAsWideAsTheOthers() {
    QFETCH(int, weight);
    QFont font(Fonts::digits());
    font.setPixelSize(100);
    font.setWeight(QFont::Weight(weight));
    font.setKerning(false);
    QCOMPARE(QFontInfo(font).weight(), weight);
    const QFontMetricsF metrics(font);
    const qreal width = metrics.horizontalAdvance(QStringLiteral("0000"));
    for (QChar digit = u'1'; digit <= u'9'; digit = QChar(digit.unicode() + 1))
        // The typeface itself is off by a thousandth of its size here and there.
        QVERIFY(qAbs(metrics.horizontalAdvance(QString(4, digit)) - width) < 0.5);

    QFont text(Fonts::text());
    text.setPixelSize(100);
    QVERIFY(QFontMetricsF(text).horizontalAdvance(QStringLiteral("1111")) < width);
}

void tst_fonts::lettersStayAsTheyAre() {
    QFont digits(Fonts::digits());
    digits.setPixelSize(100);
    QFont text(Fonts::text());
    text.setPixelSize(100);
    const QString sample = QStringLiteral("UnderstandingAVAT");
    QCOMPARE(QFontMetricsF(digits).horizontalAdvance(sample), QFontMetricsF(text).horizontalAdvance(sample));
}

void tst_fonts::aFontThatIsNoneIsRefused_data() {
    QTest::addColumn<QByteArray>("bytes");
    QFile file(QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                      QStringLiteral("fonts/opentype/inter/Inter-Regular.otf")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray font = file.readAll();
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("a few letters") << QByteArray("OTTO");
    QTest::newRow("cut off after the list of tables") << font.left(300);
    QTest::newRow("text") << QByteArray(5000, 'x');
    QByteArray wild = font.left(12);
    wild.append(QByteArray("GSUB") + QByteArray(12, '\xff')).append(QByteArray("name") + QByteArray(12, '\xff'));
    QTest::newRow("tables beyond the end") << wild;
}

void tst_fonts::aFontThatIsNoneIsRefused() {
    QFETCH(QByteArray, bytes);
    for (const Fonts::Digits digits : {Fonts::Digits::proportional, Fonts::Digits::tabular})
        QVERIFY(Fonts::literal(bytes, "Inter", "Other", digits).isEmpty());
}

QTEST_MAIN(tst_fonts)
#include "tst_fonts.moc"

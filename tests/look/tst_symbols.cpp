// SPDX-License-Identifier: GPL-3.0-or-later
#include "look/Symbols.h"

#include <QSet>
#include <QTest>

using namespace lumbra;

class tst_symbols : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theIconFontIsInstalled() { QVERIFY(Symbols::fontFound()); }

    void everyNameOfTheProductHasASymbol_data();
    void everyNameOfTheProductHasASymbol();
    void everySymbolDrawsSomethingInItsSquare_data();
    void everySymbolDrawsSomethingInItsSquare();
    void noTwoSymbolsLookAlikeByMistake();
    void aSymbolIsDrawnInItsColour();
    void aSymbolThatManyShowIsDrawnOnce();
    void anUnknownNameDrawsNothing();
};

void tst_symbols::everyNameOfTheProductHasASymbol_data() {
    QTest::addColumn<QString>("name");
    for (const char* name : {"arrow.left.arrow.right",
                             "arrow.turn.down.right",
                             "arrow.up.arrow.down",
                             "arrow.up.left.and.arrow.down.right",
                             "backward.frame.fill",
                             "checkmark",
                             "checkmark.circle.fill",
                             "checkmark.seal",
                             "chevron.down",
                             "chevron.right",
                             "circle.dashed",
                             "clock",
                             "doc",
                             "doc.on.doc.fill",
                             "ellipsis",
                             "film",
                             "folder",
                             "folder.badge.plus",
                             "folder.fill",
                             "forward.frame.fill",
                             "gearshape",
                             "gobackward.5",
                             "goforward.5",
                             "line.3.horizontal.decrease.circle",
                             "magnifyingglass",
                             "pause.circle",
                             "pause.fill",
                             "photo",
                             "pin",
                             "pin.fill",
                             "pin.slash",
                             "pip.enter",
                             "play.fill",
                             "plus",
                             "repeat",
                             "sidebar.right",
                             "sparkles",
                             "speaker.slash.fill",
                             "speaker.wave.2.fill",
                             "square.stack.3d.up",
                             "star",
                             "star.fill",
                             "star.slash",
                             "tray",
                             "wand.and.stars",
                             "waveform",
                             "xmark.circle.fill"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_symbols::everyNameOfTheProductHasASymbol() {
    QFETCH(QString, name);
    QVERIFY(Symbols::contains(name));
    QVERIFY(Symbols::names().contains(name));
}

void tst_symbols::everySymbolDrawsSomethingInItsSquare_data() {
    QTest::addColumn<QString>("name");
    for (const QString& name : Symbols::names())
        QTest::newRow(qPrintable(name)) << name;
}

void tst_symbols::everySymbolDrawsSomethingInItsSquare() {
    QFETCH(QString, name);
    const int side = 48;
    const QImage picture = Symbols::image(name, side, Qt::white);
    QCOMPARE(picture.size(), QSize(side, side));
    int inked = 0;
    int onTheEdge = 0;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const bool ink = qAlpha(picture.pixel(x, y)) > 128;
            inked += ink;
            onTheEdge += ink && (x == 0 || y == 0 || x == side - 1 || y == side - 1);
        }
    QVERIFY2(inked > side, "hardly anything is drawn");
    QVERIFY2(inked < side * side * 3 / 4, "a missing glyph is a box");
    QCOMPARE(onTheEdge, 0); // nothing is cut off
}

void tst_symbols::noTwoSymbolsLookAlikeByMistake() {
    // The one pair that is meant to look the same.
    const QSet<QString> same{QStringLiteral("doc.on.doc")};
    QHash<QByteArray, QString> seen;
    for (const QString& name : Symbols::names()) {
        if (same.contains(name))
            continue;
        const QImage picture = Symbols::image(name, 24, Qt::white);
        const QByteArray bytes(reinterpret_cast<const char*>(picture.constBits()), picture.sizeInBytes());
        QVERIFY2(!seen.contains(bytes), qPrintable(name + QStringLiteral(" looks like ") + seen.value(bytes)));
        seen.insert(bytes, name);
    }
}

void tst_symbols::aSymbolIsDrawnInItsColour() {
    // One from the font, one that we drew.
    for (const char* name : {"folder.fill", "tray"}) {
        const QImage picture = Symbols::image(QString::fromLatin1(name), 24, QColor(255, 0, 0));
        int red = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) {
                const QColor pixel = picture.pixelColor(x, y);
                QVERIFY(pixel.alpha() == 0 || (pixel.green() == 0 && pixel.blue() == 0));
                red += pixel == QColor(255, 0, 0);
            }
        QVERIFY(red > 0);
    }
}

void tst_symbols::aSymbolThatManyShowIsDrawnOnce() {
    const QString name = QStringLiteral("photo");
    const qint64 drawn = Symbols::image(name, 40, Qt::white).cacheKey();
    QCOMPARE(Symbols::image(name, 40, Qt::white).cacheKey(), drawn);
    QVERIFY(Symbols::image(name, 41, Qt::white).cacheKey() != drawn);
    QVERIFY(Symbols::image(name, 40, Qt::red).cacheKey() != drawn);
    QVERIFY(Symbols::image(QStringLiteral("film"), 40, Qt::white).cacheKey() != drawn);
}

void tst_symbols::anUnknownNameDrawsNothing() {
    for (const char* name : {"", "no.such.symbol", "Star", "../symbols/tray", "tray.svg"}) {
        QVERIFY(!Symbols::contains(QString::fromLatin1(name)));
        QVERIFY(Symbols::image(QString::fromLatin1(name), 24, Qt::white).isNull());
    }
    QVERIFY(Symbols::image(QStringLiteral("star"), 0, Qt::white).isNull());
}

QTEST_MAIN(tst_symbols)
#include "tst_symbols.moc"

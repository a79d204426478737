// What a file takes along that is dragged out of the window.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "browsing/tiles/FileDrag.h"

#include <QMimeData>
#include <QTest>

using namespace lumbra;

namespace {

const FileDrag::Style style{.font = {}, .text = Qt::white, .bed = Qt::black};

QImage red(int width, int height) {
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::red);
    return image;
}

} // namespace

class TestFileDrag : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void otherProgramsGetTheOneFile() {
        const Location file(QByteArray("/library/a b #1.png"));
        const auto data = FileDrag::dataOf(file);
        QCOMPARE(data->urls(), QList{file.toUrl()});
        QVERIFY(data->hasFormat(QStringLiteral("text/uri-list")));
    }

    void theCardHasThePictureAboveTheName() {
        const QPixmap plain = FileDrag::pictureOf(QStringLiteral("a.png"), {}, style, 1);
        const QPixmap card = FileDrag::pictureOf(QStringLiteral("a.png"), red(480, 360), style, 1);
        QCOMPARE(card.width(), 120 + 2 * 8);
        QCOMPARE(card.height() - plain.height(), 90 + 6);
        const QImage drawn = card.toImage();
        QCOMPARE(drawn.pixelColor(card.width() / 2, 50), QColor(Qt::red));
        QCOMPARE(drawn.pixelColor(card.width() / 2, 8 + 90 + 3), QColor(Qt::black));
        QCOMPARE(drawn.pixelColor(0, 0).alpha(), 0); // the corners are round
    }

    void aTallPictureKeepsItsProportions() {
        const QImage drawn = FileDrag::pictureOf(QStringLiteral("a.png"), red(100, 400), style, 1).toImage();
        const int middle = drawn.width() / 2;
        QCOMPARE(drawn.pixelColor(middle, 50), QColor(Qt::red));
        QCOMPARE(drawn.pixelColor(middle - 14, 50), QColor(Qt::black));
    }

    void aLongNameIsShortened() {
        const QPixmap card = FileDrag::pictureOf(QString(400, u'm'), {}, style, 1);
        QVERIFY(card.width() <= 160 + 2 * 8);
        QVERIFY(card.width() > 100);
    }

    void aFineScreenHasAFineCard() {
        const QPixmap one = FileDrag::pictureOf(QStringLiteral("a.png"), red(480, 360), style, 1);
        const QPixmap two = FileDrag::pictureOf(QStringLiteral("a.png"), red(480, 360), style, 2);
        QCOMPARE(two.size(), one.size() * 2);
        QCOMPARE(two.deviceIndependentSize(), QSizeF(one.size()));
    }
};

QTEST_MAIN(TestFileDrag)
#include "tst_filedrag.moc"

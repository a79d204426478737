// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/RoundedPicture.h"

#include <QTest>

using namespace lumbra;

class tst_roundedpicture : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPictureIsDrawnWhole() {
        RoundedPicture picture;
        picture.setPlace({10, 20, 30, 40}, frame, 8);
        QCOMPARE(drawn(picture), (QList<QRectF>{{10, 20, 30, 40}}));
        QCOMPARE(texture(picture), (QList<QRectF>{{0, 0, 1, 1}}));
    }

    void behindWhatCoversItNothingIsDrawn() {
        RoundedPicture picture;
        picture.setPlaceBehind(QRectF(QPointF(), frame), frame, 8);
        QCOMPARE(drawn(picture), QList<QRectF>());
    }

    void besideAWidePictureAStripAboveAndOneBelowAreDrawn() {
        RoundedPicture picture;
        picture.setPlaceBehind({0, 40, 200, 70}, frame, 8);
        QCOMPARE(drawn(picture), (QList<QRectF>{{0, 0, 200, 41}, {0, 109, 200, 41}}));
        QCOMPARE(float(texture(picture).first().height()), 41 / 150.0F);
    }

    void besideATallPictureAStripOnEitherSideIsDrawn() {
        RoundedPicture picture;
        picture.setPlaceBehind({50, 0, 100, 150}, frame, 8);
        QCOMPARE(drawn(picture), (QList<QRectF>{{0, 0, 51, 150}, {149, 0, 51, 150}}));
    }

private:
    static constexpr QSizeF frame{200, 150};

    // Two triangles each.
    template <typename Point>
    static QList<QRectF> parts(const RoundedPicture& picture, Point&& at) {
        const QSGGeometry& geometry = *picture.geometry();
        QList<QRectF> found;
        for (int first = 0; first < geometry.vertexCount(); first += 6)
            found.append(QRectF(at(geometry.vertexDataAsTexturedPoint2D()[first]),
                                at(geometry.vertexDataAsTexturedPoint2D()[first + 5])));
        return found;
    }
    static QList<QRectF> drawn(const RoundedPicture& picture) {
        return parts(picture, [](const auto& point) { return QPointF(double(point.x), double(point.y)); });
    }
    static QList<QRectF> texture(const RoundedPicture& picture) {
        return parts(picture, [](const auto& point) { return QPointF(double(point.tx), double(point.ty)); });
    }
};

QTEST_GUILESS_MAIN(tst_roundedpicture)
#include "tst_roundedpicture.moc"

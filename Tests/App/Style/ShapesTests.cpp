#include "Style/Shapes.h"

#include <QPolygonF>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace corvane {
namespace {

constexpr qreal tolerance = 0.01; // in radii

/// The four corners of a rectangle, each with the direction to its middle.
struct Corner {
    QPointF place;
    QPointF inwards;
};
std::array<Corner, 4> corners(const QRectF& rect) {
    return {{{rect.topLeft(), {1, 1}},
             {rect.topRight(), {-1, 1}},
             {rect.bottomLeft(), {1, -1}},
             {rect.bottomRight(), {-1, -1}}}};
}

/// How far a corner's arc is inside of the corner, along each axis, at its middle.
qreal diagonalInset(qreal radius) {
    return radius * (1 - 1 / std::sqrt(2.0));
}

TEST(Shapes, cornersPassThroughTheArcsDiagonalPoint) {
    const QRectF rect(10, 20, 200, 100);
    for (const qreal radius : {6.0, 16.0}) {
        const QPainterPath path = shapes::continuousRoundedRect(rect, radius);
        EXPECT_EQ(path.boundingRect(), rect);
        for (const Corner& corner : corners(rect)) {
            const QPointF point = corner.place + corner.inwards * diagonalInset(radius);
            EXPECT_TRUE(path.contains(point + corner.inwards * tolerance * radius));
            EXPECT_FALSE(path.contains(point - corner.inwards * tolerance * radius));
        }
    }
}

TEST(Shapes, cornersBeginBeforeAnArcWouldAndNotTooEarly) {
    constexpr qreal radius = 16;
    const QRectF rect(0, 0, 200, 100);
    const QPainterPath path = shapes::continuousRoundedRect(rect, radius);
    // Where an arc would still be straight, the edge has already left the side; further away it has not.
    constexpr qreal hair = 0.02;
    EXPECT_FALSE(path.contains(QPointF(radius, hair)));
    EXPECT_FALSE(path.contains(QPointF(hair, radius)));
    EXPECT_TRUE(path.contains(QPointF(1.28 * radius, hair)));
    EXPECT_TRUE(path.contains(QPointF(hair, 1.28 * radius)));
}

TEST(Shapes, insideStrokeIsInsetByHalfItsWidth) {
    constexpr qreal radius = 16;
    constexpr qreal width = 3;
    const QRectF rect(10, 20, 200, 100);
    const QPainterPath path = shapes::insideStroke(rect, radius, width);
    EXPECT_EQ(path.boundingRect(), rect.adjusted(1.5, 1.5, -1.5, -1.5));
    // Its corners share their middle with those of the border.
    for (const Corner& corner : corners(path.boundingRect())) {
        const QPointF point = corner.place + corner.inwards * diagonalInset(radius - width / 2);
        EXPECT_TRUE(path.contains(point + corner.inwards * tolerance * radius));
        EXPECT_FALSE(path.contains(point - corner.inwards * tolerance * radius));
    }
}

TEST(Shapes, cornersOfARectangleSmallerThanTwoCornersMeetInTheMiddleOfItsSides) {
    for (const QRectF& rect : {QRectF(0, 0, 10, 40), QRectF(0, 0, 40, 10), QRectF(5, 5, 12, 12)}) {
        const QPainterPath path = shapes::continuousRoundedRect(rect, 16);
        EXPECT_EQ(path.boundingRect(), rect);
        constexpr qreal hair = 0.01;
        EXPECT_TRUE(path.contains(QPointF(rect.center().x(), rect.top() + hair)));
        EXPECT_TRUE(path.contains(QPointF(rect.center().x(), rect.bottom() - hair)));
        EXPECT_TRUE(path.contains(QPointF(rect.left() + hair, rect.center().y())));
        EXPECT_TRUE(path.contains(QPointF(rect.right() - hair, rect.center().y())));
        for (const Corner& corner : corners(rect))
            EXPECT_FALSE(path.contains(corner.place + corner.inwards * 0.5));
        // No part of the edge doubles back: across the top it only runs to the right.
        const QPolygonF edge = path.toFillPolygon();
        for (int i = 1; i < edge.size() && edge[i - 1].x() < rect.right(); ++i) {
            if (edge[i].y() > rect.center().y()) continue;
            EXPECT_GE(edge[i].x(), edge[i - 1].x());
        }
    }
}

TEST(Shapes, anEmptyRectangleHasAnEmptyShape) {
    const QPainterPath path = shapes::continuousRoundedRect(QRectF(3, 4, 0, 0), 16);
    EXPECT_EQ(path.boundingRect(), QRectF(3, 4, 0, 0));
}

} // namespace
} // namespace corvane

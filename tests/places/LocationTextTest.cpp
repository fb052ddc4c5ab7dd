// Pasted coordinates in the forms people copy them, and the clipboard's own place type.

#include "places/LocationText.h"

#include <QCborArray>
#include <QCborValue>
#include <QMimeData>

#include <gtest/gtest.h>

using namespace orv;

namespace {

void expectPlace(const QString &text, double latitude, double longitude)
{
    SCOPED_TRACE(text.toStdString());
    EXPECT_TRUE(LocationText::seemsCoordinates(text));
    const std::optional<GeoCoordinate> place = LocationText::coordinateFromString(text);
    ASSERT_TRUE(place.has_value());
    EXPECT_NEAR(place->latitude, latitude, 1e-9);
    EXPECT_NEAR(place->longitude, longitude, 1e-9);
}

TEST(LocationText, DecimalAndSexagesimalFormsGiveCoordinatesAndZeroZeroDoesNot)
{
    expectPlace(QStringLiteral("47.1N,8.5E"), 47.1, 8.5);
    expectPlace(QStringLiteral("47,1N,8,5E"), 47.1, 8.5);
    expectPlace(QStringLiteral(" 33.86s, 151.21e \nsecond line"), -33.86, 151.21);
    expectPlace(QStringLiteral("-33.86, -151.21"), -33.86, -151.21);
    expectPlace(QStringLiteral("47.1°N, 8.5°W"), 47.1, -8.5);
    const double latitude = 47.0 + 6.0 / 60.0 + 12.5 / 3600.0;
    const double longitude = 8.0 + 30.0 / 60.0 + 0.5 / 3600.0;
    expectPlace(QStringLiteral("47°6’12.5”N 8°30’0.5”E"), latitude, longitude);
    expectPlace(QStringLiteral("47°6'12.5\"N, 8°30'0.5\"W"), latitude, -longitude);
    expectPlace(QStringLiteral("47°6′12,5″S  8°30´0,5″E"), -latitude, longitude);

    for (const QString &text : {QStringLiteral("0.0,0.0"), QStringLiteral("91.0,8.0"), QStringLiteral("47.1,181.0"),
                                QStringLiteral("Lisbon"), QStringLiteral("47,8"), QStringLiteral("-47.1N,8.5E"),
                                QStringLiteral("47.1N,8.5"), QStringLiteral("47°6’12”N 8°30’0.5”E"), QString()}) {
        EXPECT_FALSE(LocationText::coordinateFromString(text).has_value()) << text.toStdString();
    }
    EXPECT_FALSE(LocationText::seemsCoordinates(QStringLiteral("Lisbon")));
}

TEST(LocationPasteboard, ThePlaceTravelsAsItsOwnTypeAndAsText)
{
    QMimeData copied;
    LocationPasteboard::write(copied, {38.71667, -9.13333});
    EXPECT_EQ(QCborValue::fromCbor(copied.data(QString::fromLatin1(LocationPasteboard::mimeType))).toArray(),
              (QCborArray{38.71667, -9.13333}));
    EXPECT_EQ(copied.text(), QStringLiteral("38.716670, -9.133330"));
    const std::optional<GeoCoordinate> back = LocationPasteboard::read(copied);
    ASSERT_TRUE(back.has_value());
    EXPECT_EQ(*back, (GeoCoordinate{38.71667, -9.13333}));

    QMimeData typed;
    typed.setText(QStringLiteral("48.8583N, 2.2945E"));
    EXPECT_EQ(LocationPasteboard::read(typed), (GeoCoordinate{48.8583, 2.2945}));
    QMimeData damaged;
    damaged.setData(QString::fromLatin1(LocationPasteboard::mimeType), QCborValue(QCborArray{95.0, 0.5}).toCbor());
    EXPECT_FALSE(LocationPasteboard::read(damaged).has_value());
    EXPECT_FALSE(LocationPasteboard::read(QMimeData()).has_value());
}

} // namespace

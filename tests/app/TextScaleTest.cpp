#include "app/TextScale.h"

TEST(TextScale, GrowsWithTheTextAsFarAsThereIsRoom)
{
    constexpr QSize wide(1920, 1080), small(1024, 768), least(800, 600);
    const std::tuple<double, QSize, double> cases[] = {
        {9, wide, 1},
        {11, wide, 1},
        {12, wide, 1}, // not worth it
        {14, wide, 14 / 11.0},
        {22, wide, 2},
        {24, QSize(1920, 700), 652 / 480.0}, // of the height
        {24, small, 976 / 760.0},            // of the width
        {24, least, 1},
        {24, QSize(), 1}, // no screen
        {-1, wide, 1},    // not known
    };
    for (const auto &[size, room, factor] : cases)
        EXPECT_DOUBLE_EQ(TextScale::factorFor(size, room), factor) << size << room.width();
}

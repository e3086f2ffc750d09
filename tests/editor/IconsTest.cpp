#include "editor/DataDir.h"

#include "support/Scenario.h"

#include <QImage>

#include <string>

namespace {

const char* const ICONS[] = {
    "new_track", "del_track", "arrange_x", "arrange_y", "arrange_xy", "key_remove",
    "key", "key_constant", "key_linear", "key_smooth", "key_break", "key_auto",
    "setting", "time_prev", "time_play", "time_next", "time_loop", "dialog_other",
};

// Returns the share of pixels that are at least half opaque.
double coverage(const QImage& image)
{
    int opaque = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            opaque += qAlpha(image.pixel(x, y)) >= 128 ? 1 : 0;
    }
    return double(opaque) / (image.width() * image.height());
}

using IconsTest = Scenario;

} // namespace

TEST_F(IconsTest, EveryIconIsAPngAt32And16Pixels)
{
    DataDir::set(KUVO_DATA_DIR);
    for (const char* name : ICONS) {
        std::string base = DataDir::iconDir() + name;
        QImage large(QString::fromStdString(base + ".png"), "PNG");
        QImage small(QString::fromStdString(base + "@16.png"), "PNG");
        ASSERT_FALSE(large.isNull()) << base << ".png";
        ASSERT_FALSE(small.isNull()) << base << "@16.png";
        EXPECT_EQ(large.size(), QSize(32, 32)) << name;
        EXPECT_EQ(small.size(), QSize(16, 16)) << name;
        EXPECT_TRUE(large.hasAlphaChannel()) << name;
        // Drawn shapes on a transparent ground: neither blank nor a filled square.
        EXPECT_GT(coverage(large), 0.08) << name;
        EXPECT_LT(coverage(large), 0.85) << name;
        // The small rendering shows the same drawing, not a different or empty one.
        EXPECT_NEAR(coverage(small), coverage(large), 0.12) << name;
    }
}

TEST_F(IconsTest, IconsAreLightOnTransparentForTheDarkTheme)
{
    DataDir::set(KUVO_DATA_DIR);
    for (const char* name : ICONS) {
        QImage image(QString::fromStdString(DataDir::iconDir() + name + ".png"), "PNG");
        ASSERT_FALSE(image.isNull()) << name;
        double lightness = 0;
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                QRgb px = image.pixel(x, y);
                if (qAlpha(px) == 255) {
                    lightness += QColor(px).lightnessF();
                    ++count;
                }
            }
        }
        ASSERT_GT(count, 0) << name;
        EXPECT_GT(lightness / count, 0.45) << name << " is too dark to read on the editor's dark panels";
    }
}

#include "gl/sizeWarning.h"

#include <gtest/gtest.h>

namespace {

sizeWarningInput Layer(int width, int height)
{
    return {.layerWidth = width,
            .layerHeight = height,
            .worldWidth = width,
            .worldHeight = height,
            .denX = 1,
            .denY = 1,
            .maxTextureSize = 4096};
}

}  // namespace

TEST(SizeWarning, IsShownOncePerExcursionAboveTheLimit)
{
    std::uint8_t shown = 0;
    EXPECT_EQ(UpdateSizeWarning(Layer(2048, 2048), shown), "");
    EXPECT_EQ(UpdateSizeWarning(Layer(4000, 3000), shown),
              "Warning: layer size exceeds maximum texture size (2048x2048).");
    EXPECT_EQ(UpdateSizeWarning(Layer(4000, 3000), shown), "");
    EXPECT_EQ(UpdateSizeWarning(Layer(2000, 2048), shown), "");  // back within: forgotten
    EXPECT_EQ(UpdateSizeWarning(Layer(100, 2049), shown),
              "Warning: layer size exceeds maximum texture size (2048x2048).");
}

TEST(SizeWarning, PreviewResolutionDoesNotCountAsBackWithin)
{
    std::uint8_t shown = 1;
    sizeWarningInput half = Layer(4000, 3000);
    half.worldWidth = 2000;
    half.worldHeight = 1500;
    half.denX = half.denY = 2;
    EXPECT_EQ(UpdateSizeWarning(half, shown), "");
    EXPECT_EQ(shown, 1);
}

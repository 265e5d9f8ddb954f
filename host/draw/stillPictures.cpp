#include "draw/stillPictures.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "image/imageFile.h"

namespace orv {

namespace {

template <class Channel>
void Fill(const std::array<double, 3>& color, double fullScale, Channel* pixel, Channel* end)
{
    const auto nearest = [=](double v) {
        return static_cast<Channel>(std::lround(std::clamp(v, 0.0, 1.0) * fullScale));
    };
    const std::array<Channel, 4> argb{static_cast<Channel>(fullScale), nearest(color[0]),
                                      nearest(color[1]), nearest(color[2])};
    for (; pixel != end; pixel += 4) std::copy(argb.begin(), argb.end(), pixel);
}

}  // namespace

const image& StillPictures::Asset(const imageAsset& asset)
{
    if (!asset.pixels) return Transparent(asset.width, asset.height);
    const image& pixels = *asset.pixels;
    if (pixels.depth == quality_.depth && quality_.divisorX == 1 && quality_.divisorY == 1) {
        return pixels;
    }
    const auto known = assets_.find(&asset);
    if (known != assets_.end()) return known->second;
    // Down last, so that averages have the finer depth's precision where one is 16.
    image prepared = quality_.depth > pixels.depth
                         ? PreviewImage(ConvertDepth(pixels, quality_.depth), quality_.divisorX,
                                        quality_.divisorY)
                         : ConvertDepth(PreviewImage(pixels, quality_.divisorX, quality_.divisorY),
                                        quality_.depth);
    return assets_.emplace(&asset, std::move(prepared)).first->second;
}

const image& StillPictures::Solid(const layer& solid)
{
    const auto known = solids_.find(&solid);
    if (known != solids_.end()) return known->second;
    image filled(PreviewWidth(solid.width), PreviewHeight(solid.height), quality_.depth);
    if (filled.depth == 16) {
        std::uint16_t* first = filled.row16(0);
        Fill(solid.color, 32768.0, first, first + filled.bytes.size() / 2);
    } else {
        std::uint8_t* first = filled.row(0);
        Fill(solid.color, 255.0, first, first + filled.bytes.size());
    }
    return solids_.emplace(&solid, std::move(filled)).first->second;
}

const image& StillPictures::Transparent(int fullWidth, int fullHeight)
{
    const std::pair size(PreviewWidth(fullWidth), PreviewHeight(fullHeight));
    const auto known = transparent_.find(size);
    if (known != transparent_.end()) return known->second;
    return transparent_.emplace(size, image(size.first, size.second, quality_.depth)).first->second;
}

}  // namespace orv

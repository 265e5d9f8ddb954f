#include "support/golden.h"

#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "image/imageFile.h"
#include "image/wholeFile.h"
#include "scene/errors.h"

namespace orv {

namespace {

std::string Setting(const char* name)
{
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string Write(const image& picture, const std::string& folder, const std::string& file)
{
    std::filesystem::create_directories(folder);
    std::string path = folder + "/" + file;
    WritePng(picture, path);
    return path;
}

testing::AssertionResult Reported(testing::AssertionResult result, const image& actual,
                                  const image* expected, const std::string& name,
                                  const goldenPlace& place)
{
    result << "; see " << Write(actual, place.reports, name + ".actual.png");
    if (expected != nullptr && expected->width == actual.width &&
        expected->height == actual.height && expected->depth == actual.depth) {
        result << " and "
               << Write(DifferenceImage(actual, *expected), place.reports,
                        name + ".difference.png");
    }
    return result;
}

}  // namespace

goldenPlace UsualGoldenPlace()
{
    return {Setting("ORV_SOURCE_DIR") + "/tests/golden", Setting("ORV_BINARY_DIR") + "/golden",
            Setting("ORV_REWRITE_GOLDENS") == "1"};
}

testing::AssertionResult MatchesGolden(const image& actual, const std::string& name,
                                       const imageTolerance& tolerance, const goldenPlace& place)
{
    if (place.rewrite) {
        Write(actual, place.goldens, name + ".png");
        return testing::AssertionSuccess();
    }
    const std::string file = place.goldens + "/" + name + ".png";
    std::string data;
    if (!ReadWholeFile(file, std::uint64_t{1} << 30, data)) {
        return Reported(testing::AssertionFailure() << file << " is missing", actual, nullptr, name,
                        place);
    }
    const image expected =
        DecodeImage({reinterpret_cast<const std::uint8_t*>(data.data()), data.size()}, file);
    testing::AssertionResult result = ImagesMatch(actual, expected, tolerance);
    return result ? result : Reported(result, actual, &expected, name, place);
}

}  // namespace orv

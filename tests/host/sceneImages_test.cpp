// Pictures of a scene: where they may lie, and what is wrong with those that are refused.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "host/sceneFixture.h"
#include "image/imageFile.h"
#include "scene/base64.h"
#include "support/tempFolder.h"

namespace orv::test {
namespace {

namespace fs = std::filesystem;

// A PNG of two pixels: opaque red, half transparent blue.
constexpr const char* kTwoPixels =
    "iVBORw0KGgoAAAANSUhEUgAAAAIAAAABCAYAAAD0In+KAAAADklEQVR42mP4z8AAQg0AD3oDfmqBMeEAAAAASUVORK5C"
    "YII=";

/// A folder with scene/ and, beside it, outside.png.
class SceneImages : public testing::Test {
protected:
    SceneImages()
    {
        fs::create_directories(scene_ / "images");
        WritePng(image(2, 1, 8), folder_.file("outside.png"));
        WritePng(image(2, 1, 8), (scene_ / "images" / "inside.png").string());
    }

    /// An image layer that shows an asset of 2 x 1 pixels with these members.
    project load(const std::string& members, bool allowOutside = false)
    {
        const std::string text =
            Scene(R"({"ty":2,"ip":0,"op":1,"refId":"a"})",
                  fmt::format(R"("assets":[{{"id":"a","w":2,"h":1,{}}}])", members));
        warnings_.clear();
        return LoadSceneText(text, (scene_ / "scene.json").string(), {allowOutside, false, {}},
                             [this](const std::string& line) { warnings_.push_back(line); });
    }

    /// The reason after "FILE: assets[0].p: ", with the temporary folder as DIR.
    std::string errorOf(const std::string& members)
    {
        try {
            (void)load(members);
        } catch (const failure& problem) {
            std::string text = problem.what();
            const std::string prefix = (scene_ / "scene.json").string() + ": assets[0].p: ";
            EXPECT_TRUE(text.starts_with(prefix)) << text;
            text.erase(0, std::min(prefix.size(), text.size()));
            const std::string folder = fs::canonical(folder_.path()).string();
            const std::size_t at = text.find(folder);
            if (at != std::string::npos) text.replace(at, folder.size(), "DIR");
            return text;
        }
        return "loaded";
    }

    TempFolder folder_;
    fs::path scene_ = folder_.path() / "scene";
    std::vector<std::string> warnings_;
};

TEST_F(SceneImages, LoadFromFilesAndDataUrls)
{
    const project file = load(R"("u":"images/","p":"inside.png")");
    EXPECT_EQ(file.images.at(0).pixels->width, 2);
    EXPECT_EQ(file.compositions[0].layers[0].image, 0);

    const project data = load(fmt::format(R"("p":"data:image/png;base64,{}")", kTwoPixels));
    EXPECT_EQ(data.images.at(0).file, "data URL");
    const std::vector<std::uint8_t> argb{255, 255, 0, 0, 128, 0, 0, 255};
    EXPECT_EQ(data.images.at(0).pixels->bytes, argb);
    EXPECT_TRUE(warnings_.empty());
}

TEST_F(SceneImages, OfAnotherSizeAreFittedWithAWarning)
{
    WritePng(image(4, 4, 8), (scene_ / "large.png").string());
    EXPECT_EQ(load(R"("p":"large.png")").images.at(0).pixels->height, 1);
    ASSERT_EQ(warnings_.size(), 1U);
    EXPECT_EQ(warnings_[0], (scene_ / "scene.json").string() +
                                ": assets[0]: the image is 4 x 4, the asset 2 x 1: scaled to fit");
}

TEST_F(SceneImages, MayUseDotsAndLinksThatStayInTheFolder)
{
    fs::create_symlink("images/inside.png", scene_ / "link.png");
    EXPECT_EQ(errorOf(R"("p":"link.png")"), "loaded");
    EXPECT_EQ(errorOf(R"("p":"images/../images/inside.png")"), "loaded");
}

TEST_F(SceneImages, OutsideTheFolderNeedPermission)
{
    const std::string refusal =
        "the image DIR/outside.png lies outside the scene's folder (--allow-outside permits it)";
    fs::create_symlink("../outside.png", scene_ / "link.png");
    fs::create_directory_symlink("..", scene_ / "up");
    EXPECT_EQ(errorOf(R"("p":"../outside.png")"), refusal);
    EXPECT_EQ(errorOf(R"("p":"link.png")"), refusal);
    EXPECT_EQ(errorOf(R"("p":"up/outside.png")"), refusal);
    EXPECT_EQ(errorOf(fmt::format(R"("p":"{}")", folder_.file("outside.png"))), refusal);
    EXPECT_EQ(load(R"("p":"../outside.png")", true).images.at(0).pixels->width, 2);
    EXPECT_EQ(load(R"("p":"link.png")", true).images.at(0).pixels->width, 2);
}

TEST_F(SceneImages, AnAbsolutePathIsOutsideEvenIntoTheFolder)
{
    EXPECT_EQ(errorOf(fmt::format(R"("p":"{}/images/inside.png")", scene_.string())),
              "the image DIR/scene/images/inside.png lies outside the scene's folder "
              "(--allow-outside permits it)");
}

TEST_F(SceneImages, ThatCannotBeReadAreRefused)
{
    std::ofstream(scene_ / "text.png") << "not a picture";
    EXPECT_EQ(errorOf(R"("p":"missing.png")"),
              "the image DIR/scene/missing.png cannot be read: No such file or directory");
    EXPECT_EQ(errorOf(R"("p":"images")"), "the image DIR/scene/images is not a file");
    EXPECT_EQ(errorOf(R"("p":"http://example.org/a.png")"),
              "\"http://example.org/a.png\" is a network address, only files are read");
    EXPECT_EQ(errorOf(R"("p":"")"), "\"\" is no file name");
    EXPECT_EQ(errorOf(R"("p":"images/inside.png\u0000/../x")"),
              "\"images/inside.png\\u0000/../x\" is no file name");
    EXPECT_EQ(errorOf(R"("p":"a.png","e":1)"),
              "bad data URL \"a.png\", expected data:...;base64,...");
    EXPECT_EQ(errorOf(R"("p":"data:image/png;base64,iVB*")"),
              "bad data URL: what follows the comma is not base64");
    EXPECT_NE(errorOf(R"("p":"text.png")").find("DIR/scene/text.png"), std::string::npos);
}

TEST_F(SceneImages, ThatNoLayerShowsAreNotLookedAt)
{
    const project scene =
        LoadSceneText(Scene("", R"("assets":[{"id":"a","p":"missing.png"},{"id":"b"}])"),
                      (scene_ / "scene.json").string(), {}, {});
    EXPECT_TRUE(scene.images.empty());
}

TEST(Base64, DecodesAndRefuses)
{
    const auto decoded = [](std::string_view text) {
        const auto bytes = DecodeBase64(text);
        return bytes ? std::string(bytes->begin(), bytes->end()) : std::string("refused");
    };
    // The vectors of RFC 4648.
    EXPECT_EQ(decoded(""), "");
    EXPECT_EQ(decoded("Zg=="), "f");
    EXPECT_EQ(decoded("Zm8="), "fo");
    EXPECT_EQ(decoded("Zm9v"), "foo");
    EXPECT_EQ(decoded("Zm9vYg"), "foob");
    EXPECT_EQ(decoded("Zm9v\nYmE="), "fooba");
    EXPECT_EQ(decoded("Zm9vYmFy"), "foobar");
    for (const char* bad : {"Z", "Zg=", "Zg==Zg==", "Zm9v====", "Zm9=v", "Zm-v"}) {
        EXPECT_EQ(decoded(bad), "refused") << bad;
    }
}

}  // namespace
}  // namespace orv::test

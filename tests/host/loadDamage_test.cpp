// Damaged files: whatever a disk or a transfer has done to them, loading gives a scene, or one line
// that says where the file is wrong, and soon. ORV_DAMAGE_ROUNDS asks for more than the few of a
// usual run.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "host/image_bytes.h"
#include "host/sceneFixture.h"
#include "image/imageFile.h"
#include "support/damage.h"
#include "support/inputLimits.h"
#include "support/tempFolder.h"

namespace orv {
namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kSeed = 20;

/// Damages of each file: so many passes over all kinds and places.
std::uint64_t Rounds()
{
    const char* asked = std::getenv("ORV_DAMAGE_ROUNDS");
    return asked != nullptr ? std::strtoull(asked, nullptr, 10) : 1;
}

std::vector<fs::path> Examples(const std::string& folder, const std::string& extension)
{
    std::set<fs::path> found;
    for (const auto& each :
         fs::directory_iterator(fs::path(std::getenv("ORV_SOURCE_DIR")) / "examples" / folder)) {
        if (each.path().extension() == extension) found.insert(each.path());
    }
    return {found.begin(), found.end()};
}

/// Calls `use(damaged bytes)` for every damage; a failing one is named.
template <class Use>
void EachDamage(const fs::path& file, const Use& use)
{
    const byteList whole = BytesOf(file.string());
    const std::uint64_t count = Rounds() * kDamageKinds * kDamagePlaces;
    InputLimits limits;
    for (std::uint64_t index = 0; index < count; ++index) {
        const std::string name = fmt::format("{} damaged with seed {}, index {}",
                                             file.filename().string(), kSeed, index);
        SCOPED_TRACE(name);
        limits.Next(name);
        use(Damaged(whole, kSeed, index));
        if (testing::Test::HasFailure()) return;
    }
}

/// "FILE:LINE:COLUMN: reason", "FILE: PATH: reason" with a path of keys and positions, or, about
/// the file as a whole, "FILE: reason".
bool NamesAPlace(const std::string& message, const std::string& file)
{
    static const std::regex kPlace(
        R"((:\d+:\d+: .+)|(: [A-Za-z0-9_-]*(\.[A-Za-z0-9_-]+|\[\d+\]|\[".*"\])*: .+))");
    return message.starts_with(file) && message.find('\n') == std::string::npos &&
           std::regex_match(message.substr(file.size()), kPlace);
}

fs::path PictureCorpus()
{
    return fs::path(std::getenv("ORV_SOURCE_DIR")) / "fuzz/corpus/image";
}

class DamagedScenes : public testing::Test {
protected:
    DamagedScenes() : options_{false, false, {test::TestEffect()}}
    {
        // Beside their images, as the examples are.
        fs::copy(fs::path(std::getenv("ORV_SOURCE_DIR")) / "examples/images",
                 folder_.path() / "images");
    }

    /// Whether the text still is a scene.
    bool Load(const std::string& text)
    {
        try {
            (void)LoadSceneText(text, file_, options_, [this](const std::string& warning) {
                EXPECT_TRUE(NamesAPlace(warning, file_)) << warning;
            });
            return true;
        } catch (const failure& problem) {
            EXPECT_EQ(problem.kind(), failureKind::scene);
            EXPECT_TRUE(NamesAPlace(problem.what(), file_)) << problem.what();
            return false;
        }
    }

    TempFolder folder_;
    std::string file_ = folder_.file("scene.json");
    loadOptions options_;
};

TEST_F(DamagedScenes, GiveASceneOrAnErrorWithItsPlace)
{
    int loaded = 0, refused = 0;
    for (const fs::path& file : Examples("", ".json")) {
        EachDamage(file, [&](const byteList& bytes) {
            ++(Load({bytes.begin(), bytes.end()}) ? loaded : refused);
        });
    }
    // Damage that is always found, or never, would be no damage of the kind that happens.
    EXPECT_GT(loaded, 0);
    EXPECT_GT(refused, loaded);
    std::printf("%d damaged scenes: %d loaded, %d refused\n", loaded + refused, loaded, refused);
}

TEST_F(DamagedScenes, WithDamagedPicturesToo)
{
    const std::string scene =
        test::Scene(R"({"ty":2,"ip":0,"op":1,"refId":"a"})",
                    R"("assets":[{"id":"a","w":8,"h":8,"u":"images/","p":"stripes.png"}])");
    EachDamage(folder_.path() / "images/stripes.png", [&](const byteList& bytes) {
        std::ofstream(folder_.path() / "images/stripes.png", std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        (void)Load(scene);
    });
}

TEST(DamagedPictures, GiveAPictureOrAReason)
{
    int decoded = 0, refused = 0;
    std::vector<fs::path> files = Examples("images", ".png");
    for (const auto& each : fs::directory_iterator(PictureCorpus())) files.push_back(each.path());
    for (const fs::path& file : files) {
        EachDamage(file, [&](const byteList& bytes) {
            try {
                const image picture = DecodeImage(bytes, "a.png");
                EXPECT_EQ(picture.bytes.size(),
                          picture.rowBytes() * static_cast<std::size_t>(picture.height));
                ++decoded;
            } catch (const failure& problem) {
                EXPECT_EQ(problem.kind(), failureKind::scene);
                EXPECT_TRUE(std::string_view(problem.what()).starts_with("a.png: "));
                ++refused;
            }
        });
    }
    EXPECT_GT(refused, decoded);
    std::printf("%d damaged pictures: %d decoded, %d refused\n", decoded + refused, decoded,
                refused);
}

TEST(HangingInput, IsNamed)
{
    InputLimits limits;
    const auto hang = [&] {
        limits.Next("endless.json");
        std::raise(SIGALRM);
    };
    EXPECT_EXIT(hang(), testing::ExitedWithCode(1), "took too long: while running endless.json");
}

TEST(HostilePictures, AskForNoMoreThan100Passes)
{
    // 499 of them over the largest picture took 8 seconds; the file had 180 KB.
    const auto decode = [](const char* name) {
        (void)DecodeImage(BytesOf(PictureCorpus() / name), name);
    };
    EXPECT_NO_THROW(decode("scans_100.jpg"));
    EXPECT_EQ(FailureText(failureKind::scene, [&] { decode("scans_101.jpg"); }),
              "scans_101.jpg: more than 100 scans");
}

}  // namespace
}  // namespace orv

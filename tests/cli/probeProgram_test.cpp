// The built program: `orv mesh`, `orv inspect --camera` and `orv panel`.
#include <fstream>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/runProgram.h"
#include "image/imageFile.h"
#include "image/wholeFile.h"
#include "support/caseName.h"

namespace orv {
namespace {

using nlohmann::json;

/// A red band along a bent path on a layer of 200 x 120; a second instance in a composition.
struct bandScene {
    std::string values{};         ///< of the first instance, each with its leading comma
    std::string layers{}, top{};  ///< JSON to add, each with its leading comma
    std::string mask = "1";
    [[nodiscard]] std::string json() const
    {
        return fmt::format(
            R"({{"fr": 25, "ip": 0, "op": 5, "w": 200, "h": 120{3},
 "assets": [{{"id": "inner", "layers": [{{"ty": 1, "ind": 1, "nm": "nested", "sw": 20, "sh": 20,
   "sc": "#00ff00", "ip": 0, "op": 5, "ks": {{}}, "ef": [{{"ty": 5, "mn": "KAL_Orv", "ef": []}}]}}]}}],
 "layers": [
  {{"ty": 1, "ind": 1, "nm": "band", "sw": 200, "sh": 120, "sc": "#000000", "ip": 0, "op": 5,
   "ks": {{}}, "masksProperties": [{{"mode": "n", "pt": {{"k": {{"c": false,
     "v": [[40, 80], [100, 40], [160, 70]], "i": [[0, 0], [-20, 0], [0, 0]],
     "o": [[0, 0], [20, 0], [0, 0]]}}}}}}],
   "ef": [{{"ty": 5, "mn": "KAL_Orv", "ef": [{{"ix": 2, "v": {{"k": 2}}}},
     {{"ix": 29, "v": {{"k": {2}}}}}, {{"ix": 35, "v": {{"k": 1}}}}{0}]}}]}},
  {{"ty": 1, "ind": 2, "nm": "red", "hd": true, "sw": 100, "sh": 20, "sc": "#ff0000", "ip": 0,
   "op": 5, "ks": {{}}}},
  {{"ty": 0, "ind": 3, "nm": "pre", "refId": "inner", "w": 20, "h": 20, "ip": 0, "op": 5,
   "ks": {{}}}}{1}]}})",
            values, layers, mask, top);
    }
};

constexpr const char* kIn3D = R"(, {"ix": 279, "v": {"k": 2}})";
constexpr const char* kCamera =
    R"(, {"ty": 13, "ind": 9, "parent": 10, "ip": 0, "op": 5, "pe": {"k": 180},
       "ks": {"p": {"k": [0, 0, -260]}, "ry": {"k": 8}, "rx": {"k": -5}}},
      {"ty": 3, "ind": 10, "ddd": 1, "ip": 0, "op": 5, "ks": {"p": {"k": [100, 60, 0]},
       "ry": {"k": 20}, "rz": {"k": 10}}})";

class ProbeProgram : public testing::Test {
protected:
    std::string Write(const bandScene& scene) const { return folder.Write("s.json", scene.json()); }
    [[nodiscard]] std::filesystem::path At(const std::string& name) const
    {
        return folder.path() / name;
    }
    /// The answer of a command that prints JSON.
    [[nodiscard]] json Ask(std::vector<std::string> arguments) const
    {
        arguments.push_back("--json");
        const programResult result = RunOrv(arguments, folder.path());
        EXPECT_EQ(result.code, 0) << result.err;
        return json::parse(result.out, nullptr, /*allow_exceptions=*/false);
    }
    TemporaryFolder folder;
};

image ReadPicture(const std::filesystem::path& file)
{
    std::string data;
    if (!ReadWholeFile(file, 1U << 24, data)) return {};
    return DecodeImage({reinterpret_cast<const std::uint8_t*>(data.data()), data.size()}, file);
}

struct extent {
    double left = 1e9, top = 1e9, right = -1e9, bottom = -1e9;
    void Add(double x, double y)
    {
        left = std::min(left, x), right = std::max(right, x);
        top = std::min(top, y), bottom = std::max(bottom, y);
    }
};

/// Of the pixels that are at least half opaque.
extent ExtentOf(const image& picture)
{
    extent found;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (picture.row(y)[4 * x] < 128) continue;
            found.Add(x, y);
            found.Add(x + 1, y + 1);
        }
    }
    return found;
}

std::array<double, 4> Times(const std::array<double, 4>& p, const json& matrix)
{
    std::array<double, 4> product{};
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 4; ++column)
            product[column] += p[row] * matrix[row][column].get<double>();
    return product;
}

struct viewCase {
    const char* name;
    const char* values;
    const char* layers;
    const char* top;
};
class MeshInView : public ProbeProgram, public testing::WithParamInterface<viewCase> {};

TEST_P(MeshInView, EndsWhereThePictureEnds)
{
    const std::string scene =
        Write({.values = GetParam().values, .layers = GetParam().layers, .top = GetParam().top});
    ASSERT_EQ(
        RunOrv({"render", scene, "--layer", "band", "--frames", "2", "-o", "f.png"}, folder.path())
            .code,
        0);
    ASSERT_EQ(RunOrv({"mesh", scene, "--frame", "2", "-o", "m.json"}, folder.path()).code, 0);
    const json gl = Ask({"inspect", scene, "--camera", "--frame", "2"})["gl"];
    const json mesh = json::parse(std::ifstream(At("m.json")));
    ASSERT_FALSE(mesh["quads"].empty());

    extent projected;
    for (const json& cell : mesh["quads"]) {
        for (const json& p : cell["pos"]) {
            const std::array<double, 4> clip =
                Times(Times({p[0], p[1], p[2], 1.0}, gl["modelView"]), gl["projection"]);
            projected.Add((clip[0] / clip[3] + 1) / 2 * gl["viewport"][2].get<double>(),
                          (clip[1] / clip[3] + 1) / 2 * gl["viewport"][3].get<double>());
        }
    }
    const extent drawn = ExtentOf(ReadPicture(At("f.png")));
    // Edges are smoothed over a pixel on either side.
    EXPECT_NEAR(projected.left, drawn.left, 1.5);
    EXPECT_NEAR(projected.top, drawn.top, 1.5);
    EXPECT_NEAR(projected.right, drawn.right, 1.5);
    EXPECT_NEAR(projected.bottom, drawn.bottom, 1.5);
}
const viewCase kViews[] = {{"Flat", "", "", ""},
                           {"DefaultCamera", kIn3D, "", ""},
                           {"TurnedParentedCamera", kIn3D, kCamera, ""},
                           {"HalfResolution", kIn3D, kCamera, R"(, "kal": {"downsample": 2})"}};
INSTANTIATE_TEST_SUITE_P(Views, MeshInView, testing::ValuesIn(kViews), caseName{});

TEST_F(ProbeProgram, ObjNamesItsMaterialAndEveryCell)
{
    const std::string scene = Write({});
    ASSERT_EQ(RunOrv({"mesh", scene, "-o", "out/m.obj"}, folder.path()).code, 0);
    ASSERT_EQ(RunOrv({"mesh", scene, "-o", "m.json"}, folder.path()).code, 0);
    std::ifstream obj(At("out/m.obj"));
    std::size_t faces = 0;
    bool materialNamed = false;
    for (std::string line; std::getline(obj, line);) {
        faces += line.starts_with("f ") ? 1U : 0U;
        materialNamed = materialNamed || line == "mtllib m.mtl";
    }
    EXPECT_TRUE(materialNamed);
    EXPECT_EQ(faces, json::parse(std::ifstream(At("m.json")))["quads"].size());
    std::string material;
    ASSERT_TRUE(ReadWholeFile(At("out/m.mtl"), 4096, material));
    EXPECT_TRUE(material.starts_with("newmtl ribbon\nKd 1 0 0\n")) << material;
}

TEST_F(ProbeProgram, CameraTellsPlaceAndZoom)
{
    const json all = Ask({"inspect", Write({.values = kIn3D}), "--camera"});
    EXPECT_EQ(all["mode"], "3D");
    // The default camera of a composition 200 wide: 200 x 50 / 36 in front of its middle.
    EXPECT_NEAR(all["camera"]["zoom"].get<double>(), 277.7778, 1e-3);
    EXPECT_NEAR(all["camera"]["matrix"][3][2].get<double>(), -277.7778, 1e-3);
    EXPECT_EQ(all["camera"]["matrix"][3][0], 100.0);
    EXPECT_TRUE(all["camera"]["lights"].empty());
}

struct refusalCase {
    const char* name;
    std::vector<std::string> arguments;  ///< the scene goes behind the first
    int code;
    const char* message;
};
class Refusals : public ProbeProgram, public testing::WithParamInterface<refusalCase> {};
TEST_P(Refusals, SayWhatIsWrong)
{
    const std::string scene = Write({.mask = "0"});
    std::vector<std::string> arguments = GetParam().arguments;
    arguments.insert(arguments.begin() + 1, scene);
    const programResult result = RunOrv(arguments, folder.path());
    EXPECT_EQ(result.code, GetParam().code);
    EXPECT_NE(result.err.find(GetParam().message), std::string::npos) << result.err;
    EXPECT_FALSE(std::filesystem::exists(At("m.ply")));
}
const refusalCase kArguments[] = {
    {"NoOutput", {"mesh"}, 2, "--output"},
    {"Extension", {"mesh", "-o", "m.stl"}, 2, "none of .ply, .obj, .json"},
    {"Frame",
     {"mesh", "-o", "m.ply", "--frame", "5"},
     2,
     "--frame: 5 is outside the scene's frames 0 to 4"},
    {"LayerWithoutEffect",
     {"mesh", "-o", "m.ply", "--layer", "red"},
     2,
     "layer 'red' has no effect KAL Orv"},
    {"EffectNumber",
     {"panel", "--effect", "2"},
     2,
     "--effect: 2 is not one of the effects 1 to 1 of layer 'band'"},
    {"FrameWithoutCamera", {"inspect", "--frame", "1"}, 2, "--camera"},
    {"NoMesh", {"mesh", "-o", "m.ply"}, 1, "\"Mask\" names no mask"},
    {"Unsupervised",
     {"panel", "--changed", "Extrusion"},
     2,
     "--changed 'Extrusion': the effect does not ask to be told of this control"},
    {"Ambiguous",
     {"panel", "--changed", "Reference mask"},
     2,
     "the parameters 14 and 31 have this name; use the index"},
    {"UnknownControl", {"panel", "--changed", "Wobble"}, 2, "no such parameter"}};
INSTANTIATE_TEST_SUITE_P(Arguments, Refusals, testing::ValuesIn(kArguments), caseName{});

/// The control of that index, wherever in the tree it stands.
json Find(const json& controls, int index)
{
    for (const json& each : controls) {
        if (each["index"] == index) return each;
        if (!each.contains("children")) continue;
        if (json found = Find(each["children"], index); !found.is_null()) return found;
    }
    return nullptr;
}

TEST_F(ProbeProgram, PanelShowsGroupsNamesAndTexts)
{
    const json all = Ask({"panel", Write({})});
    EXPECT_EQ(all["layer"], "band");
    EXPECT_EQ(all["effect"], 1);
    const json group = all["controls"][0];
    EXPECT_EQ(group["type"], "group");
    EXPECT_EQ(group["children"][0]["index"], 2);
    EXPECT_EQ(group["children"][0]["text"], "red");
    EXPECT_EQ(Find(all["controls"], 279)["text"], "2D");
    EXPECT_TRUE(all["changed"].empty());
}

TEST_F(ProbeProgram, ChangingTheBoxChangesItInTheWholeProject)
{
    const std::string scene = Write({.values = R"(, {"ix": 282, "v": {"k": 1}})"});
    const json all = Ask({"panel", scene, "--changed", "Allow maximum texture size"});
    const json expected = {{{"composition", "inner"},
                            {"layer", "nested"},
                            {"effect", 1},
                            {"index", 282},
                            {"from", 0.0},
                            {"to", 1.0}}};
    EXPECT_EQ(all["changed"], expected);

    const programResult unset = RunOrv({"panel", scene, "--changed", "282", "--set", "Mask=none"});
    EXPECT_EQ(unset.code, 0);
    EXPECT_EQ(unset.err, "note: nothing was done: \"Mask\" is not set\n");
    EXPECT_EQ(unset.out.find("changed:"), std::string::npos);
}

}  // namespace
}  // namespace orv

// The real module as the host sees it: its exports, its commands, its records.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>

#include <gtest/gtest.h>

#include "module/rig.h"

namespace orv::test {
namespace {

std::string ModulePath()
{
    return std::getenv("ORV_PLUGIN");
}

std::string OutputOf(const std::string& command)
{
    std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string text;
    std::array<char, 256> part{};
    while (pipe && fgets(part.data(), static_cast<int>(part.size()), pipe.get()))
        text += part.data();
    return text;
}

TEST(Module, ExportsTheEntryAlone)
{
    std::istringstream symbols(OutputOf("nm -D --defined-only '" + ModulePath() + "'"));
    std::vector<std::string> names;
    for (std::string address, kind, name; symbols >> address >> kind >> name;)
        names.push_back(name);
    EXPECT_EQ(names, std::vector<std::string>{"EntryPointFunc"});
}

TEST(Module, TwoSetUpsAndSetDownsInOneProcess)
{
    ribbonScene scene;
    scene.masks = PolygonMask({{12, 24}, {52, 24}}, false);
    scene.values = Value(2, "2") + Value(29, "1");
    image picture(40, 16, 8);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 40; ++x) SetPixel(picture, x, y, {255, 10, 200, 30});
    for (int round = 0; round < 2; ++round) {
        Rig rig(scene.json(), {{"source.png", picture}});
        EXPECT_EQ(PixelAt(rig.Layer("ribbon"), 32, 24), (argb{255, 10, 200, 30}))
            << "round " << round;
        rig.host().Close();
    }
}

TEST(Module, TellsItsVersion)
{
    PluginHost host(ModulePath(), {});
    std::string message;
    EXPECT_EQ(host.Send(PF_Cmd_ABOUT, nullptr, nullptr, nullptr, message), PF_Err_NONE);
    EXPECT_EQ(message, "KAL_Orv, v1.6.0\rMask based distortion.");
}

}  // namespace
}  // namespace orv::test

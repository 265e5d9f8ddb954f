// Modules on disk.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "plugin/modulePath.h"
#include "plugin/pluginHost.h"

namespace orv {
namespace {

TEST(Module, IsLoadedAndToldItsPathWithColons)
{
    std::vector<std::string> warnings;
    pluginOptions options;
    options.warn = [&](const std::string& text) { warnings.push_back(text); };
    PluginHost host(PROBE_WITH_ENTRY, options);
    EXPECT_EQ(host.declaration().matchName, "probe_entry");
    EXPECT_EQ(host.declaration().displayName, "probe entry");
    std::string colons = PROBE_WITH_ENTRY;
    std::replace(colons.begin(), colons.end(), '/', ':');
    EXPECT_EQ(warnings, (std::vector<std::string>{"probe_entry: root" + colons}));
    EXPECT_NO_THROW(host.Close());
}

TEST(Module, CanBeSetUpTwiceInOneProcess)
{
    for (int k = 0; k < 2; ++k) EXPECT_NO_THROW(PluginHost(PROBE_WITH_ENTRY, {}).Close());
}

TEST(Module, ThatCannotServeIsRefusedWithItsReason)
{
    const std::string text = (std::filesystem::temp_directory_path() / "orv_no_module.so").string();
    std::ofstream(text) << "not a module";
    struct refusal {
        std::string path, reason;
    };
    const refusal refusals[] = {
        {"/nowhere/Effect.so", "/nowhere/Effect.so: no such plug-in"},
        {PROBE_WITHOUT_ENTRY, std::string(PROBE_WITHOUT_ENTRY) + ": has no EntryPointFunc"},
        {text, text + ": cannot be loaded: "}};
    for (const refusal& each : refusals) {
        try {
            const PluginHost host(each.path, {});
            ADD_FAILURE() << each.path << " was accepted";
        } catch (const failure& fault) {
            EXPECT_EQ(fault.kind(), failureKind::plugin);
            EXPECT_EQ(std::string(fault.what()).substr(0, each.reason.size()), each.reason);
        }
    }
    std::filesystem::remove(text);
}

TEST(ColonPath, ExchangesSeparatorsAndKeepsEveryLetter)
{
    EXPECT_EQ(ColonPath("/a b/c:d/Orv.so"), u"root:a b:c/d:Orv.so");
    EXPECT_EQ(ColonPath("/\xC3\xA9/\xE2\x82\xAC/\xF0\x9D\x84\x9E"),
              u"root:\u00E9:\u20AC:\U0001D11E");
    EXPECT_EQ(ColonPath("/\xFF/\xC3"), u"root:\uFFFD:\uFFFD");
    EXPECT_EQ(ColonPath(""), u"root");
}

}  // namespace
}  // namespace orv

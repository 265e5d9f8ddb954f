// What stands on a command line: frame lists, output patterns, values for parameters. The first
// byte chooses which.
#include <string>
#include <vector>

#include "byteReader.h"
#include "cli/frameList.h"
#include "cli/outputPattern.h"
#include "cli/setOption.h"
#include "declaration.h"
#include "scene/errors.h"
#include "target.h"

namespace orv::fuzz {
namespace {

constexpr int kFirst = -3, kEnd = 2000;  ///< frames of the scene

void TryFrames(const std::string& text)
{
    const std::vector<frameRange> ranges = ParseFrameList(text);
    for (const int frame : ExpandFrames(ranges, kFirst, kEnd)) {
        Require(frame >= kFirst && frame < kEnd, "frames lie in the scene");
    }
}

void TryPattern(const std::string& text)
{
    const outputPattern pattern = ParseOutputPattern(text);
    const std::string file = FrameFile(pattern, 7);
    Require(file.starts_with(pattern.folder) && file.size() > pattern.folder.size(),
            "a frame's file lies in the pattern's folder");
    Require(!pattern.numbered() || FrameFile(pattern, 8) != file, "frames have files of their own");
}

/// One layer with the effect and two masks, one without.
project SmallScene()
{
    project scene;
    composition comp;
    comp.layers.resize(2);
    layer& owner = comp.layers.front();
    owner.name = std::string("a");
    owner.ind = 1;
    owner.masks.resize(2);
    owner.masks.front().name = std::string("m");
    owner.effects.resize(1);
    owner.effects.front().matchName = Declaration().matchName;
    comp.layers.back().index = 1;
    scene.compositions.push_back(comp);
    return scene;
}

void TrySet(const std::string& text)
{
    project scene = SmallScene();
    ApplySets(scene, Declaration(), {ParseSet(text)});
    const auto& values = scene.compositions.front().layers.front().effects.front().values;
    Require(values.size() == 1, "one request sets one value");
    for (const double number : values.begin()->second.constant) {
        Require(std::isfinite(number), "values are finite");
    }
}

}  // namespace
}  // namespace orv::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace orv::fuzz;
    ByteReader bytes(data, size);
    const std::uint8_t choice = bytes.byte();
    try {
        switch (choice % 3) {
            case 0:
                TryFrames(bytes.text());
                break;
            case 1:
                TryPattern(bytes.text());
                break;
            default:
                TrySet(bytes.text());
        }
    } catch (const orv::failure& problem) {
        Require(problem.kind() == orv::failureKind::usage, "a bad argument is a wrong usage");
    }
    return 0;
}

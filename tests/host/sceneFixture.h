// sceneFixture.h: small scenes in memory, and an effect to set parameters of.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "scene/loader.h"

namespace orv::test {

/// "KAL_Orv" with 282 parameters, of which a few have kinds, ranges and names of their own: see the
/// table in sceneFixture.cpp. All others are float sliders "Parameter N" with the disk ID 1000 + N.
effectDeclaration TestEffect();

struct loadedScene {
    project scene;
    std::vector<std::string> warnings;
};
/// Loads `text` as "scene.json" with TestEffect.
loadedScene Load(std::string_view text, bool strict = false);
/// What the failure of loading says; "loaded" when there is none.
std::string LoadError(std::string_view text, bool strict = false);

/// 100 x 50 pixels, frames 0 to 9 at 25 a second; `members` such as R"("assets":[])".
std::string Scene(std::string_view layers, std::string_view members = "");
/// A solid of 20 x 10 pixels; `members` are added to it.
std::string Solid(std::string_view members = "");
/// A solid with one effect whose values are `entries`.
std::string SolidWithEffect(std::string_view entries, std::string_view members = "");
/// A solid with the mask path property `pt`.
std::string SolidWithMask(std::string_view pt, std::string_view members = "");

}  // namespace orv::test

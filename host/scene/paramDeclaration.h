// paramDeclaration.h: a plug-in's parameters as it declared them, in the host's own words.
#pragma once

#include <string>
#include <vector>

namespace orv {

enum class paramKind {
    layer,
    slider,
    floatSlider,
    angle,
    checkbox,
    color,
    popup,
    path,
    point3D,
    groupStart,
    groupEnd
};

struct paramDeclaration {
    int index = 0;  ///< 0 is the input layer
    int id = 0;     ///< disk ID
    paramKind kind = paramKind::layer;
    std::string name;
    std::vector<double> initial;  ///< default as a scene would write it; points in percent; colours
                                  ///< r, g, b, a in 0..1
    double validMin = 0.0, validMax = 0.0, sliderMin = 0.0, sliderMax = 0.0;
    int precision = 0;
    bool percent = false;
    int flags = 0;                     ///< PF_ParamFlag_*
    bool canVary = true;               ///< false: a constant or a single key frame
    std::vector<std::string> choices;  ///< popups
    std::string checkboxText;
};

struct effectDeclaration {
    std::string matchName, displayName;
    std::vector<paramDeclaration> params;  ///< by index, the input layer included
};

}  // namespace orv

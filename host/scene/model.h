// model.h: a scene file, checked and resolved. Plain data; nothing here changes while frames are
// rendered. Lengths are pixels at full resolution, angles degrees, times frames unless said
// otherwise.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "image/image.h"
#include "scene/property.h"

namespace orv {

enum class maskMode { none, add, subtract, intersect, lighten, darken, difference };

struct mask {
    std::string name;
    maskMode mode = maskMode::add;
    bool inverted = false;
    property opacity;  ///< percent
    pathProperty path;
};

/// The values that a scene sets on one effect; parameters without an entry keep their declared
/// default. Values are as the scene writes them (percent, degrees, popups from 1, colours r g b a),
/// each key within the declared range and with all its components. A layer parameter holds the
/// position in the composition's list plus 1 (0: none), a path parameter the position of the mask
/// (from 1; 0: none). Keys of popups, checkboxes, layers and paths all hold. A slider's values are
/// as written: whoever evaluates one rounds it.
struct effect {
    std::string matchName, name;
    bool enabled = true;
    bool loaded = false;             ///< a plug-in of that name is there; others are skipped
    std::map<int, property> values;  ///< by parameter index
    std::string where;               ///< JSON path, for messages
};

/// `rotation` turns about z: a 2D layer's `r` (else `rz`), a 3D layer's `rz`. With `split`, x, y, z
/// hold the position.
struct transformProps {
    property anchor, position, scale, rotation, rotationX, rotationY, rotationZ, orientation,
        opacity;
    bool split = false;
    property positionX, positionY, positionZ;
    bool anchorGiven = false;  ///< cameras and lights: two-node
};

/// Camera and light properties are never empty: a missing one holds its default.
struct cameraProps {
    property zoom, depthOfField, aperture, blurLevel;
    std::optional<property> focusDistance;  ///< missing: the zoom
};

enum class lightType { parallel, spot, point, ambient };

struct lightProps {
    lightType type = lightType::point;
    property intensity, color, coneAngle, coneFeather;
};

enum class layerType { precomposition, solid, image, null, camera, light, empty, skipped };

struct layer {
    int index = 0;  ///< position in the composition's list, 0 topmost
    layerType type = layerType::null;
    std::string name;
    std::optional<int> ind;  ///< several layers may bear one: it means the first
    int parent = -1;         ///< position of the parent layer, -1: none
    double ip = 0.0, op = 0.0, start = 0.0, stretch = 1.0;
    bool hidden = false, threeD = false, motionBlur = false, matteSource = false;
    transformProps transform;
    std::vector<mask> masks;
    std::vector<effect> effects;
    int width = 0, height = 0;          ///< own pixels; 0 for cameras, lights and nulls
    int composition = -1;               ///< precomposition: index in project.compositions, -1 none
    int image = -1;                     ///< image layer: index in project.images, -1 none
    std::array<double, 3> color{};      ///< solid, 0..1
    std::optional<property> timeRemap;  ///< seconds
    cameraProps camera;
    lightProps light;
    std::string where;  ///< JSON path, for messages
};

/// Whether the layer has pixels of its own, at whatever time.
inline bool HasPixels(const layer& l)
{
    switch (l.type) {
        case layerType::precomposition:
            return l.composition >= 0;
        case layerType::image:
            return l.image >= 0;
        case layerType::solid:
        case layerType::empty:
            return true;
        case layerType::null:
        case layerType::camera:
        case layerType::light:
        case layerType::skipped:
            break;
    }
    return false;
}

struct motionBlurSettings {
    bool enabled = false;
    double shutterAngle = 180.0, shutterPhase = -90.0;  ///< degrees
    int samples = 16;
};

/// Index 0 of project.compositions is the main one. A composition asset has the size of the layer
/// that shows it; `width`, `height` are those of the first such layer, else the main composition's.
struct composition {
    std::string id, name;
    int width = 0, height = 0;
    std::vector<layer> layers;  ///< topmost first
    motionBlurSettings motionBlur;
    std::string where;  ///< JSON path of its layers, for messages
};

/// A picture that at least one layer shows.
struct imageAsset {
    std::string id, file;                      ///< file as resolved; "data URL" when embedded
    int width = 0, height = 0;                 ///< as the scene says
    std::shared_ptr<const orv::image> pixels;  ///< decoded, `width` x `height`; never null
};

struct project {
    std::string file, name;
    double frameRate = 25.0;
    int ticksPerFrame = 512;           ///< the host's time step
    int ticksPerSecond = 12800;        ///< the host's time scale
    int firstFrame = 0, endFrame = 0;  ///< frames n with first <= n < end
    std::vector<composition> compositions;
    std::vector<imageAsset> images;
    int depth = 8;  ///< bits per channel, 8 or 16
    int downsampleX = 1, downsampleY = 1;
};

}  // namespace orv

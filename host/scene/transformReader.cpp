#include "scene/transformReader.h"

#include <optional>
#include <string>
#include <string_view>

#include "scene/propertyReader.h"

namespace orv {
namespace {

const propertyRule kScalar{};
const propertyRule kVector{.components = 3};

bool IsSplit(const JsonNode& position)
{
    const std::optional<JsonNode> split = position.find("s");
    return split && split->flag();
}

void ReadPosition(const JsonNode& ks, transformProps& props, const readContext& context)
{
    const std::optional<JsonNode> node = ks.find("p");
    if (!node) return;
    props.split = IsSplit(*node);
    if (!props.split) {
        props.position = ReadProperty(*node, kVector, context);
        return;
    }
    props.positionX = ReadPropertyAt(*node, "x", kScalar, context);
    props.positionY = ReadPropertyAt(*node, "y", kScalar, context);
    props.positionZ = ReadPropertyAt(*node, "z", kScalar, context);
}

void WarnIgnored(const JsonNode& ks, std::string_view key, const std::string& reason)
{
    const std::optional<JsonNode> node = ks.find(key);
    if (node && HoldsNonZero(*node)) node->warn(reason);
}

}  // namespace

transformProps ReadTransform(const JsonNode& layerNode, const layer& l, const readContext& context)
{
    transformProps props;
    const std::optional<JsonNode> ks = layerNode.find("ks");
    if (!ks) return props;

    props.anchor = ReadPropertyAt(*ks, "a", kVector, context);
    props.anchorGiven = ks->find("a").has_value();
    ReadPosition(*ks, props, context);
    const bool isViewer = l.type == layerType::camera || l.type == layerType::light;
    if (!isViewer) {
        props.scale = ReadPropertyAt(*ks, "s", kVector, context);
        props.opacity = ReadPropertyAt(*ks, "o", kScalar, context);
    }

    const bool isSpatial = isViewer || l.threeD;
    props.rotation =
        ReadPropertyAt(*ks, !isSpatial && ks->find("r") ? "r" : "rz", kScalar, context);
    props.rotationX = ReadPropertyAt(*ks, "rx", kScalar, context);
    props.rotationY = ReadPropertyAt(*ks, "ry", kScalar, context);
    props.orientation = ReadPropertyAt(*ks, "or", kVector, context);
    if (!isSpatial) {
        for (const std::string_view key : {"rx", "ry", "or"}) {
            WarnIgnored(*ks, key, "not 0 on a 2D layer, ignored");
        }
    }
    WarnIgnored(*ks, "sk", "skew is not supported, ignored");
    return props;
}

}  // namespace orv

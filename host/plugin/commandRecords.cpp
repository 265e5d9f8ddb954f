#include "plugin/commandRecords.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include <fmt/format.h>

#include "plugin/callbacks.h"
#include "plugin/worldOperations.h"

namespace orv {

namespace {

constexpr std::uint8_t kSentinel = 0x6D;

/// What a command without an instance is known by.
PF_ProgPtr ModuleRef()
{
    static PF_ProgPtr ref = NewToken<PF_ProgPtr>();
    return ref;
}

/// Shape and text layers are as large as the layer that shows their composition.
bool HasOwnSize(const layer& l)
{
    return l.type != layerType::empty && l.width > 0 && l.height > 0;
}

int FullWidth(const effectFrame& frame)
{
    return HasOwnSize(*frame.owner) ? frame.owner->width : frame.shown.width;
}
int FullHeight(const effectFrame& frame)
{
    return HasOwnSize(*frame.owner) ? frame.owner->height : frame.shown.height;
}

void CheckSize(const effectFrame& frame, const image& input)
{
    const int width = AtDivisor(FullWidth(frame), frame.quality.divisorX);
    const int height = AtDivisor(FullHeight(frame), frame.quality.divisorY);
    if (input.width == width && input.height == height) return;
    throw std::invalid_argument(
        fmt::format("effect input of {} x {} pixels for a layer of {} x {} at this resolution",
                    input.width, input.height, width, height));
}

/// The world of a layer parameter, with the default that the effect declared.
PF_LayerDef WithDefault(const PF_EffectWorld& world, const PF_ParamDef& declared)
{
    PF_LayerDef def = world;
    def.dephault = declared.u.ld.dephault;
    return def;
}

}  // namespace

paramSource ParamSourceOf(const effectFrame& frame, const ScriptedValues& scripted)
{
    const auto at = static_cast<std::size_t>(frame.effectIndex);
    return {.comp = frame.shown.comp,
            .owner = frame.owner,
            .values = at < frame.owner->effects.size() ? &frame.owner->effects[at] : nullptr,
            .scripted = scripted.Of({frame.shown.comp, frame.owner->index, frame.effectIndex}),
            .width = FullWidth(frame),
            .height = FullHeight(frame),
            .divisorX = frame.quality.divisorX,
            .divisorY = frame.quality.divisorY};
}

CommandRecords::CommandRecords(HostSession& session, const recordContents& contents)
    : session_(session)
{
    context_.instance = contents.instance;
    context_.frame = contents.frame;
    context_.out_data = &out_.data;
    in_.inter = InteractCallbacks();
    in_.utils = UtilCallbacks();
    in_.pica_basicP = BasicSuite();
    in_.effect_ref = contents.instance != nullptr ? contents.instance->ref : ModuleRef();
    in_.quality = PF_Quality_HI;
    in_.version = {static_cast<A_short>(session.options.apiMajor), 0};
    in_.downsample_x = in_.downsample_y = {1, 1};
    if (contents.frame == nullptr) return;
    FillFrame(*contents.frame);
    if (contents.withParams) FillParams(*contents.frame);
    FillWorlds(contents);
}

void CommandRecords::FillWorlds(const recordContents& contents)
{
    if (contents.input != nullptr) {
        CheckSize(*contents.frame, *contents.input);
        input_ = OwnWorldFrom(session_.worlds, *contents.input);
        inputChecksum_ = Checksum(*input_);
        context_.input = &input_->world;
        if (!params_.empty()) params_[0].u.ld = WithDefault(input_->world, params_[0]);
    }
    if (contents.output != nullptr) {
        output_ = OwnWorldFrom(session_.worlds, *contents.output);
    } else if (contents.blankOutput) {
        output_ = OwnBlankWorld(session_.worlds, *contents.input);
    }
    if (output_) outputDef_ = output_->world;
}

void CommandRecords::FillFrame(const effectFrame& frame)
{
    context_.clock.emplace(*frame.shown.scene, *frame.owner, frame.t);
    context_.params = ParamSourceOf(frame, session_.scripted);
    in_.current_time = context_.clock->currentTime();
    in_.time_step = context_.clock->timeStep();
    in_.total_time = context_.clock->totalTime();
    in_.time_scale = context_.clock->timeScale();
    in_.width = FullWidth(frame);
    in_.height = FullHeight(frame);
    in_.extent_hint = {0, 0, AtDivisor(in_.width, frame.quality.divisorX),
                       AtDivisor(in_.height, frame.quality.divisorY)};
    in_.downsample_x = {1, static_cast<A_u_long>(frame.quality.divisorX)};
    in_.downsample_y = {1, static_cast<A_u_long>(frame.quality.divisorY)};
}

void CommandRecords::FillParams(const effectFrame& frame)
{
    const ParamDeclarations& declared = session_.params;
    for (int index = 0; index < declared.count(); ++index) {
        PF_ParamDef def = declared.def(index);
        if (index > 0) {
            WriteValue(context_.params, declared.declaration(index), frame.t, session_.pathIds,
                       def);
            FillLayerParam(frame, declared.declaration(index), def);
        }
        if (context_.instance != nullptr) {
            const controlState& control =
                context_.instance->controls[static_cast<std::size_t>(index)];
            def.ui_flags &= ~PF_ParamUIFlags{PF_PUI_DISABLED};
            if (control.disabled) def.ui_flags |= PF_PUI_DISABLED;
        }
        params_.push_back(def);
    }
    for (PF_ParamDef& def : params_) paramPointers_.push_back(&def);
}

void CommandRecords::FillLayerParam(const effectFrame& frame, const paramDeclaration& declared,
                                    PF_ParamDef& def)
{
    if (declared.kind != paramKind::layer) return;
    const int named = NamedLayer(context_.params, declared, frame.t);
    PF_EffectWorld world{};
    if (named >= 0) {
        const layer& of = frame.shown.comp->layers[static_cast<std::size_t>(named)];
        world = context_.Hold(session_.layerWorlds.Get(session_.worlds, frame, of, frame.t));
    }
    def.u.ld = WithDefault(world, session_.params.def(declared.index));
}

void CommandRecords::Prepare()
{
    out_ = {};
    out_.sentinels.fill(kSentinel);
    in_.num_params = out_.data.num_params = session_.params.count();
    in_.global_data = out_.data.global_data = session_.globalData;
    if (context_.instance == nullptr) {
        out_.data.out_flags = session_.globalFlags;
        out_.data.out_flags2 = session_.globalFlags2;
        return;
    }
    in_.sequence_data = out_.data.sequence_data = context_.instance->sequenceData;
    in_.frame_data = out_.data.frame_data = context_.instance->frameData;
    out_.data.out_flags = context_.instance->flags;
    out_.data.out_flags2 = context_.instance->flags2;
}

void CommandRecords::ClearOutput()
{
    if (output_) FillWorld(*output_, output_->world.extent_hint, PF_Pixel{});
}

PF_ParamDef** CommandRecords::params()
{
    return paramPointers_.empty() ? nullptr : paramPointers_.data();
}

PF_LayerDef* CommandRecords::output()
{
    return output_ ? &outputDef_ : nullptr;
}

std::string CommandRecords::Damage() const
{
    const auto isSentinel = [](std::uint8_t byte) { return byte == kSentinel; };
    if (std::memchr(out_.data.return_msg, 0, sizeof out_.data.return_msg) == nullptr ||
        !std::ranges::all_of(out_.sentinels, isSentinel)) {
        return fmt::format("return_msg holds more than {} bytes", PF_MAX_EFFECT_MSG_LEN + 0);
    }
    if (input_ && Checksum(*input_) != inputChecksum_) {
        return "the input's pixels were changed";
    }
    for (const sharedLayerWorld& each : context_.layerWorlds) {
        if (Checksum(*each->pixels) != each->checksum) {
            return "the pixels of a layer parameter were changed";
        }
    }
    return {};
}

}  // namespace orv

// commandRecords.h: the records that a command hands to the effect.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "host_api.h"

#include "plugin/hostSession.h"

namespace orv {

/// Whose values a frame's effect has, and at which resolution.
paramSource ParamSourceOf(const effectFrame& frame, const ScriptedValues& scripted);

/// What the records are filled from. All is borrowed.
struct recordContents {
    effectInstance* instance = nullptr;  ///< null: a command for the module
    const effectFrame* frame = nullptr;  ///< null: no scene
    bool withParams = false;             ///< needs a frame
    const image* input = nullptr;
    const image* output = nullptr;  ///< its bytes are what the effect finds
    bool blankOutput = false;       ///< an output of the input's size, transparent black
};

/// Fills them on construction: values at the frame's instant, layer parameters with their worlds
/// (which may run other effects: not while a command runs), input and output. Without a frame
/// only what concerns the module is there. Owns the worlds of input and output.
class CommandRecords {
public:
    /// Throws std::invalid_argument when the input has not the layer's size at the frame's preview
    /// resolution.
    CommandRecords(HostSession& session, const recordContents& contents);
    ~CommandRecords() = default;
    CommandRecords(const CommandRecords&) = delete;
    CommandRecords& operator=(const CommandRecords&) = delete;

    /// Brings handles, flags and the message to what stands before a command.
    void Prepare();
    /// Makes the output transparent black.
    void ClearOutput();

    [[nodiscard]] PF_InData& in_data() { return in_; }
    [[nodiscard]] PF_OutData& out_data() { return out_.data; }
    /// Null without parameters.
    [[nodiscard]] PF_ParamDef** params();
    [[nodiscard]] PF_LayerDef* output();

    [[nodiscard]] const hostWorld* inputWorld() const { return input_.get(); }
    [[nodiscard]] const hostWorld* outputWorld() const { return output_.get(); }
    [[nodiscard]] commandContext& context() { return context_; }
    /// What the effect did to records that are not its own: "" if nothing.
    [[nodiscard]] std::string Damage() const;

private:
    void FillWorlds(const recordContents& contents);
    void FillFrame(const effectFrame& frame);
    void FillParams(const effectFrame& frame);
    void FillLayerParam(const effectFrame& frame, const paramDeclaration& declared,
                        PF_ParamDef& def);

    /// Bytes behind the message tell when one was longer than its place.
    struct guardedOut {
        PF_OutData data{};
        std::array<std::uint8_t, 256> sentinels{};
    };

    HostSession& session_;
    commandContext context_;
    PF_InData in_{};
    guardedOut out_;
    std::vector<PF_ParamDef> params_;
    std::vector<PF_ParamDef*> paramPointers_;
    ownedWorld input_, output_;
    std::uint64_t inputChecksum_ = 0;
    PF_LayerDef outputDef_{};
};

}  // namespace orv

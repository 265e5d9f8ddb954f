#include "plainEffect.h"

#include <cstdio>
#include <cstring>
#include <exception>
#include <new>

#include "plainHost.h"

namespace plain {

carefulness care;

namespace {

using HandleSuite = Suite<PF_HandleSuite2>;

// ---- parameters

PF_ParamDef Param(PF_ParamType type, A_long id, const char* name)
{
    PF_ParamDef def{};
    def.param_type = type;
    def.uu.id = id;
    std::snprintf(def.name, sizeof def.name, "%s", name);
    return def;
}

PF_ParamDef Slider(A_long id, const char* name, A_long least, A_long most, A_long value)
{
    PF_ParamDef def = Param(PF_Param_SLIDER, id, name);
    def.u.sd.valid_min = def.u.sd.slider_min = least;
    def.u.sd.valid_max = def.u.sd.slider_max = most;
    def.u.sd.value = def.u.sd.dephault = value;
    return def;
}

PF_ParamDef Percent(A_long id, const char* name, float least, float most, float value)
{
    PF_ParamDef def = Param(PF_Param_FLOAT_SLIDER, id, name);
    PF_FloatSliderDef& slider = def.u.fs_d;
    slider.valid_min = least;
    slider.valid_max = most;
    slider.slider_min = 0.0F;
    slider.slider_max = 100.0F;
    slider.dephault = value;
    slider.value = static_cast<double>(value);
    slider.precision = 1;
    slider.display_flags = PF_ValueDisplayFlag_PERCENT;
    return def;
}

PF_ParamDef Popup(A_long id, const char* name, const char* choices, A_short count)
{
    PF_ParamDef def = Param(PF_Param_POPUP, id, name);
    def.u.pd.namesptr = choices;
    def.u.pd.num_choices = count;
    def.u.pd.value = def.u.pd.dephault = 1;
    return def;
}

PF_ParamDef Checkbox(A_long id, const char* name, const char* text, A_long value)
{
    PF_ParamDef def = Param(PF_Param_CHECKBOX, id, name);
    def.u.bd.nameptr = text;
    def.u.bd.value = def.u.bd.dephault = value;
    return def;
}

PF_ParamDef Ink(A_long id, const char* name)
{
    PF_ParamDef def = Param(PF_Param_COLOR, id, name);
    def.u.cd.value = def.u.cd.dephault = {255, 240, 120, 30};
    return def;
}

PF_ParamDef Place(A_long id, const char* name)
{
    PF_ParamDef def = Param(PF_Param_POINT_3D, id, name);
    def.u.point3d_d.x_dephault = def.u.point3d_d.y_dephault = 50.0;
    return def;
}

void SetUpParams(const call& with)
{
    PF_ParamDef defs[] = {Param(PF_Param_GROUP_START, 100, "Dots"),
                          Param(PF_Param_PATH, 1, "Path"),
                          Param(PF_Param_LAYER, 2, "Picture"),
                          Percent(3, "Amount", 0.0F, 400.0F, 60.0F),
                          Slider(4, "Bands", 1, 8, 3),
                          Checkbox(5, "Over", "the original", 1),
                          Popup(6, "Direction", "Across|Down|Both", 3),
                          Ink(7, "Ink"),
                          Param(PF_Param_ANGLE, 8, "Turn"),
                          Place(9, "Place"),
                          Param(PF_Param_GROUP_END, 101, "")};
    for (PF_ParamDef& def : defs)
        Check(with.in_data.inter.add_param(with.in_data.effect_ref, -1, &def));
    with.out_data.num_params = kParamCount;
}

// ---- handles

/// A new handle of `size` bytes with a copy of `content` in it. The caller's to dispose of.
PF_Handle NewHandle(const HandleSuite& handles, const void* content, std::size_t size)
{
    PF_Handle handle = handles->host_new_handle(size);
    if (handle == nullptr) throw PF_Err{PF_Err_OUT_OF_MEMORY};
    void* memory = handles->host_lock_handle(handle);
    if (memory == nullptr) {
        handles->host_dispose_handle(handle);
        throw PF_Err{PF_Err_INTERNAL_STRUCT_DAMAGED};
    }
    std::memcpy(memory, content, size);
    handles->host_unlock_handle(handle);
    return handle;
}

/// Puts `fresh` in the place of what both records hold.
void Replace(const HandleSuite& handles, PF_Handle& inField, PF_Handle& outField, PF_Handle fresh)
{
    if (inField != nullptr) handles->host_dispose_handle(inField);
    inField = nullptr;
    outField = fresh;
}

sequenceRecord FreshRecord()
{
    return {kRecordMagic, 4, {0, 1, 3, 7}};
}

/// Reads on in a record that may come from anywhere.
void TrustRecord(PF_Handle handle)
{
    const auto* record = static_cast<const volatile sequenceRecord*>(*handle);
    volatile A_u_long sum = 0;
    for (A_u_long k = 0; k < record->entries; ++k) sum = sum + record->table[k];
}

// ---- commands

void SetUpModule(const call& with)
{
    const HandleSuite handles(with.in_data, kPFHandleSuite, kPFHandleSuiteVersion2);
    const A_u_long magic = kRecordMagic;
    PF_Handle record = NewHandle(handles, &magic, sizeof magic);
    with.out_data.my_version = PF_VERSION(1, 0, 0, PF_Stage_DEVELOP, 0);
    with.out_data.out_flags = PF_OutFlag_DEEP_COLOR_AWARE | PF_OutFlag_SEND_UPDATE_PARAMS_UI;
    with.out_data.out_flags2 = PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS;
    with.out_data.global_data = record;
}

void SetDownModule(const call& with)
{
    HandleSuite handles(with.in_data, kPFHandleSuite, kPFHandleSuiteVersion2);
    Replace(handles, with.in_data.global_data, with.out_data.global_data, nullptr);
    handles.close();
}

/// Set-up and re-set-up: what an old record holds is not read.
void SetUpSequence(const call& with)
{
    if (!care.distrustsRecords && with.in_data.sequence_data != nullptr)
        TrustRecord(with.in_data.sequence_data);
    const HandleSuite handles(with.in_data, kPFHandleSuite, kPFHandleSuiteVersion2);
    const sequenceRecord fresh = FreshRecord();
    Replace(handles, with.in_data.sequence_data, with.out_data.sequence_data,
            NewHandle(handles, &fresh, sizeof fresh));
}

void SetDownSequence(const call& with)
{
    HandleSuite handles(with.in_data, kPFHandleSuite, kPFHandleSuiteVersion2);
    Replace(handles, with.in_data.sequence_data, with.out_data.sequence_data, nullptr);
    handles.close();
}

void SetUpFrame(const call& with)
{
    const HandleSuite handles(with.in_data, kPFHandleSuite, kPFHandleSuiteVersion2);
    Replace(handles, with.in_data.frame_data, with.out_data.frame_data,
            NewHandle(handles, &with.in_data.current_time, sizeof with.in_data.current_time));
}

void SetDownFrame(const call& with)
{
    HandleSuite handles(with.in_data, kPFHandleSuite, kPFHandleSuiteVersion2);
    Replace(handles, with.in_data.frame_data, with.out_data.frame_data, nullptr);
    handles.close();
}

/// An effect that shows its input needs the camera's changes told, for the sake of an example.
void QueryFlags(const call& with)
{
    ParamAt over(with.in_data, kOver, with.in_data.current_time);
    const bool shows = over.def().u.bd.value != 0;
    over.close();
    with.out_data.out_flags2 = PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS |
                               (shows ? PF_OutFlag2_I_USE_3D_CAMERA : PF_OutFlags2{});
}

/// Bands are of no use for dots of no size.
void UpdateControls(const call& with)
{
    if (with.params == nullptr) return;
    Suite<PF_ParamUtilsSuite3> utils(with.in_data, kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3);
    PF_ParamDef def = *with.params[kBands];
    def.ui_flags &= ~PF_ParamUIFlags{PF_PUI_DISABLED};
    if (with.params[kAmount]->u.fs_d.value <= 0.0) def.ui_flags |= PF_PUI_DISABLED;
    Check(utils->PF_UpdateParamUI(with.in_data.effect_ref, kBands, &def));
    utils.close();
}

void Dispatch(PF_Cmd cmd, const call& with)
{
    switch (cmd) {
        case PF_Cmd_ABOUT:
            std::snprintf(with.out_data.return_msg, sizeof with.out_data.return_msg,
                          "Dots along a mask");
            return;
        case PF_Cmd_GLOBAL_SETUP:
            return SetUpModule(with);
        case PF_Cmd_GLOBAL_SETDOWN:
            return SetDownModule(with);
        case PF_Cmd_PARAMS_SETUP:
            return SetUpParams(with);
        case PF_Cmd_SEQUENCE_SETUP:
        case PF_Cmd_SEQUENCE_RESETUP:
            return SetUpSequence(with);
        case PF_Cmd_SEQUENCE_SETDOWN:
            return SetDownSequence(with);
        case PF_Cmd_FRAME_SETUP:
            return SetUpFrame(with);
        case PF_Cmd_FRAME_SETDOWN:
            return SetDownFrame(with);
        case PF_Cmd_RENDER:
            return Render(with);
        case PF_Cmd_UPDATE_PARAMS_UI:
            return UpdateControls(with);
        case PF_Cmd_QUERY_DYNAMIC_FLAGS:
            return QueryFlags(with);
        default:
            return;
    }
}

}  // namespace

PF_Err Run(PF_Cmd cmd, const call& with) noexcept
try {
    Dispatch(cmd, with);
    return PF_Err_NONE;
} catch (PF_Err err) {
    return err;
} catch (const std::bad_alloc&) {
    return PF_Err_OUT_OF_MEMORY;
} catch (...) {
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
}

}  // namespace plain

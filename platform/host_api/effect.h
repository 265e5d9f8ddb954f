/* effect.h: the command protocol: PF_Cmd, PF_InData, PF_OutData, and the callbacks in PF_InData.
 *
 * `effect_ref` names the instance that a command is for; every callback takes it back. A callback
 * returns 0 or a PF_Err. Whatever a callback hands out must be given back before the command ends.
 */
#pragma once

#include "params.h"
#include "spbasic.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef A_long PF_Cmd;
enum {
    PF_Cmd_ABOUT = 0,
    PF_Cmd_GLOBAL_SETUP = 1,
    PF_Cmd_GLOBAL_SETDOWN = 3,
    PF_Cmd_PARAMS_SETUP = 4,
    PF_Cmd_SEQUENCE_SETUP = 5,
    PF_Cmd_SEQUENCE_RESETUP = 6,
    PF_Cmd_SEQUENCE_FLATTEN = 7,
    PF_Cmd_SEQUENCE_SETDOWN = 8,
    PF_Cmd_FRAME_SETUP = 10,
    PF_Cmd_RENDER = 11,
    PF_Cmd_FRAME_SETDOWN = 12,
    PF_Cmd_USER_CHANGED_PARAM = 13,
    PF_Cmd_UPDATE_PARAMS_UI = 14,
    PF_Cmd_QUERY_DYNAMIC_FLAGS = 18
};

enum {
    PF_OutFlag_DISPLAY_ERROR_MESSAGE = 0x00000100, /* ours */
    PF_OutFlag_I_USE_SHUTTER_ANGLE = 0x00080000,
    PF_OutFlag_DEEP_COLOR_AWARE = 0x02000000,
    PF_OutFlag_SEND_UPDATE_PARAMS_UI = 0x04000000
};
typedef A_long PF_OutFlags;

enum {
    PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS = 1,
    PF_OutFlag2_I_USE_3D_CAMERA = 2,
    PF_OutFlag2_I_USE_3D_LIGHTS = 4
};
typedef A_long PF_OutFlags2;

enum { PF_Stage_DEVELOP = 0 };
/* Version 3 bits of it above sub-version 4, fix 4, stage 2 and build 9 bits:
 * PF_VERSION(2, 0, 0, PF_Stage_DEVELOP, 0) is 0x00100000. */
#define PF_VERSION(vers, subvers, bugvers, stage, build)                                    \
    (((A_u_long)(vers) << 19) | ((A_u_long)(subvers) << 15) | ((A_u_long)(bugvers) << 11) | \
     ((A_u_long)(stage) << 9) | (A_u_long)(build))

typedef A_long PF_Quality;
enum { PF_Quality_LO = 0, PF_Quality_HI = 1 };

typedef A_long PF_Field;
enum { PF_Field_FRAME = 0 };

typedef A_long PF_PlatDataID;
enum { PF_PlatData_EXE_FILE_PATH_W = 6 /* ours */ };
enum { AEFX_MAX_PATH = 260 }; /* UTF-16 units in the buffer for a path, the closing 0 included */

typedef struct {
    /* The parameter's value at a time (`what_time` / `time_scale` seconds, `time_step` a frame).
     * Must be matched by checkin_param, after a failure too. */
    PF_Err (*checkout_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long what_time,
                             A_long time_step, A_u_long time_scale, PF_ParamDef* param);
    PF_Err (*checkin_param)(PF_ProgPtr effect_ref, PF_ParamDef* param);
    /* PARAMS_SETUP only. -1 appends; another index must equal the number of parameters so far. */
    PF_Err (*add_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, PF_ParamDef* def);
    /* 0 to go on, PF_Interrupt_CANCEL to stop. */
    PF_Err (*abort)(PF_ProgPtr effect_ref);
} PF_InteractCallbacks;

typedef struct {
    int (*sprintf)(A_char* buffer, const A_char* format, ...);
    A_char* (*strcpy)(A_char* dst, const A_char* src);
} PF_ANSICallbacks;

typedef struct PF_UtilCallbacks {
    /* Null rectangles mean the whole world. Equal sizes copy bytes, others scale bilinearly at
     * pixel centres with clamped edges. Both worlds must have the same pixel format. */
    PF_Err (*copy)(PF_ProgPtr effect_ref, PF_EffectWorld* src, PF_EffectWorld* dst, PF_Rect* src_r,
                   PF_Rect* dst_r);
    /* A null colour is transparent black, a null rectangle the whole world. */
    PF_Err (*fill)(PF_ProgPtr effect_ref, const PF_Pixel* color, const PF_Rect* dst_rect,
                   PF_EffectWorld* world);
    /* Address of the first pixel of an 8-bit world (or `pixels0` typed); null for other depths. */
    PF_Err (*get_pixel_data8)(PF_EffectWorld* world, PF_PixelPtr pixels0, PF_Pixel8** pixPP);
    PF_Err (*get_platform_data)(PF_ProgPtr effect_ref, PF_PlatDataID which, void* data);
    PF_ANSICallbacks ansi;
} PF_UtilCallbacks;

typedef struct {
    A_short major, minor;
} PF_SpecVersion;

/* What the host tells an effect with each command. The field order is ours. */
typedef struct PF_InData {
    PF_InteractCallbacks inter;
    PF_UtilCallbacks* utils;
    PF_ProgPtr effect_ref;
    PF_Quality quality;
    PF_SpecVersion version; /* of the effect API */
    A_long num_params;
    A_long current_time;  /* layer time */
    A_long time_step;     /* ticks a frame */
    A_long total_time;    /* the layer's duration */
    A_u_long time_scale;  /* ticks a second */
    A_long width, height; /* the layer's full size, whatever the preview resolution */
    PF_Rect extent_hint;
    PF_RationalScale downsample_x, downsample_y; /* 1 / preview divisor */
    PF_Handle global_data, sequence_data, frame_data;
    SPBasicSuite* pica_basicP;
} PF_InData;

/* What an effect tells the host. The host fills handles, flags and num_params in before each
 * command and takes handles and flags over after it. */
typedef struct PF_OutData {
    A_u_long my_version;
    A_long num_params; /* the input layer included; read after PARAMS_SETUP */
    PF_Handle global_data, sequence_data, frame_data;
    PF_OutFlags out_flags;
    PF_OutFlags2 out_flags2;
    A_char return_msg[PF_MAX_EFFECT_MSG_LEN +
                      1]; /* shown to the user: a warning with result 0, else the reason */
} PF_OutData;

/* The one function that an effect exports. `params[0]` is the input layer. */
typedef PF_Err (*PF_EntryPoint)(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data,
                                PF_ParamDef* params[], PF_LayerDef* output, void* extra);

/* Short forms of the callbacks. */
static inline PF_Err PF_CHECKOUT_PARAM(PF_InData* in_data, PF_ParamIndex index, A_long what_time,
                                       A_long time_step, A_u_long time_scale, PF_ParamDef* param)
{
    return in_data->inter.checkout_param(in_data->effect_ref, index, what_time, time_step,
                                         time_scale, param);
}
static inline PF_Err PF_CHECKIN_PARAM(PF_InData* in_data, PF_ParamDef* param)
{
    return in_data->inter.checkin_param(in_data->effect_ref, param);
}
static inline PF_Err PF_ABORT(PF_InData* in_data)
{
    return in_data->inter.abort(in_data->effect_ref);
}
static inline PF_Err PF_COPY(PF_InData* in_data, PF_EffectWorld* src, PF_EffectWorld* dst,
                             PF_Rect* src_r, PF_Rect* dst_r)
{
    return in_data->utils->copy(in_data->effect_ref, src, dst, src_r, dst_r);
}
static inline PF_Err PF_FILL(PF_InData* in_data, const PF_Pixel* color, const PF_Rect* dst_rect,
                             PF_EffectWorld* world)
{
    return in_data->utils->fill(in_data->effect_ref, color, dst_rect, world);
}
static inline PF_Err PF_GET_PIXEL_DATA8(PF_InData* in_data, PF_EffectWorld* world,
                                        PF_PixelPtr pixels0, PF_Pixel8** pixPP)
{
    return in_data->utils->get_pixel_data8(world, pixels0, pixPP);
}
static inline A_char* PF_STRCPY(PF_InData* in_data, A_char* dst, const A_char* src)
{
    return in_data->utils->ansi.strcpy(dst, src);
}
static inline A_Boolean PF_WORLD_IS_DEEP(const PF_EffectWorld* world)
{
    return (A_Boolean)((world->world_flags & PF_WorldFlag_DEEP) != 0);
}

#ifdef __cplusplus
}
#endif

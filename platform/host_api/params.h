/* params.h: how an effect declares its parameters and how their values reach it. */
#pragma once

#include "worlds.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Numbers are ours. */
typedef enum {
    PF_Param_LAYER = 0,
    PF_Param_SLIDER = 1,
    PF_Param_ANGLE = 3,
    PF_Param_CHECKBOX = 4,
    PF_Param_COLOR = 5,
    PF_Param_POPUP = 7,
    PF_Param_FLOAT_SLIDER = 10,
    PF_Param_PATH = 12,
    PF_Param_GROUP_START = 13,
    PF_Param_GROUP_END = 14,
    PF_Param_POINT_3D = 18
} PF_ParamType;

enum {
    PF_ParamFlag_CANNOT_TIME_VARY = 2,
    PF_ParamFlag_COLLAPSE_TWIRLY = 32,
    PF_ParamFlag_SUPERVISE = 64,
    PF_ParamFlag_SKIP_REVEAL_WHEN_UNHIDDEN = 512
};
typedef A_long PF_ParamFlags;

enum { PF_PUI_DISABLED = 32 };
typedef A_long PF_ParamUIFlags;

enum { PF_ValueDisplayFlag_NONE = 0, PF_ValueDisplayFlag_PERCENT = 1 };

enum { PF_MAX_EFFECT_PARAM_NAME_LEN = 31, PF_MAX_EFFECT_MSG_LEN = 255 };

typedef struct {
    A_long value;
    A_char value_str[32], value_desc[32];
    A_long valid_min, valid_max, slider_min, slider_max, dephault;
} PF_SliderDef;

typedef struct {
    PF_FpLong value, phase;
    A_char value_desc[32];
    PF_FpShort valid_min, valid_max, slider_min, slider_max, dephault;
    A_short precision;     /* decimals shown */
    A_short display_flags; /* PF_ValueDisplayFlag_* */
    A_long fs_flags;
    PF_FpShort curve_tolerance;
    PF_Boolean useExponent;
    PF_FpShort exponent;
} PF_FloatSliderDef;

/* Degrees, 16.16; any number of turns. */
typedef struct {
    PF_Fixed value, dephault;
} PF_AngleDef;

typedef struct {
    A_long value, dephault;
    const A_char* nameptr; /* text beside the box */
} PF_CheckBoxDef;

typedef struct {
    PF_Pixel value, dephault;
} PF_ColorDef;

/* `value` counts from 1; `namesptr` holds the choices, separated by "|". */
typedef struct {
    A_long value;
    A_short num_choices, dephault;
    const A_char* namesptr;
} PF_PopupDef;

/* Values in pixels of the layer at the preview resolution; defaults in percent of the layer. */
typedef struct {
    PF_FpLong x_value, y_value, z_value, x_dephault, y_dephault, z_dephault;
} PF_Point3DDef;

typedef struct {
    PF_PathID path_id;
    A_long dephault;
} PF_PathDef;

typedef union {
    PF_LayerDef ld;
    PF_SliderDef sd;
    PF_FloatSliderDef fs_d;
    PF_AngleDef ad;
    PF_CheckBoxDef bd;
    PF_ColorDef cd;
    PF_PopupDef pd;
    PF_Point3DDef point3d_d;
    PF_PathDef path_d;
} PF_ParamDefUnion;

/* The field order is ours. */
typedef struct PF_ParamDef {
    struct {
        A_long id;
    } uu; /* disk ID */
    PF_ParamUIFlags ui_flags;
    A_short ui_width, ui_height;
    PF_ParamType param_type;
    A_char name[PF_MAX_EFFECT_PARAM_NAME_LEN + 1];
    PF_ParamFlags flags;
    PF_ParamDefUnion u;
} PF_ParamDef;

/* 16 opaque bytes; equal bytes mean equal pixels. */
typedef struct {
    A_u_char bytes[16];
} PF_State;

#ifdef __cplusplus
}
#endif

/* pf_suites.h: the suites of the effect side ("PF ... Suite"). Name and version stand above each
 * record; the functions in it are those that effects of this tree use, in an order that is ours. */
#pragma once

#include "effect.h"

#ifdef __cplusplus
extern "C" {
#endif

#define kPFANSISuite "PF ANSI Suite"
#define kPFANSISuiteVersion1 1
typedef struct PF_ANSISuite1 {
    int (*sprintf)(A_char* buffer, const A_char* format, ...);
} PF_ANSISuite1;

#define kPFHandleSuite "PF Handle Suite"
#define kPFHandleSuiteVersion2 2
typedef struct PF_HandleSuite2 {
    PF_Handle (*host_new_handle)(A_u_longlong size); /* zeroed memory, or null */
    void* (*host_lock_handle)(PF_Handle handle); /* the memory, or null when it cannot be locked */
    void (*host_unlock_handle)(PF_Handle handle);
    void (*host_dispose_handle)(PF_Handle handle);
} PF_HandleSuite2;

#define kPFPathQuerySuite "PF Path Query Suite"
#define kPFPathQuerySuiteVersion1 1
typedef struct PF_PathQuerySuite1 {
    /* ID of the effect layer's mask `index`, counted from 0. */
    PF_Err (*PF_PathInfo)(PF_ProgPtr effect_ref, A_long index, PF_PathID* unique_id);
    /* The path's shape at a time; null without an error when no mask has that ID. */
    PF_Err (*PF_CheckoutPath)(PF_ProgPtr effect_ref, PF_PathID unique_id, A_long what_time,
                              A_long time_step, A_u_long time_scale, PF_PathOutlinePtr* path);
    PF_Err (*PF_CheckinPath)(PF_ProgPtr effect_ref, PF_PathID unique_id, PF_Boolean changed,
                             PF_PathOutlinePtr path);
} PF_PathQuerySuite1;

/* Coordinates are pixels of the layer at the preview resolution, origin top left. Arc lengths
 * outside 0..length are clamped; derivatives are with respect to arc length, so that (dx, dy) has
 * length 1 wherever the path has a direction, also where a control point lies on its vertex. */
#define kPFPathDataSuite "PF Path Data Suite"
#define kPFPathDataSuiteVersion1 1
typedef struct PF_PathDataSuite1 {
    PF_Err (*PF_PathIsOpen)(PF_ProgPtr effect_ref0, PF_PathOutlinePtr path, PF_Boolean* openB);
    PF_Err (*PF_PathNumSegments)(PF_ProgPtr effect_ref0, PF_PathOutlinePtr path,
                                 A_long* num_segments);
    PF_Err (*PF_PathPrepareSegLength)(PF_ProgPtr effect_ref0, PF_PathOutlinePtr path,
                                      A_long which_seg, A_long frequency,
                                      PF_PathSegPrepPtr* length_prepPP);
    PF_Err (*PF_PathGetSegLength)(PF_ProgPtr effect_ref0, PF_PathOutlinePtr path, A_long which_seg,
                                  PF_PathSegPrepPtr* length_prepPP, PF_FpLong* length);
    PF_Err (*PF_PathEvalSegLength)(PF_ProgPtr effect_ref0, PF_PathOutlinePtr path,
                                   PF_PathSegPrepPtr* length_prepPP, A_long which_seg,
                                   PF_FpLong length, PF_FpLong* x, PF_FpLong* y);
    PF_Err (*PF_PathEvalSegLengthDeriv1)(PF_ProgPtr effect_ref0, PF_PathOutlinePtr path,
                                         PF_PathSegPrepPtr* length_prepPP, A_long which_seg,
                                         PF_FpLong length, PF_FpLong* x, PF_FpLong* y,
                                         PF_FpLong* deriv1x, PF_FpLong* deriv1y);
    PF_Err (*PF_PathCleanupSegLength)(PF_ProgPtr effect_ref0, PF_PathOutlinePtr path,
                                      A_long which_seg, PF_PathSegPrepPtr* length_prepPP);
} PF_PathDataSuite1;

#define kPFParamUtilsSuite "PF Param Utils Suite"
#define kPFParamUtilsSuiteVersion3 3
typedef struct PF_ParamUtilsSuite3 {
    /* Shows a control as `def` says (name, UI flags, value). UPDATE_PARAMS_UI only. */
    PF_Err (*PF_UpdateParamUI)(PF_ProgPtr effect_ref, PF_ParamIndex param_index,
                               const PF_ParamDef* def);
    /* A digest of everything that a parameter's value depends on from `start`, for `duration`.
     * Index 0 is the input: masks and earlier effects are in it. */
    PF_Err (*PF_GetCurrentState)(PF_ProgPtr effect_ref, PF_ParamIndex param_index,
                                 const A_Time* startPT0, const A_Time* durationPT0,
                                 PF_State* state);
    PF_Err (*PF_AreStatesIdentical)(PF_ProgPtr effect_ref, const PF_State* state1,
                                    const PF_State* state2, A_Boolean* samePB);
} PF_ParamUtilsSuite3;

#define kPFWorldSuite "PF World Suite"
#define kPFWorldSuiteVersion1 1
typedef struct PF_WorldSuite1 {
    PF_Err (*new_world)(PF_ProgPtr effect_ref, A_long width, A_long height, PF_NewWorldFlags flags,
                        PF_EffectWorld* world);
    PF_Err (*dispose_world)(PF_ProgPtr effect_ref, PF_EffectWorld* world);
} PF_WorldSuite1;

#define kPFWorldSuiteVersion2 2
typedef struct PF_WorldSuite2 {
    PF_Err (*PF_NewWorld)(PF_ProgPtr effect_ref, A_long widthL, A_long heightL,
                          PF_Boolean clear_pixB, PF_PixelFormat pixel_format,
                          PF_EffectWorld* worldP);
    PF_Err (*PF_DisposeWorld)(PF_ProgPtr effect_ref, PF_EffectWorld* worldP);
    PF_Err (*PF_GetPixelFormat)(const PF_EffectWorld* worldP, PF_PixelFormat* pixel_formatP);
} PF_WorldSuite2;

#define kPFPixelDataSuite "PF Pixel Data Suite"
#define kPFPixelDataSuiteVersion1 1
typedef struct PF_PixelDataSuite1 {
    /* The first pixel of a world of that depth, null for other depths. */
    PF_Err (*get_pixel_data8)(PF_EffectWorld* worldP, PF_PixelPtr pixelsP0, PF_Pixel8** pixPP0);
    PF_Err (*get_pixel_data16)(PF_EffectWorld* worldP, PF_PixelPtr pixelsP0, PF_Pixel16** pixPP0);
    PF_Err (*get_pixel_data_float)(PF_EffectWorld* worldP, PF_PixelPtr pixelsP0,
                                   PF_PixelFloat** pixPP0);
} PF_PixelDataSuite1;

enum { PF_Xfer_BEHIND = 1, PF_Xfer_IN_FRONT = 2 };
typedef A_long PF_TransferMode;
enum { PF_MF_Alpha_PREMUL = 0, PF_MF_Alpha_STRAIGHT = 1 }; /* ours */
typedef A_long PF_ModeFlags;

typedef struct {
    PF_TransferMode xfer;
    A_long rand_seed;
    A_u_char opacity; /* 0..255 */
    PF_Boolean rgb_only;
    A_u_short opacitySu; /* 0..32768 */
} PF_CompositeMode;

#define kPFWorldTransformSuite "PF World Transform Suite"
#define kPFWorldTransformSuiteVersion1 1
typedef struct PF_WorldTransformSuite1 {
    /* Lays `src_rec` of `src` on `dst` at (dest_x, dest_y): IN_FRONT over it, BEHIND under it. */
    PF_Err (*transfer_rect)(PF_ProgPtr effect_ref, PF_Quality quality, PF_ModeFlags m_flags,
                            PF_Field field, const PF_Rect* src_rec, const PF_EffectWorld* src,
                            const PF_CompositeMode* comp_mode, const PF_MaskWorld* mask_world0,
                            A_long dest_x, A_long dest_y, PF_EffectWorld* dst);
} PF_WorldTransformSuite1;

#define kPFFillMatteSuite "PF Fill Matte Suite"
#define kPFFillMatteSuiteVersion2 2
typedef struct PF_FillMatteSuite2 {
    /* Multiplies colours by alpha (`forward` not 0) or divides them by it (0): to the nearest,
     * clamped, colour kept where alpha is 0. */
    PF_Err (*premultiply)(PF_ProgPtr effect_ref, A_long forward, PF_EffectWorld* dst);
} PF_FillMatteSuite2;

#ifdef __cplusplus
}
#endif

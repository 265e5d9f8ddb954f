/* aegp_suites.h: the suites of the project side ("AEGP ... Suite"). Name and version stand above
 * each record; the functions in it are those that effects of this tree use, in an order that is
 * ours. */
#pragma once

#include "effect.h"

#ifdef __cplusplus
extern "C" {
#endif

#define kAEGPUtilitySuite "AEGP Utility Suite"
#define kAEGPUtilitySuiteVersion11 11
typedef struct AEGP_UtilitySuite11 {
    A_Err (*AEGP_RegisterWithAEGP)(AEGP_GlobalRefcon global_refcon, const A_char* plugin_nameZ,
                                   AEGP_PluginID* plugin_id);
} AEGP_UtilitySuite11;
#define kAEGPUtilitySuiteVersion13 13
typedef struct AEGP_UtilitySuite13 {
    A_Err (*AEGP_ExecuteScript)(AEGP_PluginID plugin_id, const A_char* scriptZ,
                                A_Boolean platform_encodingB, AEGP_MemHandle* resultPH0,
                                AEGP_MemHandle* error_stringPH0);
} AEGP_UtilitySuite13;

#define kAEGPPersistentDataSuite "AEGP Persistent Data Suite"
#define kAEGPPersistentDataSuiteVersion3 3
typedef struct AEGP_PersistentDataSuite3 {
    A_Err (*AEGP_GetApplicationBlob)(AEGP_PersistentBlobH* blobPH);
    A_Err (*AEGP_DoesKeyExist)(AEGP_PersistentBlobH blobH, const A_char* section_keyZ,
                               const A_char* value_keyZ, A_Boolean* existsPB);
    A_Err (*AEGP_SetLong)(AEGP_PersistentBlobH blobH, const A_char* section_keyZ,
                          const A_char* value_keyZ, A_long value);
} AEGP_PersistentDataSuite3;

#define kAEGPPFInterfaceSuite "AEGP PF Interface Suite"
#define kAEGPPFInterfaceSuiteVersion1 1
typedef struct AEGP_PFInterfaceSuite1 {
    A_Err (*AEGP_GetEffectLayer)(PF_ProgPtr effect_ref, AEGP_LayerH* layerPH);
    A_Err (*AEGP_GetNewEffectForEffect)(AEGP_PluginID aegp_plugin_id, PF_ProgPtr effect_ref,
                                        AEGP_EffectRefH* effectPH);
    /* From the effect's layer time to the time of its composition. */
    A_Err (*AEGP_ConvertEffectToCompTime)(PF_ProgPtr effect_ref, A_long what_timeL,
                                          A_u_long time_scaleLu, A_Time* comp_timePT);
    /* The active camera at a composition time; null when there is none. */
    A_Err (*AEGP_GetEffectCamera)(PF_ProgPtr effect_ref, const A_Time* comp_timePT,
                                  AEGP_LayerH* camera_layerPH);
} AEGP_PFInterfaceSuite1;

/* Numbers are ours. */
typedef A_long AEGP_ObjectType;
enum {
    AEGP_ObjectType_NONE = -1,
    AEGP_ObjectType_AV = 0,
    AEGP_ObjectType_LIGHT = 1,
    AEGP_ObjectType_CAMERA = 2,
    AEGP_ObjectType_TEXT = 3,
    AEGP_ObjectType_VECTOR = 4
};
enum { AEGP_LayerFlag_VIDEO_ACTIVE = 1, AEGP_LayerFlag_MOTION_BLUR = 8 };
typedef A_long AEGP_LayerFlags;

#define kAEGPLayerSuite "AEGP Layer Suite"
#define kAEGPLayerSuiteVersion11 11
typedef struct AEGP_LayerSuite11 {
    A_Err (*AEGP_GetCompNumLayers)(AEGP_CompH compH, A_long* num_layersPL);
    /* 0 is the topmost layer. */
    A_Err (*AEGP_GetCompLayerByIndex)(AEGP_CompH compH, A_long layer_indexL, AEGP_LayerH* layerPH);
    A_Err (*AEGP_GetLayerObjectType)(AEGP_LayerH layerH, AEGP_ObjectType* object_typeP);
} AEGP_LayerSuite11;
#define kAEGPLayerSuiteVersion12 12
typedef struct AEGP_LayerSuite12 {
    A_Err (*AEGP_GetLayerParentComp)(AEGP_LayerH layerH, AEGP_CompH* compPH);
    A_Err (*AEGP_GetLayerFlags)(AEGP_LayerH layerH, AEGP_LayerFlags* layer_flagsP);
} AEGP_LayerSuite12;
#define kAEGPLayerSuiteVersion13 13
typedef struct AEGP_LayerSuite13 {
    A_Err (*AEGP_GetLayerToWorldXform)(AEGP_LayerH layerH, const A_Time* comp_timeP,
                                       A_Matrix4* xform);
    A_Err (*AEGP_GetLayerToWorldXformFromView)(AEGP_LayerH layerH, const A_Time* view_timeP,
                                               const A_Time* comp_timeP, A_Matrix4* xform);
} AEGP_LayerSuite13;

enum { AEGP_CompFlag_ENABLE_MOTION_BLUR = 8 };
typedef A_long AEGP_CompFlags;

#define kAEGPCompSuite "AEGP Comp Suite"
#define kAEGPCompSuiteVersion18 18
typedef struct AEGP_CompSuite18 {
    A_Err (*AEGP_GetItemFromComp)(AEGP_CompH compH, AEGP_ItemH* itemPH);
} AEGP_CompSuite18;
#define kAEGPCompSuiteVersion19 19
typedef struct AEGP_CompSuite19 {
    A_Err (*AEGP_GetCompFlags)(AEGP_CompH compH, AEGP_CompFlags* comp_flagsP);
    /* As parts of a frame: degrees / 360. A denominator of 0 means not known. */
    A_Err (*AEGP_GetCompShutterAnglePhase)(AEGP_CompH compH, A_Ratio* angle, A_Ratio* phase);
    A_Err (*AEGP_GetCompSuggestedMotionBlurSamples)(AEGP_CompH compH, A_long* samplesPL);
} AEGP_CompSuite19;

#define kAEGPItemSuite "AEGP Item Suite"
#define kAEGPItemSuiteVersion13 13
typedef struct AEGP_ItemSuite13 {
    A_Err (*AEGP_GetItemDimensions)(AEGP_ItemH itemH, A_long* widthPL, A_long* heightPL);
} AEGP_ItemSuite13;

#define kAEGPCameraSuite "AEGP Camera Suite"
#define kAEGPCameraSuiteVersion2 2
typedef struct AEGP_CameraSuite2 {
    A_Err (*AEGP_GetDefaultCameraDistanceToImagePlane)(AEGP_CompH compH, A_FpLong* dist_to_planePF);
} AEGP_CameraSuite2;

typedef A_long AEGP_LightType;
enum {
    AEGP_LightType_PARALLEL = 0,
    AEGP_LightType_SPOT = 1,
    AEGP_LightType_POINT = 2,
    AEGP_LightType_AMBIENT = 3
};

#define kAEGPLightSuite "AEGP Light Suite"
#define kAEGPLightSuiteVersion2 2
typedef struct AEGP_LightSuite2 {
    A_Err (*AEGP_GetLightType)(AEGP_LayerH light_layerH, AEGP_LightType* light_typeP);
} AEGP_LightSuite2;

#define kAEGPMaskSuite "AEGP Layer Mask Suite"
#define kAEGPMaskSuiteVersion6 6
typedef struct AEGP_MaskSuite6 {
    A_Err (*AEGP_GetLayerNumMasks)(AEGP_LayerH aegp_layerH, A_long* num_masksPL);
    A_Err (*AEGP_GetLayerMaskByIndex)(AEGP_LayerH aegp_layerH, A_long mask_indexL,
                                      AEGP_MaskRefH* maskPH);
    A_Err (*AEGP_DisposeMask)(AEGP_MaskRefH mask_refH);
} AEGP_MaskSuite6;

/* Streams. Values are what a user reads: percent, degrees, popups from 1, checkboxes 0 or 1, pixels
 * at full resolution, colours as 0..1. Numbers are ours. */
typedef A_long AEGP_LayerStream;
enum {
    AEGP_LayerStream_ZOOM = 1,
    AEGP_LayerStream_DEPTH_OF_FIELD,
    AEGP_LayerStream_FOCUS_DISTANCE,
    AEGP_LayerStream_APERTURE,
    AEGP_LayerStream_BLUR_LEVEL,
    AEGP_LayerStream_INTENSITY,
    AEGP_LayerStream_COLOR,
    AEGP_LayerStream_CONE_ANGLE,
    AEGP_LayerStream_CONE_FEATHER
};
typedef A_long AEGP_LTimeMode;
enum { AEGP_LTimeMode_LayerTime = 0, AEGP_LTimeMode_CompTime = 1 };

typedef A_long AEGP_StreamType;
enum {
    AEGP_StreamType_NO_DATA = 0,
    AEGP_StreamType_ThreeD,
    AEGP_StreamType_OneD,
    AEGP_StreamType_COLOR,
    AEGP_StreamType_LAYER_ID,
    AEGP_StreamType_MASK_ID
};
typedef struct {
    A_FpLong x, y, z;
} AEGP_ThreeDVal;
typedef struct {
    A_FpLong alphaF, redF, greenF, blueF;
} AEGP_ColorVal;
typedef union {
    A_FpLong one_d;
    AEGP_ThreeDVal three_d;
    AEGP_ColorVal color;
    A_long layer_id;
    A_long mask_id;
} AEGP_StreamVal2;
typedef struct {
    AEGP_StreamRefH streamH;
    AEGP_StreamVal2 val;
} AEGP_StreamValue2;

#define kAEGPStreamSuite "AEGP Stream Suite"
#define kAEGPStreamSuiteVersion9 9
typedef struct AEGP_StreamSuite9 {
    A_Err (*AEGP_GetNewEffectStreamByIndex)(AEGP_PluginID aegp_plugin_id,
                                            AEGP_EffectRefH effect_refH, PF_ParamIndex param_index,
                                            AEGP_StreamRefH* streamPH);
    A_Err (*AEGP_DisposeStream)(AEGP_StreamRefH streamH);
    A_Err (*AEGP_GetNewStreamValue)(AEGP_PluginID aegp_plugin_id, AEGP_StreamRefH streamH,
                                    AEGP_LTimeMode time_mode, const A_Time* timePT,
                                    A_Boolean pre_expressionB, AEGP_StreamValue2* valueP);
    A_Err (*AEGP_DisposeStreamValue)(AEGP_StreamValue2* valueP);
    /* Nothing to give back. */
    A_Err (*AEGP_GetLayerStreamValue)(AEGP_LayerH layerH, AEGP_LayerStream which_stream,
                                      AEGP_LTimeMode time_mode, const A_Time* timePT,
                                      A_Boolean pre_expressionB, AEGP_StreamVal2* stream_valP,
                                      AEGP_StreamType* stream_typeP0);
} AEGP_StreamSuite9;

enum { AEGP_DynStreamFlag_HIDDEN = 2 };
typedef A_long AEGP_DynStreamFlags;

#define kAEGPDynamicStreamSuite "AEGP Dynamic Stream Suite"
#define kAEGPDynamicStreamSuiteVersion5 5
typedef struct AEGP_DynamicStreamSuite5 {
    A_Err (*AEGP_GetDynamicStreamFlags)(AEGP_StreamRefH streamH,
                                        AEGP_DynStreamFlags* stream_flagsP);
    A_Err (*AEGP_SetDynamicStreamFlag)(AEGP_StreamRefH streamH, AEGP_DynStreamFlags one_flag,
                                       A_Boolean undoableB, A_Boolean setB);
} AEGP_DynamicStreamSuite5;

#define kAEGPEffectSuite "AEGP Effect Suite"
#define kAEGPEffectSuiteVersion2 2
#define kAEGPEffectSuiteVersion3 3
typedef struct AEGP_EffectSuite3 {
    A_Err (*AEGP_DisposeEffect)(AEGP_EffectRefH effect_refH);
} AEGP_EffectSuite3;
typedef AEGP_EffectSuite3 AEGP_EffectSuite2;

#define kAEGPIterateSuite "AEGP Iterate Suite"
#define kAEGPIterateSuiteVersion1 1
typedef struct AEGP_IterateSuite1 {
    /* Calls `fn_func` once for each i in 0..iterationsL-1, on several threads at once; the first
     * result that is not 0 comes back. */
    A_Err (*AEGP_IterateGeneric)(A_long iterationsL, void* refconPV,
                                 PF_Err (*fn_func)(void* refconPV, A_long thread_indexL, A_long i,
                                                   A_long iterationsL));
} AEGP_IterateSuite1;

#ifdef __cplusplus
}
#endif

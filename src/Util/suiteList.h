// suiteList.h: every host suite that the effect takes through AEGP_SuiteHandler, one line each. The
// list decides the accessors, the cache and what is released.
#pragma once

#include "host_api.h"

/// SUITE(accessor, record of functions, name, version)
#define ORV_FOR_EACH_SUITE(SUITE)                                                                \
    SUITE(ANSISuite1, PF_ANSISuite1, kPFANSISuite, kPFANSISuiteVersion1)                         \
    SUITE(HandleSuite2, PF_HandleSuite2, kPFHandleSuite, kPFHandleSuiteVersion2)                 \
    SUITE(PathQuerySuite1, PF_PathQuerySuite1, kPFPathQuerySuite, kPFPathQuerySuiteVersion1)     \
    SUITE(PathDataSuite1, PF_PathDataSuite1, kPFPathDataSuite, kPFPathDataSuiteVersion1)         \
    SUITE(ParamUtilsSuite3, PF_ParamUtilsSuite3, kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3) \
    SUITE(WorldSuite1, PF_WorldSuite1, kPFWorldSuite, kPFWorldSuiteVersion1)                     \
    SUITE(WorldSuite2, PF_WorldSuite2, kPFWorldSuite, kPFWorldSuiteVersion2)                     \
    SUITE(PixelDataSuite1, PF_PixelDataSuite1, kPFPixelDataSuite, kPFPixelDataSuiteVersion1)     \
    SUITE(WorldTransformSuite1, PF_WorldTransformSuite1, kPFWorldTransformSuite,                 \
          kPFWorldTransformSuiteVersion1)                                                        \
    SUITE(FillMatteSuite2, PF_FillMatteSuite2, kPFFillMatteSuite, kPFFillMatteSuiteVersion2)     \
    SUITE(UtilitySuite11, AEGP_UtilitySuite11, kAEGPUtilitySuite, kAEGPUtilitySuiteVersion11)    \
    SUITE(UtilitySuite13, AEGP_UtilitySuite13, kAEGPUtilitySuite, kAEGPUtilitySuiteVersion13)    \
    SUITE(PersistentDataSuite3, AEGP_PersistentDataSuite3, kAEGPPersistentDataSuite,             \
          kAEGPPersistentDataSuiteVersion3)                                                      \
    SUITE(PFInterfaceSuite1, AEGP_PFInterfaceSuite1, kAEGPPFInterfaceSuite,                      \
          kAEGPPFInterfaceSuiteVersion1)                                                         \
    SUITE(LayerSuite11, AEGP_LayerSuite11, kAEGPLayerSuite, kAEGPLayerSuiteVersion11)            \
    SUITE(LayerSuite12, AEGP_LayerSuite12, kAEGPLayerSuite, kAEGPLayerSuiteVersion12)            \
    SUITE(LayerSuite13, AEGP_LayerSuite13, kAEGPLayerSuite, kAEGPLayerSuiteVersion13)            \
    SUITE(CompSuite18, AEGP_CompSuite18, kAEGPCompSuite, kAEGPCompSuiteVersion18)                \
    SUITE(CompSuite19, AEGP_CompSuite19, kAEGPCompSuite, kAEGPCompSuiteVersion19)                \
    SUITE(ItemSuite13, AEGP_ItemSuite13, kAEGPItemSuite, kAEGPItemSuiteVersion13)                \
    SUITE(CameraSuite2, AEGP_CameraSuite2, kAEGPCameraSuite, kAEGPCameraSuiteVersion2)           \
    SUITE(LightSuite2, AEGP_LightSuite2, kAEGPLightSuite, kAEGPLightSuiteVersion2)               \
    SUITE(MaskSuite6, AEGP_MaskSuite6, kAEGPMaskSuite, kAEGPMaskSuiteVersion6)                   \
    SUITE(StreamSuite9, AEGP_StreamSuite9, kAEGPStreamSuite, kAEGPStreamSuiteVersion9)           \
    SUITE(DynamicStreamSuite5, AEGP_DynamicStreamSuite5, kAEGPDynamicStreamSuite,                \
          kAEGPDynamicStreamSuiteVersion5)                                                       \
    SUITE(EffectSuite2, AEGP_EffectSuite2, kAEGPEffectSuite, kAEGPEffectSuiteVersion2)           \
    SUITE(EffectSuite3, AEGP_EffectSuite3, kAEGPEffectSuite, kAEGPEffectSuiteVersion3)           \
    SUITE(IterateSuite1, AEGP_IterateSuite1, kAEGPIterateSuite, kAEGPIterateSuiteVersion1)

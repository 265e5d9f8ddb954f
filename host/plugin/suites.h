// suites.h: the tables of functions that an effect acquires by name and version.
#pragma once

#include "host_api.h"

namespace orv {

// ansiSuite.cpp
extern const PF_ANSISuite1 kAnsiSuite1;
// handleSuite.cpp
extern const PF_HandleSuite2 kHandleSuite2;
// worldSuites.cpp
extern const PF_WorldSuite1 kWorldSuite1;
extern const PF_WorldSuite2 kWorldSuite2;
extern const PF_PixelDataSuite1 kPixelDataSuite1;
extern const PF_WorldTransformSuite1 kWorldTransformSuite1;
extern const PF_FillMatteSuite2 kFillMatteSuite2;
// pathSuites.cpp
extern const AEGP_MaskSuite6 kMaskSuite6;
extern const PF_PathQuerySuite1 kPathQuerySuite1;
extern const PF_PathDataSuite1 kPathDataSuite1;
// paramUtilsSuite.cpp
extern const PF_ParamUtilsSuite3 kParamUtilsSuite3;
// projectSuites.cpp
extern const AEGP_PFInterfaceSuite1 kPFInterfaceSuite1;
extern const AEGP_LayerSuite11 kLayerSuite11;
extern const AEGP_LayerSuite12 kLayerSuite12;
extern const AEGP_LayerSuite13 kLayerSuite13;
extern const AEGP_CompSuite18 kCompSuite18;
extern const AEGP_CompSuite19 kCompSuite19;
extern const AEGP_ItemSuite13 kItemSuite13;
extern const AEGP_CameraSuite2 kCameraSuite2;
extern const AEGP_LightSuite2 kLightSuite2;
// streamSuites.cpp
extern const AEGP_StreamSuite9 kStreamSuite9;
extern const AEGP_DynamicStreamSuite5 kDynamicStreamSuite5;
extern const AEGP_EffectSuite2 kEffectSuite2;
extern const AEGP_EffectSuite3 kEffectSuite3;
// utilitySuites.cpp
extern const AEGP_UtilitySuite11 kUtilitySuite11;
extern const AEGP_UtilitySuite13 kUtilitySuite13;
extern const AEGP_PersistentDataSuite3 kPersistentDataSuite3;
extern const AEGP_IterateSuite1 kIterateSuite1;

}  // namespace orv

/* worlds.h: pixels and images ("worlds").
 *
 * Channels lie in memory as alpha, red, green, blue; alpha is straight.
 *   8 bits:  0..255            16 bits: 0..32768 (32768 is 1.0)            float: 0.0..1.0
 * Row y of a world starts at data + y * rowbytes; rowbytes is a multiple of the pixel size and may
 * be larger than width pixels. Nothing may be written between the end of a row and the next. */
#pragma once

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct {
    A_u_char alpha, red, green, blue;
} PF_Pixel8;
typedef PF_Pixel8 PF_Pixel;
typedef struct {
    A_u_short alpha, red, green, blue;
} PF_Pixel16;
typedef struct {
    PF_FpShort alpha, red, green, blue;
} PF_PixelFloat;
/* Untyped pixel address; PF_WORLD_IS_DEEP and PF_GetPixelFormat tell the real type. */
typedef void* PF_PixelPtr;

enum { PF_MAX_CHAN8 = 255, PF_MAX_CHAN16 = 32768 };

/* Numbers are ours. */
typedef enum {
    PF_PixelFormat_INVALID = 0,
    PF_PixelFormat_ARGB32 = 1,
    PF_PixelFormat_ARGB64 = 2,
    PF_PixelFormat_ARGB128 = 3
} PF_PixelFormat;

enum { PF_WorldFlag_DEEP = 1, PF_WorldFlag_WRITEABLE = 2 };
typedef A_long PF_WorldFlags;

/* Flags of the world suite's first version. */
enum {
    PF_NewWorldFlag_NONE = 0,
    PF_NewWorldFlag_CLEAR_PIXELS = 1,
    PF_NewWorldFlag_DEEP_PIXELS = 2
};
typedef A_long PF_NewWorldFlags;

typedef struct PF_LayerDef {
    PF_WorldFlags world_flags;
    PF_PixelPtr data; /* null exactly when a layer parameter names no layer */
    A_long rowbytes;
    A_long width, height; /* pixels */
    PF_Rect extent_hint;  /* (0, 0, width, height) */
    void* platform_ref;   /* the host's own, not for effects */
    A_long dephault;      /* layer parameters only: PF_LayerDefault_NONE or _MYSELF */
} PF_LayerDef;
typedef PF_LayerDef PF_EffectWorld;
typedef PF_EffectWorld PF_MaskWorld;

enum { PF_LayerDefault_MYSELF = -1, PF_LayerDefault_NONE = 0 };

#ifdef __cplusplus
}
#endif

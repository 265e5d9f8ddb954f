/* types.h: scalars, error codes, opaque handles and small records of the host's effect API.
 *
 * Values named in the effect's contract are the host's published ones. Where a comment says "ours",
 * the number or layout was chosen here; it is stable, and only this tree relies on it. */
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef char A_char;
typedef uint8_t A_u_char;
typedef int16_t A_short;
typedef uint16_t A_u_short;
typedef int32_t A_long;
typedef uint32_t A_u_long;
typedef uint64_t A_u_longlong;
typedef double A_FpLong;
typedef float PF_FpShort;
typedef double PF_FpLong;
typedef uint8_t A_Boolean;
typedef uint8_t PF_Boolean;
typedef uint16_t A_UTF16Char;
typedef int32_t PF_Fixed; /* 16.16 */
typedef A_long A_Err;
typedef A_long PF_Err;
typedef A_long PF_ParamIndex;

/* Results of every call in both directions. */
enum {
    PF_Err_NONE = 0,
    PF_Err_OUT_OF_MEMORY = 4,
    PF_Err_INTERNAL_STRUCT_DAMAGED = 512,
    PF_Err_INVALID_INDEX = 513,    /* ours */
    PF_Err_INVALID_CALLBACK = 515, /* ours: a callback that this command may not use */
    PF_Err_BAD_CALLBACK_PARAM = 516,
    PF_Interrupt_CANCEL = 518 /* what `abort` answers when the user asked to stop */
};
enum { A_Err_NONE = 0 };

/* 4 x 4 row by row; points are row vectors, the translation stands in row 3. */
typedef struct {
    A_FpLong mat[4][4];
} A_Matrix4;

/* `value` / `scale` seconds. */
typedef struct {
    A_long value;
    A_u_long scale;
} A_Time;

typedef struct {
    A_long num;
    A_u_long den;
} A_Ratio;
typedef struct {
    A_long num;
    A_u_long den;
} PF_RationalScale;

/* Half open: columns left..right-1, rows top..bottom-1. */
typedef struct {
    A_long left, top, right, bottom;
} PF_Rect;

/* A host handle is a pointer to a stable pointer: *h is the memory while the handle lives. */
typedef void** PF_Handle;
typedef struct AEGP_MemBlock* AEGP_MemHandle;

typedef void* AEGP_GlobalRefcon;
typedef A_long AEGP_PluginID;

/* Opaque references. Those marked "give back" are counted by the host. */
typedef struct PF_ProgRecord* PF_ProgPtr; /* one effect instance */
typedef struct AEGP_Layer* AEGP_LayerH;
typedef struct AEGP_Comp* AEGP_CompH;
typedef struct AEGP_Item* AEGP_ItemH;
typedef struct AEGP_MaskRef* AEGP_MaskRefH;     /* give back: AEGP_DisposeMask */
typedef struct AEGP_EffectRef* AEGP_EffectRefH; /* give back: AEGP_DisposeEffect */
typedef struct AEGP_StreamRef* AEGP_StreamRefH; /* give back: AEGP_DisposeStream */
typedef struct AEGP_PersistentBlob* AEGP_PersistentBlobH;

typedef A_u_long PF_PathID;                       /* unique in the host, 0: no path */
typedef struct PF_PathOutline* PF_PathOutlinePtr; /* give back: PF_CheckinPath */
typedef struct PF_PathSegPrep* PF_PathSegPrepPtr; /* give back: PF_PathCleanupSegLength */

#ifdef __cplusplus
}
#endif

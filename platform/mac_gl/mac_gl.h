/* mac_gl.h: the window and GL-context services that the effect is written against, with their macOS
 * names, over EGL. A desktop OpenGL 2.1 compatibility context, off screen.
 *
 * Device choice, at aglChoosePixelFormat (environment variable ORV_GL, read each time):
 *   unset     an EGL device with a GPU when one gives a context, else Mesa's software renderer
 *   gpu       a GPU, or no format
 *   software  Mesa's software renderer, or no format
 * Nothing here prints, exits or throws: a service that cannot be had gives null or 0, and
 * macGLError() then says why. No call may be made from two threads at once.
 *
 * A chosen EGL display stays initialised for the life of the process, since a caller may share it.
 * The caller's choice of EGL client API (eglBindAPI) is left as it was. */
#pragma once

#include <GL/gl.h>

#ifdef __cplusplus
extern "C" {
#endif

/* AGL: attributes for aglChoosePixelFormat, a list closed by AGL_NONE. Numbers are ours. */
enum {
    AGL_NONE = 0,
    AGL_RGBA = 4,
    AGL_DOUBLEBUFFER = 5,
    AGL_RED_SIZE = 8,
    AGL_GREEN_SIZE = 9,
    AGL_BLUE_SIZE = 10,
    AGL_ALPHA_SIZE = 11
};

typedef struct AGLPixelFormatRecord* AGLPixelFormat;
typedef struct AGLContextRecord* AGLContext;
typedef struct AGLDrawableRecord* AGLDrawable; /* a window's graphics port */

/* Null when an attribute is not known or no display has such a format. `devices` is not read. */
AGLPixelFormat aglChoosePixelFormat(const void* devices, GLint numDevices, const GLint* attributes);
void aglDestroyPixelFormat(AGLPixelFormat format);
AGLContext aglCreateContext(AGLPixelFormat format, AGLContext share);
/* 1 on success. The context must not be used afterwards; if it was current, none is. */
GLboolean aglDestroyContext(AGLContext context);
/* To be called once a context, before it is made current. The drawable must outlive the context. */
GLboolean aglSetDrawable(AGLContext context, AGLDrawable drawable);
/* Null makes no context current. */
GLboolean aglSetCurrentContext(AGLContext context);
/* The context made here that is current, or null when none or a foreign one is. */
AGLContext aglGetCurrentContext(void);

/* CGL: whatever context is current on this thread, of any maker: EGL display, both surfaces and
 * context. Null when none is current. The object stays valid for the life of the process. */
typedef struct CGLContextRecord* CGLContextObj;
CGLContextObj CGLGetCurrentContext(void);
/* 0 on success. Null makes none current. */
int CGLSetCurrentContext(CGLContextObj context);

/* The hidden window: only its graphics port matters. */
typedef struct NSWindowRecord* NSWindowRef;
enum { NSBackingStoreBuffered = 2 };
/* alloc and initWithContentRect:styleMask:backing:defer: in one. Null when there is no memory. */
NSWindowRef NSWindowCreate(double x, double y, double width, double height, unsigned styleMask,
                           unsigned backing, int defer);
AGLDrawable NSWindowGraphicsPort(NSWindowRef window);
void NSWindowRelease(NSWindowRef window);

/* Why a call here failed last, as one line; "" when none ever did. Valid until the next failure. */
const char* macGLError(void);

#ifdef __cplusplus
}
#endif

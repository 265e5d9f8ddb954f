#include "gl/renderHost.h"

#include "Util/returnMessage.h"

PF_Err renderHost::gl(AESDK_OpenGL::AESDK_OpenGL_Err code) const
{
    if (code == AESDK_OpenGL::Ok) return PF_Err_NONE;
    return FailWithMessage(in_data, out_data, AESDK_OpenGL::ReportError(code));
}

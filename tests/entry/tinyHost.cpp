#include "entry/tinyHost.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

tinyHost* current = nullptr;

int Format(A_char* buffer, const A_char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    const int written = std::vsnprintf(buffer, PF_MAX_EFFECT_MSG_LEN + 1, format, arguments);
#pragma GCC diagnostic pop
    va_end(arguments);
    return written;
}

PF_Handle NewHandle(A_u_longlong size)
{
    ++current->handlesOut;
    auto* handle = static_cast<PF_Handle>(std::malloc(sizeof(void*)));
    *handle = std::calloc(1, size);
    return handle;
}

void DisposeHandle(PF_Handle handle)
{
    --current->handlesOut;
    std::free(*handle);
    std::free(handle);
}

SPErr Acquire(const char* name, std::int32_t version, const void** suite)
{
    static const PF_ANSISuite1 ansi{Format};
    static const char other = 0;  // suites whose functions no test here calls
    if (current->missing == std::pair(std::string(name), version)) {
        *suite = nullptr;
        return 1;
    }
    current->acquired.emplace_back(name, version);
    const std::string_view wanted = name;
    *suite = wanted == kPFANSISuite     ? static_cast<const void*>(&ansi)
             : wanted == kPFHandleSuite ? static_cast<const void*>(&TinyHandleSuite())
                                        : static_cast<const void*>(&other);
    return 0;
}

SPErr Release(const char* name, std::int32_t version)
{
    current->released.emplace_back(name, version);
    return 0;
}

PF_Err AddParam(PF_ProgPtr, PF_ParamIndex index, PF_ParamDef* def)
{
    if (static_cast<int>(current->params.size()) + 1 == current->refusedParam) {
        return PF_Err_INVALID_INDEX;
    }
    current->positions.push_back(index);
    current->params.push_back(*def);
    return PF_Err_NONE;
}

SPBasicSuite basicSuite{Acquire, Release};
PF_UtilCallbacks utilities{};

}  // namespace

const PF_HandleSuite2& TinyHandleSuite()
{
    static const PF_HandleSuite2 suite{NewHandle, [](PF_Handle handle) { return *handle; },
                                       [](PF_Handle) {}, DisposeHandle};
    return suite;
}

tinyHost::tinyHost()
{
    current = this;
    utilities.ansi = {Format, std::strcpy};
    in_data.utils = &utilities;
    in_data.inter.add_param = AddParam;
    in_data.pica_basicP = &basicSuite;
    in_data.version = {13, 0};
    in_data.width = 100;
    in_data.height = 50;
    in_data.downsample_x = in_data.downsample_y = {1, 1};
}

tinyHost::~tinyHost()
{
    current = nullptr;
}

#include "Util/intToString.h"

std::string intToString(std::int32_t value)
{
    return std::to_string(value);
}

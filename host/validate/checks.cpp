#include "validate/checks.h"

#include <algorithm>

namespace orv {

void Checks::Fail(std::string text)
{
    ++failed_;
    if (failures_.size() < kKeptFailures) failures_.push_back(std::move(text));
}

void Checks::Figure(std::string_view name, double value)
{
    const auto known = std::ranges::find(figures_, name, &std::pair<std::string, double>::first);
    if (known != figures_.end())
        known->second += value;
    else
        figures_.emplace_back(name, value);
}

}  // namespace orv

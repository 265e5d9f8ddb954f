#include "scene/nesting.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace orv {
namespace {

constexpr std::size_t kMostNested = 64;
constexpr double kMostDraws = 100'000.0;

/// What one composition comes to with all that it shows.
struct expansion {
    double draws = 0.0;      ///< may grow exponentially with the depth, hence no integer
    std::size_t nested = 0;  ///< levels of precompositions below it
};

class Expander {
public:
    Expander(const project& scene, const Messages& messages)
        : scene_(scene), messages_(messages), known_(scene.compositions.size())
    {
    }

    const expansion& expand(int index);

private:
    [[nodiscard]] const composition& at(int index) const
    {
        return scene_.compositions[static_cast<std::size_t>(index)];
    }
    void enter(const layer& l);
    [[noreturn]] void failChain(const layer& l) const;

    const project& scene_;
    const Messages& messages_;
    std::vector<std::optional<expansion>> known_;
    std::vector<int> open_;  ///< compositions being expanded, outermost first
};

const expansion& Expander::expand(int index)
{
    std::optional<expansion>& result = known_[static_cast<std::size_t>(index)];
    if (result) return *result;

    open_.push_back(index);
    expansion sum;
    for (const layer& l : at(index).layers) {
        if (HasPixels(l)) sum.draws += 1.0;
        if (l.composition < 0) continue;
        enter(l);
        const expansion& inner = expand(l.composition);
        sum.draws += inner.draws;
        sum.nested = std::max(sum.nested, inner.nested + 1);
    }
    open_.pop_back();
    return result.emplace(sum);
}

/// Refuses what would not end, or go too deep, before the recursion does.
void Expander::enter(const layer& l)
{
    if (std::ranges::find(open_, l.composition) != open_.end()) failChain(l);
    const auto& inner = known_[static_cast<std::size_t>(l.composition)];
    if (open_.size() + (inner ? inner->nested : 0) > kMostNested) {
        messages_.fail(
            PathWithKey(l.where, "refId"),
            fmt::format("precompositions nest deeper than the limit of {}", kMostNested));
    }
}

void Expander::failChain(const layer& l) const
{
    std::string chain;
    for (auto each = std::ranges::find(open_, l.composition); each != open_.end(); ++each) {
        chain += Clipped(at(*each).id) + " -> ";
    }
    messages_.fail(
        PathWithKey(l.where, "refId"),
        fmt::format("a composition contains itself: {}{}", chain, Clipped(at(l.composition).id)));
}

}  // namespace

void CheckNesting(const project& scene, const Messages& messages)
{
    Expander expander(scene, messages);
    for (std::size_t k = 0; k < scene.compositions.size(); ++k) {
        const double draws = expander.expand(static_cast<int>(k)).draws;
        if (draws <= kMostDraws) continue;
        messages.fail(scene.compositions[k].where,
                      fmt::format("{} layer draws in a frame, the limit is {}", NumberText(draws),
                                  NumberText(kMostDraws)));
    }
}

}  // namespace orv

// tokens.h: opaque references that are not addresses. A reference that was given back, or that
// never was the host's, is told apart from a live one without being touched.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <utility>

namespace orv {

/// A new reference of a pointer type. None is ever used twice in the process.
template <class Handle>
Handle NewToken()
{
    static_assert(sizeof(Handle) == sizeof(std::uintptr_t));
    static std::uintptr_t made = 0;
    // Odd, so that it can never be taken for the address of an object.
    return reinterpret_cast<Handle>((++made << 4) | 1U);
}

/// A value for each live reference.
template <class Handle, class Value>
class TokenTable {
public:
    Handle Add(Value value)
    {
        Handle token = NewToken<Handle>();
        values_.emplace(token, std::move(value));
        return token;
    }
    /// Null when the reference is not a live one.
    [[nodiscard]] Value* Find(Handle handle)
    {
        const auto found = values_.find(handle);
        return found != values_.end() ? &found->second : nullptr;
    }
    void Remove(Handle handle) { values_.erase(handle); }
    void Clear() { values_.clear(); }

    [[nodiscard]] auto begin() const { return values_.begin(); }
    [[nodiscard]] auto end() const { return values_.end(); }

private:
    std::unordered_map<Handle, Value> values_;
};

}  // namespace orv

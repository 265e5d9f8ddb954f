// firstError.h: a chain of steps in which the first failure wins.
#pragma once

#include "host_api.h"

/// Runs steps until one fails; what must happen in any case goes through `always`. A step is a
/// callable that returns a PF_Err.
///
///     return FirstError{}.then(prepare).then(draw).always(giveBack).code();
class FirstError {
public:
    FirstError() = default;
    /// Starts from a result that is already known.
    explicit FirstError(PF_Err code) noexcept : code_(code) {}

    /// Runs `step` unless an earlier one failed.
    template <class Step>
    FirstError& then(Step&& step)
    {
        if (code_ == PF_Err_NONE) code_ = step();
        return *this;
    }

    /// Runs `give` whatever happened before; its failure counts only as the first.
    template <class Give>
    FirstError& always(Give&& give)
    {
        const PF_Err result = give();
        if (code_ == PF_Err_NONE) code_ = result;
        return *this;
    }

    [[nodiscard]] bool ok() const noexcept { return code_ == PF_Err_NONE; }
    [[nodiscard]] PF_Err code() const noexcept { return code_; }

private:
    PF_Err code_ = PF_Err_NONE;
};

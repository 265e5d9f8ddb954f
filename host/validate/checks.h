// checks.h: what one validation test found out: how much it checked, what was wrong, and figures.
#pragma once

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace orv {

/// Thrown by Checks::Skip: the test has nothing to say about this module.
class testSkipped : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Counts the checks of one test. A test goes on after a failed one; the first failures are kept
/// with their text, all are counted.
class Checks {
public:
    static constexpr std::size_t kKeptFailures = 10;

    /// `activity` hears what the test is doing: the last words of one that crashes or hangs.
    explicit Checks(std::function<void(std::string_view)> activity = {})
        : activity_(std::move(activity))
    {
    }

    /// One check: returns `good`; when it is false, the text says what is wrong and where.
    template <class... Args>
    bool That(bool good, fmt::format_string<Args...> wrong, Args&&... args)
    {
        ++made_;
        if (!good) Fail(fmt::format(wrong, std::forward<Args>(args)...));
        return good;
    }

    /// What comes next, for a test that does not come back from it.
    template <class... Args>
    void Doing(fmt::format_string<Args...> what, Args&&... args)
    {
        if (activity_) activity_(fmt::format(what, std::forward<Args>(args)...));
    }

    /// Ends the test as skipped.
    [[noreturn]] static void Skip(const std::string& reason) { throw testSkipped(reason); }

    /// A number for the report ("host calls failed"), added to what bears that name already.
    void Figure(std::string_view name, double value);

    [[nodiscard]] std::int64_t made() const { return made_; }
    [[nodiscard]] std::int64_t failed() const { return failed_; }
    [[nodiscard]] const std::vector<std::string>& failures() const { return failures_; }
    [[nodiscard]] const std::vector<std::pair<std::string, double>>& figures() const
    {
        return figures_;
    }

private:
    void Fail(std::string text);

    std::function<void(std::string_view)> activity_;
    std::int64_t made_ = 0, failed_ = 0;
    std::vector<std::string> failures_;
    std::vector<std::pair<std::string, double>> figures_;
};

}  // namespace orv

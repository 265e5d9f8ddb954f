// messages.h: what is said about a scene file. A message is one line: "FILE: PATH: reason", with a
// PATH such as layers[2].ks.p, or "FILE:LINE:COLUMN: reason" while the text is not yet JSON.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>

#include "scene/errors.h"

namespace orv {

/// Text out of the file on one line: control characters escaped, cut when it is long.
std::string Clipped(std::string_view text);
/// The same in quotes.
std::string Quoted(std::string_view text);
/// The shortest decimal text that reads back as the same number.
std::string NumberText(double value);
/// A step of a PATH: ".key", or ["odd key"] where that would mislead; no dot at the beginning.
std::string PathWithKey(const std::string& path, std::string_view key);
std::string PathWithIndex(const std::string& path, std::size_t index);

/// The messages of one loading. Keeps the file's name; borrows the sink.
class Messages {
public:
    /// With `strict` every warning fails.
    Messages(std::string file, bool strict, const warningSink& warn);

    /// Both throw failure(failureKind::scene). An empty path means the file as a whole.
    [[noreturn]] void fail(const std::string& path, const std::string& reason) const;
    [[noreturn]] void failAt(std::size_t line, std::size_t column, const std::string& reason) const;
    /// Each text once.
    void warn(const std::string& path, const std::string& reason);
    [[nodiscard]] const std::string& file() const noexcept { return file_; }

private:
    [[nodiscard]] std::string line(const std::string& path, const std::string& reason) const;

    std::string file_;
    bool strict_;
    const warningSink& warn_;
    std::set<std::string> warned_;
};

}  // namespace orv

// callerContext.h: a GL context of the host's own that is current while commands run, as in a host
// that draws with GL itself.
#pragma once

#include <memory>
#include <string>

namespace orv {

class CallerContext {
public:
    /// Made and current, with bindings and values of its own; made() tells whether.
    CallerContext();
    ~CallerContext();
    CallerContext(const CallerContext&) = delete;
    CallerContext& operator=(const CallerContext&) = delete;

    [[nodiscard]] bool made() const { return state_ != nullptr; }
    /// What a module changed since the last look: "" for nothing. Everything is put right again.
    std::string Disturbance();
    /// From now on no context is current before a command.
    void StepAside();

private:
    struct state;
    std::unique_ptr<state> state_;
    bool aside_ = false;
};

}  // namespace orv

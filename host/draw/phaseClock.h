// phaseClock.h: seconds spent in effects and in drawing, each counted once however they nest.
#pragma once

#include <chrono>

namespace orv {

class PhaseClock {
public:
    enum class phase { idle, draw, effect };

    /// That phase until the guard goes, then the one before.
    class Guard {
    public:
        Guard(PhaseClock& clock, phase now) : clock_(clock), before_(clock.Switch(now)) {}
        ~Guard() { clock_.Switch(before_); }
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;

    private:
        PhaseClock& clock_;
        phase before_;
    };

    void Reset() { drawSeconds_ = effectSeconds_ = 0.0; }
    [[nodiscard]] double drawSeconds() const { return drawSeconds_; }
    [[nodiscard]] double effectSeconds() const { return effectSeconds_; }

private:
    using clock = std::chrono::steady_clock;

    phase Switch(phase next)
    {
        const clock::time_point now = clock::now();
        const double seconds = std::chrono::duration<double>(now - since_).count();
        if (current_ == phase::draw) drawSeconds_ += seconds;
        if (current_ == phase::effect) effectSeconds_ += seconds;
        since_ = now;
        const phase before = current_;
        current_ = next;
        return before;
    }

    phase current_ = phase::idle;
    clock::time_point since_ = clock::now();
    double drawSeconds_ = 0.0, effectSeconds_ = 0.0;
};

}  // namespace orv

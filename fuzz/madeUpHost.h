// madeUpHost.h: a host that says whatever the bytes say about a layer's masks: lengths that are no
// numbers, points that are nowhere, failures at any call. Enough for the effect's geometry.
#pragma once

#include <vector>

#include "host_api.h"

#include "byteReader.h"
#include "geometry/maskSampling.h"

namespace orv::fuzz {

/// One at a time: the host's functions have no argument that would tell two apart.
class MadeUpHost {
public:
    static constexpr int kMasks = 4;  ///< their path IDs are 1 to kMasks

    explicit MadeUpHost(ByteReader& bytes);
    ~MadeUpHost();
    MadeUpHost(const MadeUpHost&) = delete;
    MadeUpHost& operator=(const MadeUpHost&) = delete;

    [[nodiscard]] PF_InData& in_data() { return in_data_; }
    /// Suites, masks, paths and segments that the effect still has.
    [[nodiscard]] int out() const { return out_; }
    /// Whether the made-up failure happened.
    [[nodiscard]] bool failed() const { return failAt_ > 0 && calls_ >= failAt_; }

private:
    struct path {
        bool open = true;
        std::vector<double> lengths;
    };
    struct answers;  ///< the functions

    /// Counts a call; the error that it is to return.
    PF_Err Call() { return ++calls_ == failAt_ ? PF_Err_INTERNAL_STRUCT_DAMAGED : PF_Err_NONE; }
    /// The same for a call that hands something out.
    PF_Err Take();
    const pathPoint& NextPoint() { return points_[nextPoint_++ % points_.size()]; }

    PF_InData in_data_{};
    std::vector<path> paths_;
    std::vector<pathPoint> points_;  ///< of all evaluations, by turns
    std::size_t nextPoint_ = 0;
    int calls_ = 0, failAt_ = 0, out_ = 0;
};

}  // namespace orv::fuzz

// frameWork.h: one frame after the other: rendered or skipped, written, and its figures.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/console.h"
#include "cli/frameOutput.h"
#include "cli/renderSession.h"

namespace orv {

/// How a frame went.
struct frameAnswer {
    frameStats figures;
    std::string done;                ///< the file that was written, or why there is none
    std::string problem;             ///< why it failed; "": it did not
    std::vector<std::string> notes;  ///< what else is worth knowing
    image picture;                   ///< where FrameWork has no output
};

class FrameWork {
public:
    /// Borrows all. Without an output the answers carry the pictures.
    FrameWork(const renderOptions& options, RenderSession& session, FrameOutput* output)
        : options_(options), session_(session), output_(output)
    {
    }

    /// Throws failure for what ends the whole run.
    frameAnswer Do(int frame);

private:
    bool IsThere(int frame, frameAnswer& answer);
    void RenderAndWrite(int frame, frameAnswer& answer);

    const renderOptions& options_;
    RenderSession& session_;
    FrameOutput* output_;
    double loadToCharge_ = session_.start().pluginSeconds + session_.start().sceneSeconds;
};

/// Says how a frame went. Returns whether it is there.
bool Tell(const frameAnswer& answer, Console& console);

}  // namespace orv

#include "cli/frameWork.h"

#include <new>
#include <utility>

#include <fmt/format.h>

namespace orv {

frameAnswer FrameWork::Do(int frame)
{
    frameAnswer answer;
    answer.figures.frame = frame;
    answer.figures.load = std::exchange(loadToCharge_, 0.0);
    Stopwatch whole;
    try {
        if (!IsThere(frame, answer)) RenderAndWrite(frame, answer);
    } catch (const failure& reason) {
        if (reason.kind() != failureKind::frame) throw;
        answer.problem = reason.what();
    } catch (const std::bad_alloc&) {
        answer.problem = "out of memory";
    }
    if (!answer.problem.empty()) answer.figures.result = frameResult::failed;
    answer.figures.total = whole.lap();
    return answer;
}

bool FrameWork::IsThere(int frame, frameAnswer& answer)
{
    if (!options_.resume) return false;
    switch (output_->Existing(frame)) {
        case existingPicture::none:
            return false;
        case existingPicture::whole:
            answer.figures.result = frameResult::skipped;
            answer.done = "is there already";
            return true;
        case existingPicture::other:
            break;
    }
    const pictureFormat& format = session_.start().format;
    answer.notes.push_back(
        fmt::format("{} is not a whole picture of {}x{} in this depth; rendering it",
                    FrameFile(options_.output, frame), format.width, format.height));
    return false;
}

void FrameWork::RenderAndWrite(int frame, frameAnswer& answer)
{
    image picture = session_.Render(frame, answer.figures);
    if (output_ == nullptr) {
        answer.picture = std::move(picture);
        return;
    }
    Stopwatch writing;
    answer.done = output_->Write(picture, frame);
    answer.figures.write = writing.lap();
}

bool Tell(const frameAnswer& answer, Console& console)
{
    for (const std::string& each : answer.notes) console.Note(each);
    if (answer.problem.empty()) {
        console.FrameDone(answer.figures.frame, answer.done, answer.figures.total);
        return true;
    }
    console.Error(fmt::format("frame {}: {}", answer.figures.frame, answer.problem));
    return false;
}

}  // namespace orv

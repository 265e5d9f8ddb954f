// plugin_fixture.h: an effect that does what a test tells it, on a scene whose numbers are easy.
#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "plugin/pluginHost.h"
#include "scene/model.h"

namespace orv::test {

/// What the effect does; a missing function answers 0. One effect at a time.
struct effectScript {
    std::function<PF_Err(PF_Cmd, PF_InData&, PF_OutData&, PF_ParamDef*[], PF_LayerDef*)> onCommand;
    /// In place of the parameters of `paramOf`.
    std::function<PF_Err(PF_InData&, PF_OutData&)> onParams;
    std::vector<PF_Cmd> received;
};
effectScript& Script();
PF_Err ScriptedEntry(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                     PF_LayerDef* output, void* extra);

/// Parameters that the effect adds, by index.
enum paramOf {
    kInput,
    kGroup,
    kSource,
    kBack,
    kAmount,  ///< float slider 0..1000, default 25
    kCount,   ///< slider 0..10, default 3
    kTurn,
    kChoice,  ///< popup of 3, default 2
    kSwitch,
    kInk,    ///< white
    kPlace,  ///< default 50, 50, 50 percent
    kMask,
    kGroupEnd,
    kParamCount
};

property Constant(std::initializer_list<double> value);
/// Key frames at those times, straight between them.
property Linear(std::initializer_list<std::pair<double, std::vector<double>>> keys);

/// 25 frames a second. Layers of the main composition (320 x 180), topmost first:
///   0 "wave"    solid 200 x 100 with the effect; start 5, stretch 2, so that composition frames 10
///               and 12 are its frames 2.5 and 3.5; two masks: a closed triangle and a moving line
///   1 "camera"  moves from x = 0 to 200 in 20 frames
///   2 "spot"    a light
///   3 "lamp"    an ambient light with its video switch off
///   4 "banner"  solid 60 x 30
///   5 "null"    no pixels
project EasyScene();

/// Layers as flat colours; counts what it is asked for.
class FlatImages : public LayerImages {
public:
    const image& OwnPixels(const shownComposition& shown, const layer& l, double t) override;
    bool NeedsEffects(const shownComposition& shown, const layer& l, double t) override;
    std::array<std::uint8_t, 16> OwnPixelsState(const shownComposition& shown, const layer& l,
                                                double t) override;
    std::array<std::uint8_t, 16> InputState(const shownComposition& shown, const layer& l,
                                            int effectIndex, double t) override;

    renderQuality quality;
    bool moving = false;  ///< the pixels' state depends on the time
    /// Own pixels at this time need effects until they are drawn.
    double needsEffectsAt = -1.0;
    std::vector<double> drawnAt;

private:
    image last_;
};

/// A host with the scripted effect on layer "wave".
class Stage {
public:
    explicit Stage(pluginOptions options = {});
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    [[nodiscard]] effectFrame Frame(double t, const renderQuality& quality = {});
    [[nodiscard]] image Input(const renderQuality& quality = {}) const;
    /// Runs `use` with the records of that frame.
    void With(double t, const renderQuality& quality,
              const std::function<void(PF_InData&, PF_ParamDef* params[])>& use);
    /// What `use` leaves or breaks, as the failure's text; "" when nothing.
    std::string FaultOf(const std::function<void(PF_InData&, PF_ParamDef* params[])>& use);

    project scene = EasyScene();
    FlatImages images;
    std::vector<std::string> warnings;
    std::unique_ptr<PluginHost> host;
};

constexpr renderQuality kFull{}, kReduced{.divisorX = 2, .divisorY = 3};
/// At composition frames 10 and 12, at preview divisors 1 and (2, 3).
void AtEachFrame(const std::function<void(double t, const renderQuality& quality)>& check);

/// Acquires, and releases with the object.
template <class Suite>
class Acquired {
public:
    Acquired(PF_InData& in_data, const char* name, std::int32_t version)
        : basic_(*in_data.pica_basicP), name_(name), version_(version)
    {
        const void* suite = nullptr;
        if (basic_.AcquireSuite(name, version, &suite) == 0) {
            suite_ = static_cast<const Suite*>(suite);
        }
    }
    ~Acquired()
    {
        if (suite_ != nullptr) (void)basic_.ReleaseSuite(name_, version_);
    }
    Acquired(const Acquired&) = delete;
    Acquired& operator=(const Acquired&) = delete;
    const Suite* operator->() const { return suite_; }

private:
    SPBasicSuite& basic_;
    const char* name_;
    std::int32_t version_;
    const Suite* suite_ = nullptr;
};

}  // namespace orv::test

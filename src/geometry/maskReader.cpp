#include "geometry/maskReader.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <utility>

#include "Util/AEGP_SuiteHandler.h"
#include "Util/firstError.h"
#include "Util/guards.h"

#include "geometry/contour.h"
#include "geometry/meshBudget.h"

namespace {

/// Divisions that the host measures a segment with.
constexpr A_long kLengthFrequency = 100;

/// A checked-out path, its segments prepared and measured once for all evaluations.
class MeasuredPath {
public:
    MeasuredPath(PF_InData& in_data, const PF_PathDataSuite1& pathData, PF_PathOutlinePtr path)
        : in_data_(in_data), pathData_(pathData), path_(path)
    {
    }

    /// Prepares and measures every segment; afterwards the user may have asked to stop.
    PF_Err Measure()
    {
        PF_Boolean open = 0;
        A_long segments = 0;
        std::vector<double> lengths;
        FirstError error;
        error.then([&] { return pathData_.PF_PathIsOpen(in_data_.effect_ref, path_, &open); });
        error.then(
            [&] { return pathData_.PF_PathNumSegments(in_data_.effect_ref, path_, &segments); });
        for (A_long seg = 0; error.ok() && seg < segments; ++seg) {
            error.then([&] { return MeasureSegment(seg, lengths); });
        }
        lengths_ = MakePathLengths(std::move(lengths), open != 0);
        return error.then([&] { return PF_ABORT(&in_data_); }).code();
    }

    [[nodiscard]] const pathLengths& lengths() const noexcept { return lengths_; }

    /// Point and derivative where a sample lies.
    PF_Err Evaluate(const pathPlace& place, pathPoint& point)
    {
        PreparedSegment& segment = prepared_[static_cast<std::size_t>(place.seg)];
        const double arc = lengths_.length[static_cast<std::size_t>(place.seg)] * place.local;
        return pathData_.PF_PathEvalSegLengthDeriv1(in_data_.effect_ref, path_, segment.get(),
                                                    place.seg, arc, &point.x, &point.y, &point.dx,
                                                    &point.dy);
    }

    /// The point alone, at an arc length of segment `seg`.
    PF_Err Evaluate(int seg, double arc, double& x, double& y)
    {
        PreparedSegment& segment = prepared_[static_cast<std::size_t>(seg)];
        return pathData_.PF_PathEvalSegLength(in_data_.effect_ref, path_, segment.get(), seg, arc,
                                              &x, &y);
    }

    /// Ends the segments' preparation; the first failure counts.
    PF_Err close()
    {
        FirstError error;
        for (PreparedSegment& segment : prepared_) {
            error.always([&] { return segment.close(); });
        }
        prepared_.clear();
        return error.code();
    }

private:
    PF_Err MeasureSegment(A_long seg, std::vector<double>& lengths)
    {
        PreparedSegment& segment =
            prepared_.emplace_back(in_data_, pathData_, path_, seg, kLengthFrequency);
        double length = 0.0;
        return FirstError{segment.error()}
            .then([&] {
                return pathData_.PF_PathGetSegLength(in_data_.effect_ref, path_, seg, segment.get(),
                                                     &length);
            })
            .then([&] {
                lengths.push_back(length);
                return PF_Err_NONE;
            })
            .code();
    }

    PF_InData& in_data_;
    const PF_PathDataSuite1& pathData_;
    PF_PathOutlinePtr path_;
    std::deque<PreparedSegment> prepared_;  // guards stay where they are
    pathLengths lengths_;
};

/// The masks of the effect's own layer.
class MaskReader {
public:
    explicit MaskReader(PF_InData& in_data) : in_data_(in_data), suites_(in_data.pica_basicP) {}

    /// Calls `use(MeasuredPath&)` for the path `id` at `time`, when a mask of the layer has it and
    /// it has segments. Whatever was taken is given back before this returns.
    template <class Use>
    PF_Err WithPath(PF_PathID id, A_long time, Use&& use)
    {
        if (id == 0) return PF_Err_NONE;
        AEGP_LayerH layer = nullptr;
        A_long masks = 0;
        FirstError error;
        error.then([&] {
            return suites_.PFInterfaceSuite1().AEGP_GetEffectLayer(in_data_.effect_ref, &layer);
        });
        error.then([&] { return suites_.MaskSuite6().AEGP_GetLayerNumMasks(layer, &masks); });
        for (A_long index = 0; error.ok() && index < masks; ++index) {
            error.then([&] { return VisitMask(layer, index, id, time, use); });
        }
        return error.code();
    }

private:
    template <class Use>
    PF_Err VisitMask(AEGP_LayerH layer, A_long index, PF_PathID id, A_long time, Use& use)
    {
        MaskHandle mask(suites_.MaskSuite6(), layer, index);
        PF_PathID found = 0;
        return FirstError{mask.error()}
            .then([&] { return PF_ABORT(&in_data_); })
            .then([&] {
                return suites_.PathQuerySuite1().PF_PathInfo(in_data_.effect_ref, index, &found);
            })
            .then([&] { return found == id ? UsePath(id, time, use) : PF_Err_NONE; })
            .always([&] { return mask.close(); })
            .code();
    }

    template <class Use>
    PF_Err UsePath(PF_PathID id, A_long time, Use& use)
    {
        const PF_PathDataSuite1& pathData = suites_.PathDataSuite1();
        CheckedOutPath path(in_data_, suites_.PathQuerySuite1(), id, time);
        if (path.error() != PF_Err_NONE || path.get() == nullptr) return path.error();
        MeasuredPath measured(in_data_, pathData, path.get());
        return FirstError{}
            .then([&] { return measured.Measure(); })
            .then([&] { return measured.lengths().segments() > 0 ? use(measured) : PF_Err_NONE; })
            .always([&] { return measured.close(); })
            .always([&] { return path.close(); })
            .code();
    }

    PF_InData& in_data_;
    AEGP_SuiteHandler suites_;
};

/// How samples find their place on a path.
struct placement {
    std::vector<propS> props;
    bool onSegments = false;  ///< by the reference's segments, not by length
};

PF_Err ReadPlacement(MaskReader& reader, const paramSnapshot& values, const meshSettings& settings,
                     A_long time, placement& placed)
{
    const int steps = MeshStepCount(settings);
    placed.props = PlaceEvenly(steps);
    if (!settings.vertsMatch) return PF_Err_NONE;

    const auto place = [&](MeasuredPath& reference) {
        placed.props = PlaceOnSegments(steps, reference.lengths());
        placed.onSegments = true;
        return PF_Err_NONE;
    };
    return FirstError{}
        .then([&] { return reader.WithPath(values.paths.maskReference, time, place); })
        .then([&] {
            return placed.onSegments ? PF_Err_NONE : reader.WithPath(values.paths.mask, 0, place);
        })
        .code();
}

/// One sample for each placement. The user may stop it at each.
PF_Err SamplePath(PF_InData& in_data, MeasuredPath& path, const placement& placed,
                  const meshSettings& settings, std::vector<pathSample>& samples)
{
    const double steps = static_cast<double>(placed.props.size()) - 1.0;
    samples.clear();
    samples.reserve(placed.props.size());
    FirstError error;
    for (std::size_t s = 0; error.ok() && s < placed.props.size(); ++s) {
        const pathPlace place = placed.onSegments ? PlaceBySegment(placed.props[s], path.lengths())
                                                  : PlaceByLength(static_cast<double>(s) / steps,
                                                                  path.lengths(), settings);
        pathPoint point;
        error.then([&] { return path.Evaluate(place, point); }).then([&] {
            return PF_ABORT(&in_data);
        });
        samples.push_back(MakePathSample(place, point, path.lengths()));
    }
    return error.code();
}

PF_Err CheckBudget(const maskReadings& readings, std::uint64_t outlineSamples,
                   const meshSettings& settings, std::string& reason)
{
    const int steps = static_cast<int>(readings.props.size()) - 1;
    return CheckMeshBudget(CountCells(steps, outlineSamples, settings), reason);
}

/// Samples that the whole outline will have, the repeated first one included.
std::uint64_t CountOutline(const pathLengths& path, const meshSettings& settings)
{
    std::uint64_t samples = path.open ? 0 : 1;
    for (const double length : path.length) {
        samples += ContourSampleCount(ContourDensity(length, settings));
    }
    return samples;
}

PF_Err SampleOutline(PF_InData& in_data, MeasuredPath& path, const meshSettings& settings,
                     std::vector<point3>& outline)
{
    outline.clear();
    FirstError error;
    for (int seg = 0; error.ok() && seg < path.lengths().segments(); ++seg) {
        const double length = path.lengths().length[static_cast<std::size_t>(seg)];
        const double density = ContourDensity(length, settings);
        for (std::uint64_t k = 0; error.ok() && k < ContourSampleCount(density); ++k) {
            double x = 0.0, y = 0.0;
            error.then([&] { return path.Evaluate(seg, ContourArc(k, density, length), x, y); })
                .then([&] { return PF_ABORT(&in_data); });
            outline.push_back(ContourPoint(x, y, settings.sizes));
        }
    }
    if (!path.lengths().open && !outline.empty()) outline.push_back(outline.front());
    return error.code();
}

PF_Err ReadOutline(PF_InData& in_data, MaskReader& reader, const paramSnapshot& values,
                   const meshSettings& settings, A_long time, maskReadings& readings,
                   std::string& reason)
{
    const bool wanted = settings.extruded() && settings.contourDefinitionPercent != 0.0;
    if (!wanted || readings.mask.empty()) return PF_Err_NONE;
    return reader.WithPath(values.paths.contour, time, [&](MeasuredPath& path) {
        const std::uint64_t samples = CountOutline(path.lengths(), settings);
        return FirstError{}
            .then([&] { return CheckBudget(readings, samples, settings, reason); })
            .then([&] { return SampleOutline(in_data, path, settings, readings.outline); })
            .code();
    });
}

}  // namespace

PF_Err ReadMasks(PF_InData& in_data, const paramSnapshot& values, const meshSettings& settings,
                 A_long time, maskReadings& readings, std::string& reason)
{
    readings = {};
    MaskReader reader(in_data);
    placement placed;
    const auto sampleInto = [&](std::vector<pathSample>& samples) {
        return [&](MeasuredPath& path) {
            return SamplePath(in_data, path, placed, settings, samples);
        };
    };
    return FirstError{}
        .then([&] { return ReadPlacement(reader, values, settings, time, placed); })
        .then([&] {
            return reader.WithPath(values.paths.sourceReference, time, sampleInto(readings.source));
        })
        .then([&] {
            readings.props = placed.props;
            return reader.WithPath(values.paths.mask, time, [&](MeasuredPath& path) {
                return FirstError{CheckBudget(readings, 0, settings, reason)}
                    .then([&] { return sampleInto(readings.mask)(path); })
                    .code();
            });
        })
        .then(
            [&] { return ReadOutline(in_data, reader, values, settings, time, readings, reason); })
        .code();
}

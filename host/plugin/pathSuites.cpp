// Masks and their paths. Coordinates are pixels of the layer at the preview resolution.
#include "animation/evaluate.h"
#include "plugin/gatedCall.h"
#include "plugin/requests.h"
#include "plugin/suites.h"

namespace orv {

namespace {

// ---- masks

PF_Err GetLayerNumMasks(HostSession& session, AEGP_LayerH layerH, A_long* num_masks)
{
    const layer* of = LayerOf(session, layerH);
    if (of == nullptr || num_masks == nullptr) {
        return RefuseForeign(session, "AEGP_GetLayerNumMasks", "layer");
    }
    *num_masks = static_cast<A_long>(of->masks.size());
    return PF_Err_NONE;
}

PF_Err GetLayerMaskByIndex(HostSession& session, AEGP_LayerH layerH, A_long index,
                           AEGP_MaskRefH* mask)
{
    if (mask == nullptr) return RefuseForeign(session, "AEGP_GetLayerMaskByIndex", "mask");
    *mask = nullptr;
    const layer* of = LayerOf(session, layerH);
    if (of == nullptr) return RefuseForeign(session, "AEGP_GetLayerMaskByIndex", "layer");
    if (index < 0 || index >= static_cast<A_long>(of->masks.size())) return PF_Err_INVALID_INDEX;
    *mask = session.references.masks.Add(index);
    session.ledger.Take(loanKind::mask, *mask);
    return PF_Err_NONE;
}

PF_Err DisposeMask(HostSession& session, AEGP_MaskRefH mask)
{
    session.references.masks.Remove(mask);
    return TakeBack(session, loanKind::mask, mask, "AEGP_DisposeMask");
}

// ---- paths

PF_Err PathInfo(HostSession& session, PF_ProgPtr effect_ref, A_long index, PF_PathID* unique_id)
{
    if (unique_id == nullptr) return RefuseForeign(session, "PF_PathInfo", "path ID");
    *unique_id = 0;
    if (const PF_Err err = CheckEffectRef(session, effect_ref, "PF_PathInfo")) return err;
    const effectFrame& frame = *session.command->frame;
    if (index < 0 || index >= static_cast<A_long>(frame.owner->masks.size())) {
        return PF_Err_INVALID_INDEX;
    }
    *unique_id = session.pathIds.Of(*frame.shown.comp, *frame.owner, index + 1);
    return PF_Err_NONE;
}

PF_Err CheckoutPath(HostSession& session, PF_ProgPtr effect_ref, PF_PathID unique_id,
                    A_long what_time, A_long, A_u_long time_scale, PF_PathOutlinePtr* path)
{
    if (path == nullptr) return RefuseForeign(session, "PF_CheckoutPath", "path");
    *path = nullptr;
    if (const PF_Err err = CheckEffectRef(session, effect_ref, "PF_CheckoutPath")) return err;
    if (time_scale == 0) return PF_Err_BAD_CALLBACK_PARAM;
    const effectFrame& frame = *session.command->frame;
    const int position = session.pathIds.PositionOf(*frame.shown.comp, *frame.owner, unique_id);
    if (position == 0) return PF_Err_NONE;
    const mask& chosen = frame.owner->masks[static_cast<std::size_t>(position - 1)];
    const double t = session.command->clock->OfLayerTime(what_time, time_scale);
    *path = session.references.paths.Add(
        {MakeOutline(EvaluatePath(chosen.path, t), frame.quality.divisorX, frame.quality.divisorY),
         unique_id});
    session.ledger.Take(loanKind::path, *path);
    return PF_Err_NONE;
}

PF_Err CheckinPath(HostSession& session, PF_ProgPtr, PF_PathID unique_id, PF_Boolean changed,
                   PF_PathOutlinePtr path)
{
    const lentPath* lent = session.references.paths.Find(path);
    if (lent != nullptr && lent->id != unique_id) {
        (void)session.BreakRule("PF_CheckinPath was given another path's ID");
    }
    if (changed != 0) (void)session.BreakRule("PF_CheckinPath: paths cannot be changed");
    session.references.paths.Remove(path);
    return TakeBack(session, loanKind::path, path, "PF_CheckinPath");
}

// ---- outlines

/// The outline behind a reference, with `segment` within it; null, with a broken rule, otherwise.
const lentPath* PathOf(HostSession& session, PF_PathOutlinePtr path, const char* call)
{
    const lentPath* lent = session.references.paths.Find(path);
    if (lent == nullptr) (void)RefuseForeign(session, call, "path");
    return lent;
}

PF_Err PathIsOpen(HostSession& session, PF_ProgPtr, PF_PathOutlinePtr path, PF_Boolean* open)
{
    const lentPath* lent = PathOf(session, path, "PF_PathIsOpen");
    if (lent == nullptr || open == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    *open = lent->outline.open ? 1 : 0;
    return PF_Err_NONE;
}

PF_Err PathNumSegments(HostSession& session, PF_ProgPtr, PF_PathOutlinePtr path,
                       A_long* num_segments)
{
    const lentPath* lent = PathOf(session, path, "PF_PathNumSegments");
    if (lent == nullptr || num_segments == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    *num_segments = static_cast<A_long>(lent->outline.segments.size());
    return PF_Err_NONE;
}

/// `frequency` is a wish for accuracy that is not needed: lengths are exact to 1e-5 pixels.
PF_Err PathPrepareSegLength(HostSession& session, PF_ProgPtr, PF_PathOutlinePtr path,
                            A_long which_seg, A_long, PF_PathSegPrepPtr* length_prep)
{
    if (length_prep == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    *length_prep = nullptr;
    const lentPath* lent = PathOf(session, path, "PF_PathPrepareSegLength");
    if (lent == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    const auto count = static_cast<A_long>(lent->outline.segments.size());
    if (which_seg < 0 || which_seg >= count) return PF_Err_INVALID_INDEX;
    const pathSegment& segment = lent->outline.segments[static_cast<std::size_t>(which_seg)];
    *length_prep = session.references.segments.Add({path, which_seg, SegmentMeasure(segment)});
    session.ledger.Take(loanKind::preparedSegment, *length_prep);
    return PF_Err_NONE;
}

/// The prepared segment behind a reference, when it is that one of that path.
const SegmentMeasure* MeasureOf(HostSession& session, PF_PathOutlinePtr path, A_long which_seg,
                                PF_PathSegPrepPtr* length_prep, const char* call)
{
    const lentSegment* lent =
        length_prep != nullptr ? session.references.segments.Find(*length_prep) : nullptr;
    if (lent != nullptr && lent->path == path && lent->segment == which_seg) return &lent->measure;
    (void)RefuseForeign(session, call, "prepared segment");
    return nullptr;
}

PF_Err PathGetSegLength(HostSession& session, PF_ProgPtr, PF_PathOutlinePtr path, A_long which_seg,
                        PF_PathSegPrepPtr* length_prep, PF_FpLong* length)
{
    const SegmentMeasure* measure =
        MeasureOf(session, path, which_seg, length_prep, "PF_PathGetSegLength");
    if (measure == nullptr || length == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    *length = measure->length();
    return PF_Err_NONE;
}

PF_Err PathEvalSegLength(HostSession& session, PF_ProgPtr, PF_PathOutlinePtr path,
                         PF_PathSegPrepPtr* length_prep, A_long which_seg, PF_FpLong length,
                         PF_FpLong* x, PF_FpLong* y)
{
    const SegmentMeasure* measure =
        MeasureOf(session, path, which_seg, length_prep, "PF_PathEvalSegLength");
    if (measure == nullptr || x == nullptr || y == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    const vec2 position = measure->At(length).position;
    *x = position.x;
    *y = position.y;
    return PF_Err_NONE;
}

PF_Err PathEvalSegLengthDeriv1(HostSession& session, PF_ProgPtr, PF_PathOutlinePtr path,
                               PF_PathSegPrepPtr* length_prep, A_long which_seg, PF_FpLong length,
                               PF_FpLong* x, PF_FpLong* y, PF_FpLong* deriv1x, PF_FpLong* deriv1y)
{
    const SegmentMeasure* measure =
        MeasureOf(session, path, which_seg, length_prep, "PF_PathEvalSegLengthDeriv1");
    const bool places = x != nullptr && y != nullptr && deriv1x != nullptr && deriv1y != nullptr;
    if (measure == nullptr || !places) return PF_Err_BAD_CALLBACK_PARAM;
    const SegmentMeasure::point at = measure->At(length);
    *x = at.position.x;
    *y = at.position.y;
    *deriv1x = at.direction.x;
    *deriv1y = at.direction.y;
    return PF_Err_NONE;
}

PF_Err PathCleanupSegLength(HostSession& session, PF_ProgPtr, PF_PathOutlinePtr path,
                            A_long which_seg, PF_PathSegPrepPtr* length_prep)
{
    if (MeasureOf(session, path, which_seg, length_prep, "PF_PathCleanupSegLength") == nullptr) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    const PF_PathSegPrepPtr prepared = *length_prep;
    *length_prep = nullptr;
    session.references.segments.Remove(prepared);
    return TakeBack(session, loanKind::preparedSegment, prepared, "PF_PathCleanupSegLength");
}

}  // namespace

const AEGP_MaskSuite6 kMaskSuite6{
    .AEGP_GetLayerNumMasks = gated<"AEGP_GetLayerNumMasks", &GetLayerNumMasks>,
    .AEGP_GetLayerMaskByIndex = gated<"AEGP_GetLayerMaskByIndex", &GetLayerMaskByIndex>,
    .AEGP_DisposeMask = gatedRelease<"AEGP_DisposeMask", &DisposeMask>};

const PF_PathQuerySuite1 kPathQuerySuite1{
    .PF_PathInfo = gated<"PF_PathInfo", &PathInfo>,
    .PF_CheckoutPath = gated<"PF_CheckoutPath", &CheckoutPath>,
    .PF_CheckinPath = gatedRelease<"PF_CheckinPath", &CheckinPath>};

const PF_PathDataSuite1 kPathDataSuite1{
    .PF_PathIsOpen = gated<"PF_PathIsOpen", &PathIsOpen>,
    .PF_PathNumSegments = gated<"PF_PathNumSegments", &PathNumSegments>,
    .PF_PathPrepareSegLength = gated<"PF_PathPrepareSegLength", &PathPrepareSegLength>,
    .PF_PathGetSegLength = gated<"PF_PathGetSegLength", &PathGetSegLength>,
    .PF_PathEvalSegLength = gated<"PF_PathEvalSegLength", &PathEvalSegLength>,
    .PF_PathEvalSegLengthDeriv1 = gated<"PF_PathEvalSegLengthDeriv1", &PathEvalSegLengthDeriv1>,
    .PF_PathCleanupSegLength = gatedRelease<"PF_PathCleanupSegLength", &PathCleanupSegLength>};

}  // namespace orv

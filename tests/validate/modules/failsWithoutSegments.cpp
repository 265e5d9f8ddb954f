// A path is taken to have a segment at least.
#include "moduleEntry.h"
#include "plainHost.h"

namespace {

A_long SegmentsOf(PF_InData& in_data, PF_PathID id)
{
    plain::Suite<PF_PathQuerySuite1> query(in_data, kPFPathQuerySuite, kPFPathQuerySuiteVersion1);
    plain::Suite<PF_PathDataSuite1> data(in_data, kPFPathDataSuite, kPFPathDataSuiteVersion1);
    PF_ProgPtr ref = in_data.effect_ref;
    PF_PathOutlinePtr path = nullptr;
    plain::Check(query->PF_CheckoutPath(ref, id, in_data.current_time, in_data.time_step,
                                        in_data.time_scale, &path));
    if (path == nullptr) return 1;
    plain::Lent lent([&] { return query->PF_CheckinPath(ref, id, 0, path); });
    A_long segments = 0;
    plain::Check(data->PF_PathNumSegments(ref, path, &segments));
    return segments;
}

}  // namespace

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
try {
    const bool drawn = cmd == PF_Cmd_RENDER && with.params != nullptr;
    const PF_PathID id = drawn ? with.params[plain::kPath]->u.path_d.path_id : 0;
    if (id != 0 && SegmentsOf(with.in_data, id) == 0) __builtin_trap();
    return plain::Run(cmd, with);
} catch (PF_Err err) {
    return err;
}

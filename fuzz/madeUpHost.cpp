#include "madeUpHost.h"

#include <cstdint>
#include <string_view>

namespace orv::fuzz {
namespace {

MadeUpHost* current = nullptr;

/// A reference that is not an address.
template <class Reference>
Reference Token(std::intptr_t number)
{
    return reinterpret_cast<Reference>(number);
}

}  // namespace

struct MadeUpHost::answers {
    static const path& PathOf(PF_PathOutlinePtr reference)
    {
        return current->paths_[reinterpret_cast<std::size_t>(reference) - 1];
    }
    static PF_Err GiveBack()
    {
        --current->out_;
        return current->Call();
    }

    static PF_Err Abort(PF_ProgPtr) { return current->Call(); }
    static A_Err EffectLayer(PF_ProgPtr, AEGP_LayerH* layer)
    {
        *layer = Token<AEGP_LayerH>(1);
        return current->Call();
    }
    static A_Err CountMasks(AEGP_LayerH, A_long* count)
    {
        *count = kMasks;
        return current->Call();
    }
    static A_Err TakeMask(AEGP_LayerH, A_long index, AEGP_MaskRefH* mask)
    {
        const PF_Err error = current->Take();
        *mask = error == PF_Err_NONE ? Token<AEGP_MaskRefH>(index + 1) : nullptr;
        return error;
    }
    static A_Err GiveMask(AEGP_MaskRefH) { return GiveBack(); }
    static PF_Err PathInfo(PF_ProgPtr, A_long index, PF_PathID* id)
    {
        *id = static_cast<PF_PathID>(index + 1);
        return current->Call();
    }
    static PF_Err TakePath(PF_ProgPtr, PF_PathID id, A_long, A_long, A_u_long,
                           PF_PathOutlinePtr* reference)
    {
        const PF_Err error = current->Take();
        *reference = error == PF_Err_NONE ? Token<PF_PathOutlinePtr>(id) : nullptr;
        return error;
    }
    static PF_Err GivePath(PF_ProgPtr, PF_PathID, PF_Boolean, PF_PathOutlinePtr)
    {
        return GiveBack();
    }
    static PF_Err IsOpen(PF_ProgPtr, PF_PathOutlinePtr reference, PF_Boolean* open)
    {
        *open = static_cast<PF_Boolean>(PathOf(reference).open);
        return current->Call();
    }
    static PF_Err CountSegments(PF_ProgPtr, PF_PathOutlinePtr reference, A_long* count)
    {
        *count = static_cast<A_long>(PathOf(reference).lengths.size());
        return current->Call();
    }
    static PF_Err TakeSegment(PF_ProgPtr, PF_PathOutlinePtr, A_long segment, A_long,
                              PF_PathSegPrepPtr* prepared)
    {
        const PF_Err error = current->Take();
        *prepared = error == PF_Err_NONE ? Token<PF_PathSegPrepPtr>(segment + 1) : nullptr;
        return error;
    }
    static PF_Err Length(PF_ProgPtr, PF_PathOutlinePtr reference, A_long segment,
                         PF_PathSegPrepPtr*, PF_FpLong* length)
    {
        *length = PathOf(reference).lengths[static_cast<std::size_t>(segment)];
        return current->Call();
    }
    static PF_Err Point(PF_ProgPtr, PF_PathOutlinePtr, PF_PathSegPrepPtr*, A_long, PF_FpLong,
                        PF_FpLong* x, PF_FpLong* y)
    {
        const pathPoint& point = current->NextPoint();
        *x = point.x;
        *y = point.y;
        return current->Call();
    }
    static PF_Err Derivative(PF_ProgPtr, PF_PathOutlinePtr, PF_PathSegPrepPtr*, A_long, PF_FpLong,
                             PF_FpLong* x, PF_FpLong* y, PF_FpLong* dx, PF_FpLong* dy)
    {
        const pathPoint& point = current->NextPoint();
        *x = point.x;
        *y = point.y;
        *dx = point.dx;
        *dy = point.dy;
        return current->Call();
    }
    static PF_Err GiveSegment(PF_ProgPtr, PF_PathOutlinePtr, A_long, PF_PathSegPrepPtr*)
    {
        return GiveBack();
    }

    static SPErr Acquire(const char* name, std::int32_t, const void** suite)
    {
        static const AEGP_PFInterfaceSuite1 kInterface{EffectLayer, nullptr, nullptr, nullptr};
        static const AEGP_MaskSuite6 kMaskSuite{CountMasks, TakeMask, GiveMask};
        static const PF_PathQuerySuite1 kQuery{PathInfo, TakePath, GivePath};
        static const PF_PathDataSuite1 kData{IsOpen, CountSegments, TakeSegment, Length,
                                             Point,  Derivative,    GiveSegment};
        const std::string_view wanted = name;
        *suite = wanted == kAEGPPFInterfaceSuite ? static_cast<const void*>(&kInterface)
                 : wanted == kAEGPMaskSuite      ? static_cast<const void*>(&kMaskSuite)
                 : wanted == kPFPathQuerySuite   ? static_cast<const void*>(&kQuery)
                                                 : static_cast<const void*>(&kData);
        ++current->out_;
        return 0;
    }
    static SPErr Release(const char*, std::int32_t)
    {
        --current->out_;
        return 0;
    }
};

MadeUpHost::MadeUpHost(ByteReader& bytes) : paths_(kMasks)
{
    static SPBasicSuite basic{answers::Acquire, answers::Release};
    in_data_.pica_basicP = &basic;
    in_data_.inter.abort = answers::Abort;
    in_data_.time_step = 512;
    in_data_.time_scale = 12800;

    if (bytes.below(4) == 0) failAt_ = bytes.below(2000);
    for (path& each : paths_) {
        each.open = bytes.flag();
        each.lengths.resize(static_cast<std::size_t>(bytes.below(8)));
        for (double& length : each.lengths) length = bytes.any();
    }
    points_.resize(static_cast<std::size_t>(1 + bytes.below(8)));
    for (pathPoint& point : points_) {
        point = {bytes.any(), bytes.any(), bytes.any(), bytes.any()};
    }
    current = this;
}

MadeUpHost::~MadeUpHost()
{
    current = nullptr;
}

PF_Err MadeUpHost::Take()
{
    const PF_Err error = Call();
    if (error == PF_Err_NONE) ++out_;
    return error;
}

}  // namespace orv::fuzz

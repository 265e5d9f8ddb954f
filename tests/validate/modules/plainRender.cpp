// The plain effect's picture: dots along the mask, laid over the input or over nothing, made in a
// world of its own and then copied to the output.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>

#include "plainEffect.h"
#include "plainHost.h"

namespace plain {
namespace {

constexpr std::size_t kMostDots = 6;
constexpr A_long kRowsPerAbortCheck = 8;

struct dotList {
    std::size_t count = 0;
    std::array<double, kMostDots> x{}, y{};
};

// ---- the mask

/// The middle of a segment.
void AddMiddle(PF_InData& in_data, const PF_PathDataSuite1& data, PF_PathOutlinePtr path,
               A_long segment, dotList& dots)
{
    constexpr A_long kFrequency = 10;
    PF_ProgPtr ref = in_data.effect_ref;
    PF_PathSegPrepPtr prepared = nullptr;
    Check(data.PF_PathPrepareSegLength(ref, path, segment, kFrequency, &prepared));
    Lent lent([&, ref] { return data.PF_PathCleanupSegLength(ref, path, segment, &prepared); });
    double length = 0.0;
    Check(data.PF_PathGetSegLength(ref, path, segment, &prepared, &length));
    Check(data.PF_PathEvalSegLength(ref, path, &prepared, segment, length / 2, &dots.x[dots.count],
                                    &dots.y[dots.count]));
    ++dots.count;
    lent.close();
}

dotList ReadDots(PF_InData& in_data, PF_PathID id)
{
    dotList dots;
    if (id == 0) return dots;
    Suite<PF_PathQuerySuite1> query(in_data, kPFPathQuerySuite, kPFPathQuerySuiteVersion1);
    Suite<PF_PathDataSuite1> data(in_data, kPFPathDataSuite, kPFPathDataSuiteVersion1);
    PF_ProgPtr ref = in_data.effect_ref;
    PF_PathOutlinePtr path = nullptr;
    Check(query->PF_CheckoutPath(ref, id, in_data.current_time, in_data.time_step,
                                 in_data.time_scale, &path));
    if (path == nullptr) return dots;
    Lent lent([&] { return query->PF_CheckinPath(ref, id, 0, path); });
    A_long segments = 0;
    Check(data->PF_PathNumSegments(ref, path, &segments));
    const auto wanted = std::min<A_long>(segments, kMostDots);
    for (A_long k = 0; k < wanted; ++k)
        AddMiddle(in_data, *data, path, k * segments / wanted, dots);
    lent.close();
    data.close();
    query.close();
    return dots;
}

dotList ReadDotsWithCare(PF_InData& in_data, PF_PathID id)
try {
    return ReadDots(in_data, id);
} catch (PF_Err) {
    if (care.passesPathErrorsOn) throw;
    return {};
}

// ---- pixels

struct look {
    dotList dots;
    double radius = 0.0, slant = 0.0;
    A_long bands = 1, shift = 0;
    A_long direction = 1;
    bool over = false;
    PF_Pixel8 ink{};
};

/// 8-bit colours in the depth of the pixel.
template <class Pixel>
Pixel Deepened(const PF_Pixel8& color)
{
    using channel = decltype(Pixel::red);
    if constexpr (sizeof(channel) == 1) {
        return {color.alpha, color.red, color.green, color.blue};
    } else {
        const auto deep = [](A_u_char value) {
            return static_cast<channel>((value * PF_MAX_CHAN16 + 127) / PF_MAX_CHAN8);
        };
        return {deep(color.alpha), deep(color.red), deep(color.green), deep(color.blue)};
    }
}

/// Without its care a bright dot passes the limit of 16-bit channels.
template <class Pixel>
Pixel Limited(Pixel pixel)
{
    if constexpr (sizeof pixel.red == 2)
        if (!care.limitsChannels && pixel.red == PF_MAX_CHAN16) ++pixel.red;
    return pixel;
}

template <class Pixel>
Pixel* RowOf(const PF_EffectWorld& world, A_long y)
{
    const A_long rowBytes =
        care.heedsRowBytes ? world.rowbytes : world.width * static_cast<A_long>(sizeof(Pixel));
    return reinterpret_cast<Pixel*>(static_cast<std::uint8_t*>(world.data) +
                                    static_cast<std::ptrdiff_t>(y) * rowBytes);
}

bool IsInDot(const look& looks, A_long x, A_long y)
{
    const double radius2 = looks.radius * looks.radius;
    for (std::size_t k = 0; k < looks.dots.count; ++k) {
        const double dx = x + 0.5 - looks.dots.x[k], dy = y + 0.5 - looks.dots.y[k];
        if (dx * dx + dy * dy < radius2) return true;
    }
    return false;
}

bool IsInkBand(const look& looks, A_long x, A_long y)
{
    const A_long across = looks.direction == 2 ? 0 : x, down = looks.direction == 1 ? 0 : y;
    const auto slanted = static_cast<A_long>(std::floor(across + looks.slant * down));
    return ((slanted / looks.bands + looks.shift) & 1) == 0;
}

template <class Pixel>
void DrawRow(const look& looks, const PF_EffectWorld& input, const PF_EffectWorld& picture,
             const PF_EffectWorld& output, A_long y)
{
    const Pixel* behind = RowOf<Pixel>(input, y);
    const Pixel* from = nullptr;
    if (picture.data != nullptr)
        from = RowOf<Pixel>(picture,
                            static_cast<A_long>(std::int64_t{y} * picture.height / output.height));
    const Pixel ink = Deepened<Pixel>(looks.ink);
    Pixel* to = RowOf<Pixel>(output, y);
    for (A_long x = 0; x < output.width; ++x) {
        to[x] = looks.over ? behind[x] : Pixel{};
        if (!IsInDot(looks, x, y)) continue;
        const bool inked = from == nullptr || IsInkBand(looks, x, y);
        to[x] = Limited(
            inked ? ink
                  : from[static_cast<std::size_t>(x) * static_cast<std::size_t>(picture.width) /
                         static_cast<std::size_t>(output.width)]);
    }
}

void Draw(PF_InData& in_data, const look& looks, const PF_EffectWorld& input,
          const PF_EffectWorld& picture, const PF_EffectWorld& output)
{
    for (A_long y = 0; y < output.height; ++y) {
        if (care.asksForAbort && y % kRowsPerAbortCheck == 0) Check(PF_ABORT(&in_data));
        if (PF_WORLD_IS_DEEP(&output) != 0)
            DrawRow<PF_Pixel16>(looks, input, picture, output, y);
        else
            DrawRow<PF_Pixel8>(looks, input, picture, output, y);
    }
}

// ---- the frame

/// The shift in the instance's record for this time; needs the record whole.
A_long ShiftAt(PF_InData& in_data, A_long frame)
{
    if (in_data.sequence_data == nullptr) throw PF_Err{PF_Err_INTERNAL_STRUCT_DAMAGED};
    Suite<PF_HandleSuite2> handles(in_data, kPFHandleSuite, kPFHandleSuiteVersion2);
    const auto* record =
        static_cast<const sequenceRecord*>(handles->host_lock_handle(in_data.sequence_data));
    if (record == nullptr) throw PF_Err{PF_Err_INTERNAL_STRUCT_DAMAGED};
    const bool whole = record->magic == kRecordMagic && record->entries == std::size(record->table);
    const A_long shift = whole ? static_cast<A_long>(record->table[frame & 3]) : 0;
    handles->host_unlock_handle(in_data.sequence_data);
    if (!whole) throw PF_Err{PF_Err_INTERNAL_STRUCT_DAMAGED};
    handles.close();
    return shift;
}

look ReadLook(const call& with)
{
    PF_InData& in = with.in_data;
    PF_ParamDef** params = with.params;
    look looks;
    looks.dots = ReadDotsWithCare(in, params[kPath]->u.path_d.path_id);
    // The dots follow their size of a frame ago, too.
    ParamAt before(in, kAmount, in.current_time - in.time_step);
    const double amount = (params[kAmount]->u.fs_d.value + before.def().u.fs_d.value) / 2;
    before.close();
    looks.radius = amount / 100.0 * (with.output->width + with.output->height) / 8.0;
    looks.slant = params[kTurn]->u.ad.value / 65536.0 / 360.0 +
                  params[kPlace]->u.point3d_d.x_value / (with.output->width * 4.0);
    looks.bands = params[kBands]->u.sd.value;
    looks.shift = ShiftAt(in, in.current_time / std::max<A_long>(in.time_step, 1));
    looks.direction = params[kDirection]->u.pd.value;
    looks.over = params[kOver]->u.bd.value != 0;
    looks.ink = params[kInk]->u.cd.value;
    return looks;
}

}  // namespace

void Render(const call& with)
{
    PF_InData& in = with.in_data;
    const look looks = ReadLook(with);
    ParamAt picture(in, kPicture, in.current_time);

    Suite<PF_WorldSuite2> worlds(in, kPFWorldSuite, kPFWorldSuiteVersion2);
    PF_PixelFormat format = PF_PixelFormat_INVALID;
    Check(worlds->PF_GetPixelFormat(with.output, &format));
    PF_EffectWorld world{};
    Check(worlds->PF_NewWorld(in.effect_ref, with.output->width, with.output->height, 0, format,
                              &world));
    std::optional<Lent> lent;
    if (care.holdsItsWorld)
        lent.emplace([&] { return worlds->PF_DisposeWorld(in.effect_ref, &world); });
    Draw(in, looks, with.params[kInput]->u.ld, picture.def().u.ld, world);
    Check(PF_COPY(&in, &world, with.output, nullptr, nullptr));
    if (lent)
        lent->close();
    else
        Check(worlds->PF_DisposeWorld(in.effect_ref, &world));
    picture.close();
    worlds.close();
}

}  // namespace plain

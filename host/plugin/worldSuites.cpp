// Worlds for effects: making them, reaching their pixels, and working on them.
#include "plugin/gatedCall.h"
#include "plugin/requests.h"
#include "plugin/suites.h"
#include "plugin/worldOperations.h"

namespace orv {

namespace {

// ---- making

PF_Err Lend(HostSession& session, A_long width, A_long height, PF_PixelFormat format, bool clear,
            PF_EffectWorld* world)
{
    if (world == nullptr || width <= 0 || height <= 0) return PF_Err_BAD_CALLBACK_PARAM;
    *world = {};
    hostWorld* made = session.worlds.New(width, height, format, clear);
    if (made == nullptr) return PF_Err_OUT_OF_MEMORY;
    session.ledger.Take(loanKind::world, made->world.data);
    *world = made->world;
    return PF_Err_NONE;
}

PF_Err NewWorld1(HostSession& session, PF_ProgPtr, A_long width, A_long height,
                 PF_NewWorldFlags flags, PF_EffectWorld* world)
{
    const bool deep = (flags & PF_NewWorldFlag_DEEP_PIXELS) != 0;
    const bool clear = (flags & PF_NewWorldFlag_CLEAR_PIXELS) != 0;
    return Lend(session, width, height, FormatOfDepth(deep ? 16 : 8), clear, world);
}

PF_Err NewWorld2(HostSession& session, PF_ProgPtr, A_long width, A_long height,
                 PF_Boolean clear_pix, PF_PixelFormat pixel_format, PF_EffectWorld* world)
{
    if (PixelBytes(pixel_format) == 0) return PF_Err_BAD_CALLBACK_PARAM;
    return Lend(session, width, height, pixel_format, clear_pix != 0, world);
}

PF_Err DisposeWorld(HostSession& session, PF_ProgPtr, PF_EffectWorld* world)
{
    const hostWorld* made = session.worlds.Find(world);
    if (made == nullptr || !session.ledger.GiveBack(loanKind::world, made->world.data)) {
        return RefuseForeign(session, "PF_DisposeWorld", "world");
    }
    if (const std::string damage = PaddingDamage(*made); !damage.empty()) {
        (void)session.BreakRule(damage);
    }
    session.worlds.Free(*made);
    *world = {};
    return PF_Err_NONE;
}

PF_Err GetPixelFormat(HostSession& session, const PF_EffectWorld* world, PF_PixelFormat* format)
{
    const hostWorld* made = session.worlds.Find(world);
    if (made == nullptr || format == nullptr) {
        return RefuseForeign(session, "PF_GetPixelFormat", "world");
    }
    *format = made->format;
    return PF_Err_NONE;
}

// ---- pixels

/// The first pixel, or null when the world has another format. `pixels0` typed, when given.
template <class Pixel, PF_PixelFormat Format>
PF_Err GetPixels(HostSession& session, PF_EffectWorld* world, PF_PixelPtr pixels0, Pixel** pixPP)
{
    const hostWorld* made = session.worlds.Find(world);
    if (made == nullptr || pixPP == nullptr) {
        return RefuseForeign(session, "get_pixel_data", "world");
    }
    void* first = pixels0 != nullptr ? pixels0 : made->world.data;
    *pixPP = made->format == Format ? static_cast<Pixel*>(first) : nullptr;
    return PF_Err_NONE;
}

// ---- working on them

PF_Err TransferRect(HostSession& session, PF_ProgPtr, PF_Quality, PF_ModeFlags m_flags,
                    PF_Field field, const PF_Rect* src_rec, const PF_EffectWorld* src,
                    const PF_CompositeMode* comp_mode, const PF_MaskWorld* mask_world0,
                    A_long dest_x, A_long dest_y, PF_EffectWorld* dst)
{
    const hostWorld* from = session.worlds.Find(src);
    const hostWorld* to = session.worlds.Find(dst);
    if (from == nullptr || to == nullptr) return RefuseForeign(session, "transfer_rect", "world");
    const PF_Rect rect = src_rec != nullptr ? *src_rec : from->world.extent_hint;
    if (comp_mode == nullptr || from->format != to->format || !IsWithin(rect, *from)) {
        return session.BreakRule(
            "transfer_rect was given no mode, different formats or a rectangle outside its world");
    }
    const bool known = comp_mode->xfer == PF_Xfer_IN_FRONT || comp_mode->xfer == PF_Xfer_BEHIND;
    const bool offered = m_flags == PF_MF_Alpha_STRAIGHT && field == PF_Field_FRAME &&
                         mask_world0 == nullptr && comp_mode->rgb_only == 0;
    if (!known || !offered) return PF_Err_BAD_CALLBACK_PARAM;
    const double opacity = from->format == PF_PixelFormat_ARGB32 ? comp_mode->opacity / 255.0
                                                                 : comp_mode->opacitySu / 32768.0;
    TransferWorld(*from, rect, *to, dest_x, dest_y, comp_mode->xfer == PF_Xfer_IN_FRONT, opacity);
    return PF_Err_NONE;
}

PF_Err PremultiplyWorld(HostSession& session, PF_ProgPtr, A_long forward, PF_EffectWorld* dst)
{
    const hostWorld* world = session.worlds.Find(dst);
    if (world == nullptr) return RefuseForeign(session, "premultiply", "world");
    forward != 0 ? Premultiply(*world) : Unpremultiply(*world);
    return PF_Err_NONE;
}

}  // namespace

const PF_WorldSuite1 kWorldSuite1{.new_world = gated<"new_world", &NewWorld1>,
                                  .dispose_world = gatedRelease<"dispose_world", &DisposeWorld>};

const PF_WorldSuite2 kWorldSuite2{.PF_NewWorld = gated<"PF_NewWorld", &NewWorld2>,
                                  .PF_DisposeWorld = gatedRelease<"PF_DisposeWorld", &DisposeWorld>,
                                  .PF_GetPixelFormat = gated<"PF_GetPixelFormat", &GetPixelFormat>};

const PF_PixelDataSuite1 kPixelDataSuite1{
    .get_pixel_data8 = gated<"get_pixel_data8", &GetPixels<PF_Pixel8, PF_PixelFormat_ARGB32>>,
    .get_pixel_data16 = gated<"get_pixel_data16", &GetPixels<PF_Pixel16, PF_PixelFormat_ARGB64>>,
    .get_pixel_data_float =
        gated<"get_pixel_data_float", &GetPixels<PF_PixelFloat, PF_PixelFormat_ARGB128>>};

const PF_WorldTransformSuite1 kWorldTransformSuite1{.transfer_rect =
                                                        gated<"transfer_rect", &TransferRect>};

const PF_FillMatteSuite2 kFillMatteSuite2{.premultiply = gated<"premultiply", &PremultiplyWorld>};

}  // namespace orv

// guards.h: one owner for each kind of thing that the host hands out for a while.
//
// The constructor takes; `error()` tells how that went, and nothing else may be asked after a
// failure. The destructor gives back and keeps quiet; `close()` gives back early, once, and returns
// the host's result. Suites are borrowed: declare the AEGP_SuiteHandler first, so that what came
// through it is given back before it goes. A guard is neither copied nor moved; where one is needed
// later than its scope begins, std::optional holds it.
#pragma once

#include <utility>

#include "host_api.h"

#include "Util/pluginID.h"

/// A parameter's value at a time, in units of in_data.time_scale.
class CheckedOutParam {
public:
    CheckedOutParam(PF_InData& in_data, PF_ParamIndex index, A_long time)
        : in_data_(in_data),
          error_(PF_CHECKOUT_PARAM(&in_data, index, time, in_data.time_step, in_data.time_scale,
                                   &def_))
    {
    }
    ~CheckedOutParam() { (void)close(); }
    CheckedOutParam(const CheckedOutParam&) = delete;
    CheckedOutParam& operator=(const CheckedOutParam&) = delete;

    [[nodiscard]] PF_Err error() const noexcept { return error_; }
    [[nodiscard]] PF_ParamDef& def() noexcept { return def_; }

    /// The host wants a check-in after a failed check-out too.
    PF_Err close() noexcept
    {
        return std::exchange(open_, false) ? PF_CHECKIN_PARAM(&in_data_, &def_) : PF_Err_NONE;
    }

private:
    PF_InData& in_data_;
    PF_ParamDef def_{};
    PF_Err error_;
    bool open_ = true;
};

/// A mask of a layer, by index from 0.
class MaskHandle {
public:
    MaskHandle(const AEGP_MaskSuite6& masks, AEGP_LayerH layer, A_long index)
        : masks_(masks), error_(masks.AEGP_GetLayerMaskByIndex(layer, index, &mask_))
    {
    }
    ~MaskHandle() { (void)close(); }
    MaskHandle(const MaskHandle&) = delete;
    MaskHandle& operator=(const MaskHandle&) = delete;

    [[nodiscard]] PF_Err error() const noexcept { return error_; }
    /// Null when the host has no mask there.
    [[nodiscard]] AEGP_MaskRefH get() const noexcept { return mask_; }

    PF_Err close() noexcept
    {
        AEGP_MaskRefH mask = std::exchange(mask_, nullptr);
        return mask != nullptr ? masks_.AEGP_DisposeMask(mask) : PF_Err_NONE;
    }

private:
    const AEGP_MaskSuite6& masks_;
    AEGP_MaskRefH mask_ = nullptr;
    PF_Err error_;
};

/// A mask's shape at a time, in units of in_data.time_scale. Checked in unchanged.
class CheckedOutPath {
public:
    CheckedOutPath(PF_InData& in_data, const PF_PathQuerySuite1& paths, PF_PathID id, A_long time)
        : effect_ref_(in_data.effect_ref),
          paths_(paths),
          id_(id),
          error_(paths.PF_CheckoutPath(in_data.effect_ref, id, time, in_data.time_step,
                                       in_data.time_scale, &path_))
    {
    }
    ~CheckedOutPath() { (void)close(); }
    CheckedOutPath(const CheckedOutPath&) = delete;
    CheckedOutPath& operator=(const CheckedOutPath&) = delete;

    [[nodiscard]] PF_Err error() const noexcept { return error_; }
    /// Null, without an error, when no mask has the ID.
    [[nodiscard]] PF_PathOutlinePtr get() const noexcept { return path_; }

    PF_Err close() noexcept
    {
        PF_PathOutlinePtr path = std::exchange(path_, nullptr);
        return path != nullptr ? paths_.PF_CheckinPath(effect_ref_, id_, /*changed=*/0, path)
                               : PF_Err_NONE;
    }

private:
    PF_ProgPtr effect_ref_;
    const PF_PathQuerySuite1& paths_;
    PF_PathID id_;
    PF_PathOutlinePtr path_ = nullptr;
    PF_Err error_;
};

/// A path segment made ready for measuring and evaluation by arc length.
class PreparedSegment {
public:
    PreparedSegment(PF_InData& in_data, const PF_PathDataSuite1& pathData, PF_PathOutlinePtr path,
                    A_long segment, A_long frequency)
        : effect_ref_(in_data.effect_ref),
          pathData_(pathData),
          path_(path),
          segment_(segment),
          error_(pathData.PF_PathPrepareSegLength(in_data.effect_ref, path, segment, frequency,
                                                  &prep_))
    {
    }
    ~PreparedSegment() { (void)close(); }
    PreparedSegment(const PreparedSegment&) = delete;
    PreparedSegment& operator=(const PreparedSegment&) = delete;

    [[nodiscard]] PF_Err error() const noexcept { return error_; }
    /// As the suite's functions take it: the address of the preparation.
    [[nodiscard]] PF_PathSegPrepPtr* get() noexcept { return &prep_; }
    [[nodiscard]] A_long segment() const noexcept { return segment_; }

    PF_Err close() noexcept
    {
        if (prep_ == nullptr) return PF_Err_NONE;
        const PF_Err result =
            pathData_.PF_PathCleanupSegLength(effect_ref_, path_, segment_, &prep_);
        prep_ = nullptr;
        return result;
    }

private:
    PF_ProgPtr effect_ref_;
    const PF_PathDataSuite1& pathData_;
    PF_PathOutlinePtr path_;
    A_long segment_;
    PF_PathSegPrepPtr prep_ = nullptr;
    PF_Err error_;
};

/// A cleared image of 8 or (PF_NewWorldFlag_DEEP_PIXELS) 16 bits, from the world suite's first
/// version.
class HostWorld1 {
public:
    HostWorld1(PF_InData& in_data, const PF_WorldSuite1& worlds, A_long width, A_long height,
               PF_NewWorldFlags flags)
        : effect_ref_(in_data.effect_ref),
          worlds_(worlds),
          error_(worlds.new_world(in_data.effect_ref, width, height,
                                  flags | PF_NewWorldFlag_CLEAR_PIXELS, &world_)),
          open_(error_ == PF_Err_NONE)
    {
    }
    ~HostWorld1() { (void)close(); }
    HostWorld1(const HostWorld1&) = delete;
    HostWorld1& operator=(const HostWorld1&) = delete;

    [[nodiscard]] PF_Err error() const noexcept { return error_; }
    [[nodiscard]] PF_EffectWorld& world() noexcept { return world_; }

    PF_Err close() noexcept
    {
        return std::exchange(open_, false) ? worlds_.dispose_world(effect_ref_, &world_)
                                           : PF_Err_NONE;
    }

private:
    PF_ProgPtr effect_ref_;
    const PF_WorldSuite1& worlds_;
    PF_EffectWorld world_{};
    PF_Err error_;
    bool open_;
};

/// A cleared image of any pixel format, from the world suite's second version.
class HostWorld2 {
public:
    HostWorld2(PF_InData& in_data, const PF_WorldSuite2& worlds, A_long width, A_long height,
               PF_PixelFormat format)
        : effect_ref_(in_data.effect_ref),
          worlds_(worlds),
          error_(worlds.PF_NewWorld(in_data.effect_ref, width, height, /*clear_pixB=*/1, format,
                                    &world_)),
          open_(error_ == PF_Err_NONE)
    {
    }
    ~HostWorld2() { (void)close(); }
    HostWorld2(const HostWorld2&) = delete;
    HostWorld2& operator=(const HostWorld2&) = delete;

    [[nodiscard]] PF_Err error() const noexcept { return error_; }
    [[nodiscard]] PF_EffectWorld& world() noexcept { return world_; }

    PF_Err close() noexcept
    {
        return std::exchange(open_, false) ? worlds_.PF_DisposeWorld(effect_ref_, &world_)
                                           : PF_Err_NONE;
    }

private:
    PF_ProgPtr effect_ref_;
    const PF_WorldSuite2& worlds_;
    PF_EffectWorld world_{};
    PF_Err error_;
    bool open_;
};

/// Zeroed host memory.
class HostHandle {
public:
    HostHandle(const PF_HandleSuite2& handles, A_u_longlong bytes)
        : handles_(handles), handle_(handles.host_new_handle(bytes))
    {
    }
    ~HostHandle() { (void)close(); }
    HostHandle(const HostHandle&) = delete;
    HostHandle& operator=(const HostHandle&) = delete;

    [[nodiscard]] PF_Err error() const noexcept
    {
        return handle_ != nullptr ? PF_Err_NONE : PF_Err_OUT_OF_MEMORY;
    }
    [[nodiscard]] PF_Handle get() const noexcept { return handle_; }
    /// Hands the memory over to the caller.
    [[nodiscard]] PF_Handle release() noexcept { return std::exchange(handle_, nullptr); }

    PF_Err close() noexcept
    {
        if (PF_Handle handle = release()) handles_.host_dispose_handle(handle);
        return PF_Err_NONE;
    }

private:
    const PF_HandleSuite2& handles_;
    PF_Handle handle_;
};

/// Keeps a handle's memory in place. Declare it after the HostHandle, so that it goes first.
class HandleLock {
public:
    /// `handle` must not be null.
    HandleLock(const PF_HandleSuite2& handles, PF_Handle handle)
        : handles_(handles), handle_(handle), memory_(handles.host_lock_handle(handle))
    {
    }
    ~HandleLock() { (void)close(); }
    HandleLock(const HandleLock&) = delete;
    HandleLock& operator=(const HandleLock&) = delete;

    /// Null when the host could not lock it.
    [[nodiscard]] void* memory() const noexcept { return memory_; }
    [[nodiscard]] PF_Err error() const noexcept
    {
        return memory_ != nullptr ? PF_Err_NONE : PF_Err_OUT_OF_MEMORY;
    }

    PF_Err close() noexcept
    {
        if (std::exchange(memory_, nullptr) != nullptr) handles_.host_unlock_handle(handle_);
        return PF_Err_NONE;
    }

private:
    const PF_HandleSuite2& handles_;
    PF_Handle handle_;
    void* memory_;
};

/// The effect instance as the project side of the host knows it.
class EffectRef {
public:
    EffectRef(PF_InData& in_data, const AEGP_PFInterfaceSuite1& effects,
              const AEGP_EffectSuite3& disposal)
        : disposal_(disposal),
          error_(effects.AEGP_GetNewEffectForEffect(pluginID, in_data.effect_ref, &effect_))
    {
    }
    ~EffectRef() { (void)close(); }
    EffectRef(const EffectRef&) = delete;
    EffectRef& operator=(const EffectRef&) = delete;

    [[nodiscard]] PF_Err error() const noexcept { return error_; }
    /// Null when the host gave none.
    [[nodiscard]] AEGP_EffectRefH get() const noexcept { return effect_; }

    PF_Err close() noexcept
    {
        AEGP_EffectRefH effect = std::exchange(effect_, nullptr);
        return effect != nullptr ? disposal_.AEGP_DisposeEffect(effect) : PF_Err_NONE;
    }

private:
    const AEGP_EffectSuite3& disposal_;
    AEGP_EffectRefH effect_ = nullptr;
    PF_Err error_;
};

/// A parameter of an effect over time.
class EffectStream {
public:
    EffectStream(const AEGP_StreamSuite9& streams, AEGP_EffectRefH effect, PF_ParamIndex index)
        : streams_(streams),
          error_(streams.AEGP_GetNewEffectStreamByIndex(pluginID, effect, index, &stream_))
    {
    }
    ~EffectStream() { (void)close(); }
    EffectStream(const EffectStream&) = delete;
    EffectStream& operator=(const EffectStream&) = delete;

    [[nodiscard]] PF_Err error() const noexcept { return error_; }
    [[nodiscard]] AEGP_StreamRefH get() const noexcept { return stream_; }

    PF_Err close() noexcept
    {
        AEGP_StreamRefH stream = std::exchange(stream_, nullptr);
        return stream != nullptr ? streams_.AEGP_DisposeStream(stream) : PF_Err_NONE;
    }

private:
    const AEGP_StreamSuite9& streams_;
    AEGP_StreamRefH stream_ = nullptr;
    PF_Err error_;
};

/// What a stream says at a layer time, after expressions. Declare it after the EffectStream, so
/// that it goes first.
class StreamValue {
public:
    StreamValue(const AEGP_StreamSuite9& streams, AEGP_StreamRefH stream, const A_Time& layerTime)
        : streams_(streams),
          error_(streams.AEGP_GetNewStreamValue(pluginID, stream, AEGP_LTimeMode_LayerTime,
                                                &layerTime, /*pre_expressionB=*/0, &value_)),
          open_(error_ == PF_Err_NONE)
    {
    }
    ~StreamValue() { (void)close(); }
    StreamValue(const StreamValue&) = delete;
    StreamValue& operator=(const StreamValue&) = delete;

    [[nodiscard]] PF_Err error() const noexcept { return error_; }
    [[nodiscard]] const AEGP_StreamVal2& value() const noexcept { return value_.val; }

    PF_Err close() noexcept
    {
        return std::exchange(open_, false) ? streams_.AEGP_DisposeStreamValue(&value_)
                                           : PF_Err_NONE;
    }

private:
    const AEGP_StreamSuite9& streams_;
    AEGP_StreamValue2 value_{};
    PF_Err error_;
    bool open_;
};

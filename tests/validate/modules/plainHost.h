// plainHost.h: what the plain effect borrows from its host, each thing held by an object.
//
// A call that fails throws its PF_Err. A release counts by `close()`; the destructor gives back
// quietly what a throw left open.
#pragma once

#include <functional>
#include <utility>

#include "host_api.h"

namespace plain {

inline void Check(PF_Err err)
{
    if (err != PF_Err_NONE) throw err;
}

/// Gives something back once.
class Lent {
public:
    explicit Lent(std::function<PF_Err()> giveBack) : giveBack_(std::move(giveBack)) {}
    ~Lent()
    {
        if (giveBack_) (void)giveBack_();
    }
    Lent(const Lent&) = delete;
    Lent& operator=(const Lent&) = delete;
    void close() { Check(std::exchange(giveBack_, nullptr)()); }

private:
    std::function<PF_Err()> giveBack_;
};

template <class Functions>
class Suite {
public:
    Suite(PF_InData& in_data, const char* name, int32_t version)
        : functions_(Acquire(in_data, name, version)), lent_([&in_data, name, version] {
              return in_data.pica_basicP->ReleaseSuite(name, version);
          })
    {
    }
    const Functions* operator->() const { return functions_; }
    const Functions& operator*() const { return *functions_; }
    void close() { lent_.close(); }

private:
    static const Functions* Acquire(PF_InData& in_data, const char* name, int32_t version)
    {
        const void* functions = nullptr;
        Check(in_data.pica_basicP->AcquireSuite(name, version, &functions));
        return static_cast<const Functions*>(functions);
    }

    const Functions* functions_;
    Lent lent_;
};

/// A parameter's value at another time than the command's.
class ParamAt {
public:
    ParamAt(PF_InData& in_data, PF_ParamIndex index, A_long time)
        : err_(PF_CHECKOUT_PARAM(&in_data, index, time, in_data.time_step, in_data.time_scale,
                                 &def_)),
          lent_([this, &in_data] { return PF_CHECKIN_PARAM(&in_data, &def_); })
    {
        Check(err_);
    }
    [[nodiscard]] const PF_ParamDef& def() const { return def_; }
    void close() { lent_.close(); }

private:
    PF_ParamDef def_{};
    PF_Err err_;
    Lent lent_;
};

}  // namespace plain

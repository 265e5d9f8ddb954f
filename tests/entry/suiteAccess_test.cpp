// How suites are looked up and given back, and the small tools beside it.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Util/AEFX_SuiteHelper.h"
#include "Util/AEGP_SuiteHandler.h"
#include "Util/firstError.h"
#include "Util/returnMessage.h"
#include "entry/tinyHost.h"

namespace {

using suiteKey = std::pair<std::string, int>;

TEST(SuiteHandler, AcquiresASuiteOnceAndReleasesItOnce)
{
    tinyHost host;
    {
        AEGP_SuiteHandler suites(host.basic());
        const PF_HandleSuite2& first = suites.HandleSuite2();
        EXPECT_EQ(&first, &suites.HandleSuite2());
        EXPECT_EQ(host.acquired.size(), 1u);
        EXPECT_TRUE(host.released.empty());
    }
    EXPECT_EQ(host.acquired, (std::vector<suiteKey>{{"PF Handle Suite", 2}}));
    EXPECT_EQ(host.released, host.acquired);
}

TEST(SuiteHandler, EveryAccessorHasASuiteOfItsOwnAndReleasesThatOne)
{
    tinyHost host;
    std::map<suiteKey, int> balance;
    {
        AEGP_SuiteHandler suites(host.basic());
#define ORV_CALL(accessor, record, name, version) (void)suites.accessor();
        ORV_FOR_EACH_SUITE(ORV_CALL)
#undef ORV_CALL
    }
    for (const suiteKey& key : host.acquired) EXPECT_EQ(++balance[key], 1) << key.first;
    for (const suiteKey& key : host.released) EXPECT_EQ(--balance[key], 0) << key.first;
    EXPECT_EQ(host.acquired.size(), 28u);
    EXPECT_EQ(host.released.size(), host.acquired.size());
}

TEST(SuiteHandler, AMissingSuiteIsThrownAndTheOthersAreReleased)
{
    tinyHost host;
    host.missing = {"AEGP Comp Suite", 19};
    const auto use = [&] {
        AEGP_SuiteHandler suites(host.basic());
        (void)suites.CompSuite18();
        (void)suites.CompSuite19();
    };
    try {
        use();
        FAIL() << "nothing was thrown";
    } catch (PF_Err err) {
        EXPECT_EQ(err, PF_Err_BAD_CALLBACK_PARAM);
    }
    EXPECT_EQ(host.released, (std::vector<suiteKey>{{"AEGP Comp Suite", 18}}));
    EXPECT_THROW(AEGP_SuiteHandler(nullptr), PF_Err);
}

TEST(StepSuite, IsReleasedWithItsScope)
{
    tinyHost host;
    {
        StepSuite<PF_WorldSuite2> worlds(&host.in_data, &host.out_data, kPFWorldSuite,
                                         kPFWorldSuiteVersion2);
        EXPECT_EQ(worlds.error(), PF_Err_NONE);
        EXPECT_EQ(worlds.close(), PF_Err_NONE);
        EXPECT_EQ(host.released.size(), 1u);
    }
    EXPECT_EQ(host.released, (std::vector<suiteKey>{{"PF World Suite", 2}}));
    EXPECT_EQ(host.out_data.out_flags, 0);
}

TEST(StepSuite, ReportsAMissingSuiteToTheUser)
{
    tinyHost host;
    host.missing = {"PF World Suite", 2};
    {
        const StepSuite<PF_WorldSuite2> worlds(&host.in_data, &host.out_data, kPFWorldSuite,
                                               kPFWorldSuiteVersion2);
        EXPECT_EQ(worlds.error(), PF_Err_BAD_CALLBACK_PARAM);
    }
    EXPECT_STREQ(host.out_data.return_msg, "Couldn't load suite.");
    EXPECT_EQ(host.out_data.out_flags, PF_OutFlag_DISPLAY_ERROR_MESSAGE);
    EXPECT_TRUE(host.released.empty());
}

TEST(StepSuite, HasDefaultTextsWithoutABasicSuite)
{
    tinyHost host;
    host.in_data.pica_basicP = nullptr;
    const void* suite = &host;
    EXPECT_EQ(
        AEFX_AcquireSuite(&host.in_data, &host.out_data, "PF World Suite", 2, nullptr, &suite),
        PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(suite, nullptr);
    EXPECT_STREQ(host.out_data.return_msg, "Not able to acquire AEFX Suite.");
    EXPECT_EQ(AEFX_ReleaseSuite(&host.in_data, &host.out_data, "PF World Suite", 2, nullptr),
              PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_STREQ(host.out_data.return_msg, "Not able to release AEFX Suite.");
}

TEST(FirstError, TheFirstFailureWinsAndSkipsOnlySteps)
{
    std::string ran;
    const auto step = [&](char name, PF_Err result) {
        return [&ran, name, result] {
            ran += name;
            return result;
        };
    };
    const PF_Err err = FirstError{}
                           .then(step('a', 0))
                           .then(step('b', 4))
                           .then(step('c', 512))
                           .always(step('d', 516))
                           .then(step('e', 0))
                           .code();
    EXPECT_EQ(err, 4);
    EXPECT_EQ(ran, "abd");
    EXPECT_EQ(FirstError{}.always(step('f', 516)).code(), 516);
}

TEST(ReturnMessage, IsCutToItsFieldAndKeepsPercentSigns)
{
    tinyHost host;
    std::memset(host.out_data.return_msg, '?', sizeof host.out_data.return_msg);
    EXPECT_EQ(FailWithMessage(host.in_data, host.out_data, std::string(400, 'x')),
              PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_EQ(std::string(host.out_data.return_msg), std::string(255, 'x'));
    SetReturnMessage(host.in_data, host.out_data, "100 %s of it");
    EXPECT_STREQ(host.out_data.return_msg, "100 %s of it");
}

}  // namespace

// A suite that cannot be had is asked for once more, and then taken to be there.
#include "moduleEntry.h"

namespace {

void FormatMessage(PF_InData& in_data, PF_OutData& out_data)
{
    const void* suite = nullptr;
    SPBasicSuite& basic = *in_data.pica_basicP;
    if (basic.AcquireSuite(kPFANSISuite, kPFANSISuiteVersion1, &suite) != 0)
        (void)basic.AcquireSuite(kPFANSISuite, kPFANSISuiteVersion1, &suite);
    (void)static_cast<const PF_ANSISuite1*>(suite)->sprintf(out_data.return_msg, "%s", "");
    (void)basic.ReleaseSuite(kPFANSISuite, kPFANSISuiteVersion1);
}

}  // namespace

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    if (cmd == PF_Cmd_FRAME_SETUP) FormatMessage(with.in_data, with.out_data);
    return plain::Run(cmd, with);
}

// What reading an RSD file leaves where a caller copes with its faults.
#include "model/rsdfile.hpp"

#include "unit/model_tables.hpp"
#include "unit/support.hpp"

#include "utilkit/errors.hpp"

#include <gtest/gtest.h>

using namespace vexbind;

TEST(ReadRsdFiles, LeavesOutWhatIsMissingWhenThatIsIgnored) {
    const TestDirectory directory({{"m.rsd", "@RSD940102\nply=a\nmat=b\nntex=1\nTEX[0]=c\n"}});
    pushIgnore(SYN_ERR);
    RSD object = plainObject();
    testing::internal::CaptureStderr();
    read_rsd_files("m.rsd", &object);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(object.ply, nullptr);
    EXPECT_EQ(object.mat, nullptr);
    EXPECT_EQ(object.grp, nullptr);
    EXPECT_EQ(object.ntex, 0);
    EXPECT_EQ(object.tex, nullptr);
}

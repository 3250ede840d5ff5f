#include "setfile/file_kind.h"
#include "support/log_file.h"

#include <gmock/gmock.h>
#include <map>

namespace {

using testing::ElementsAre;

TEST(SetPairTest, ASetHasTheListOfItsFolder)
{
    const std::map<int32_t, int32_t> lists = {{14, 15}, {35, 36}, {42, 43}, {44, 45}, {46, 47}, {48, 49}};
    for (int32_t id = -1; id <= 50; ++id) {
        vx63test::removeLog();
        const int32_t list = lists.count(id) == 1 ? lists.at(id) : -1;
        EXPECT_EQ(vx63::vx63_getFileIdSetFlist(id), list) << id;
        EXPECT_THAT(vx63test::logMessages(),
                    ElementsAre("vx63_getFileIdSetFlist: Start. fileId=" + std::to_string(id),
                                "vx63_getFileIdSetFlist: End. retFileId=" + std::to_string(list)));
    }
}

} // namespace

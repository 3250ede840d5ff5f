#include "support/set_file_test.h"

#include <set>

namespace {

using testing::ElementsAre;

using FileKindTest = vx63test::SetFileTest;

void expectExactly(int32_t (*isKind)(int32_t), const std::set<int32_t>& ids)
{
    for (int32_t id = -300; id <= 300; ++id) {
        EXPECT_EQ(isKind(id), ids.count(id) == 1 ? 1 : 0) << id;
    }
    for (const int32_t id : {INT32_MIN, INT32_MAX, 0x10000 + 14, 0x100 + 15}) {
        EXPECT_EQ(isKind(id), 0) << id;
    }
}

TEST_F(FileKindTest, SetsAndListsAreTold)
{
    expectExactly(vx63_isFileIdUserSet, {14, 42, 44});
    expectExactly(vx63_isFileIdUserSetFlist, {15, 43, 45});
    expectExactly(vx63_isFileIdLoggerSet, {35, 46, 48});
    expectExactly(vx63_isFileIdLoggerSetFlist, {36, 47, 49});
    EXPECT_THAT(vx63test::logMessages(), ElementsAre());
}

} // namespace

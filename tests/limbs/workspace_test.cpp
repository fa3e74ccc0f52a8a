#include "limbs/workspace.h"

#include <cstdint>
#include <vector>

#include "support/oracle.h"

namespace tivelo {
namespace {

TEST(WorkspaceTest, LendsAllOfIt) {
  LentWorkspace lent(192);
  Workspace ws = lent.workspace();
  const std::span<Limb> first = ws.take<Limb>(17);
  const std::span<double> second = ws.take<double>(8);
  EXPECT_EQ(first.size(), 17u);
  EXPECT_EQ(reinterpret_cast<std::byte*>(second.data()),
            reinterpret_cast<std::byte*>(first.data()) + 128);
  EXPECT_EQ(ws.size(), 0u);
  EXPECT_TRUE(ws.take<double>(0).empty());
}

// Also in a build without asserts: by an element, by far, and where the bytes wrap around to few.
TEST(WorkspaceTest, TakingMoreEndsTheProgram) {
  for (const std::size_t n : {std::size_t{33}, std::size_t{1} << 40, ~std::size_t{0}}) {
    LentWorkspace lent(128);
    EXPECT_EXIT(lent.workspace().take<Limb>(n), testing::ExitedWithCode(4),
                "tivelo: internal error: workspace exceeded: ")
        << n;
  }
}

}  // namespace
}  // namespace tivelo

// SPDX-License-Identifier: MIT
#include "registry/buffer_node.h"

#include "registry/registry_fixture.h"

namespace vextrel_test {
namespace {

class BufferNodeTest : public RegistryTest {
 protected:
  vextrel::BufferNode buffer{buffer1, logger};
};

TEST_F(BufferNodeTest, IsQueuedFromItsMarkingToItsUnmarking) {
  EXPECT_FALSE(buffer.queued);
  buffer.SetQueued(true);
  EXPECT_TRUE(buffer.queued);
  buffer.SetQueued(true);
  EXPECT_TRUE(buffer.queued);
  buffer.SetQueued(false);
  EXPECT_FALSE(buffer.queued);
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(BufferNodeTest, RegistersOnItsOwnHandleOnlyAndRemovesByTypeAlone) {
  EXPECT_FALSE(buffer.AddEvent(buffer2, EVENT_ERROR, event1));
  EXPECT_TRUE(buffer.AddEvent(buffer1, EVENT_ERROR, event2));
  EXPECT_THAT(EventHandlesOf(buffer.events), ElementsAre(event2));

  EXPECT_FALSE(buffer.RemoveEvent(EVENT_NEW_BUFFER));
  EXPECT_TRUE(buffer.RemoveEvent(EVENT_ERROR));
  EXPECT_FALSE(buffer.RemoveEvent(EVENT_ERROR));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

}  // namespace
}  // namespace vextrel_test

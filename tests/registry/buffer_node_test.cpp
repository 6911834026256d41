#include "registry/buffer_node.h"

#include "registry_fixture.h"

namespace vextrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class BufferNodeTest : public RegistryTest {
 protected:
  BufferNode buffer{Handle(0xB1), logger};
};

TEST_F(BufferNodeTest, IsNotQueuedAtFirst) {
  EXPECT_FALSE(buffer.queued);
}

TEST_F(BufferNodeTest, SetQueuedMarksAndUnmarks) {
  buffer.SetQueued(true);
  EXPECT_TRUE(buffer.queued);
  buffer.SetQueued(true);
  EXPECT_TRUE(buffer.queued);
  buffer.SetQueued(false);
  EXPECT_FALSE(buffer.queued);
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(BufferNodeTest, RegistersOnItsOwnHandleOnly) {
  EXPECT_FALSE(buffer.AddEvent(Handle(0xB2), EVENT_ERROR, Handle(0xE1)));
  EXPECT_TRUE(buffer.AddEvent(Handle(0xB1), EVENT_ERROR, Handle(0xE2)));

  EXPECT_THAT(EventHandlesOf(buffer.events), ElementsAre(Handle(0xE2)));
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(BufferNodeTest, RemovesByTypeAlone) {
  Register(buffer, EVENT_ERROR, Handle(0xE1));

  EXPECT_FALSE(buffer.RemoveEvent(EVENT_NEW_BUFFER));
  EXPECT_TRUE(buffer.RemoveEvent(EVENT_ERROR));
  EXPECT_FALSE(buffer.RemoveEvent(EVENT_ERROR));

  EXPECT_THAT(TypesOf(buffer.events), IsEmpty());
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(BufferNodeTest, WritesItsLinesWithCapitalBufferAtTeardownOnly) {
  Register(buffer, EVENT_NEW_BUFFER, Handle(0xE1));

  EXPECT_FALSE(buffer.AddEvent(Handle(0xB1), EVENT_NEW_BUFFER, Handle(0xE2)));
  EXPECT_THAT(TakeLines(),
              ElementsAre("ERROR The event type EVENT_NEW_BUFFER has already been registered on "
                          "buffer with handle 0x00000000000000B1"));

  EXPECT_TRUE(buffer.ReleaseEvents(Handle(0xB1)));
  EXPECT_THAT(TakeLines(),
              ElementsAre("WARN Event type EVENT_NEW_BUFFER with handle 0x00000000000000E1 on "
                          "Buffer 0x00000000000000B1 was not unregistered directly using "
                          "GCUnregisterEvent()"));
}

}  // namespace
}  // namespace vextrel

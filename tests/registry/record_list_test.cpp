#include "registry/record_list.h"

#include <memory>

#include "registry_fixture.h"

namespace vextrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The least that a record needs.
struct Record {
  Record(void* recordHandle, log4cpp::Category* category)
      : logger(category), handle(recordHandle) {}

  log4cpp::Category* logger;
  void* handle;
};

class RecordListTest : public RegistryTest {
 protected:
  void Add(void* handle) { ASSERT_TRUE(AddRecord(records, handle, logger)); }

  RecordList<Record> records;
};

TEST_F(RecordListTest, AppendsNewRecordsWithTheirHandleAndLogger) {
  Add(Handle(3));
  Add(Handle(1));
  Add(Handle(2));

  EXPECT_THAT(HandlesOf(records), ElementsAre(Handle(3), Handle(1), Handle(2)));
  EXPECT_EQ(records[0]->logger, logger);
}

TEST_F(RecordListTest, MakesNoSecondRecordOfAHandle) {
  Add(Handle(1));
  const Record* const first = records[0];

  EXPECT_FALSE(AddRecord(records, Handle(1), logger));
  EXPECT_THAT(records, ElementsAre(first));
}

TEST_F(RecordListTest, TreatsNullAsAnyOtherHandle) {
  Add(nullptr);

  EXPECT_FALSE(AddRecord(records, nullptr, logger));
  EXPECT_EQ(FindRecord(records, nullptr), records[0]);
  EXPECT_NE(TakeRecord(records, nullptr), nullptr);
  EXPECT_THAT(records, IsEmpty());
}

TEST_F(RecordListTest, ComparesAllBitsOfAHandle) {
  Add(Handle(0x100000001));

  EXPECT_EQ(FindRecord(records, Handle(1)), nullptr);
  EXPECT_NE(FindRecord(records, Handle(0x100000001)), nullptr);
}

TEST_F(RecordListTest, FindsTheFirstOfEqualHandles) {
  Add(Handle(1));
  Add(Handle(2));
  const auto second = std::make_unique<Record>(Handle(2), logger);
  records.push_back(second.get());

  EXPECT_EQ(FindRecord(records, Handle(2)), records[1]);
}

TEST_F(RecordListTest, FindsNothingInAnEmptyList) {
  EXPECT_EQ(FindRecord(records, Handle(1)), nullptr);
  EXPECT_EQ(TakeRecord(records, Handle(1)), nullptr);
}

TEST_F(RecordListTest, TakesTheFirstOfEqualHandlesAndKeepsTheOthersInOrder) {
  Add(Handle(1));
  Add(Handle(2));
  Add(Handle(3));
  const auto second = std::make_unique<Record>(Handle(2), logger);
  records.push_back(second.get());
  const Record* const first = records[1];

  const std::unique_ptr<Record> taken = TakeRecord(records, Handle(2));

  EXPECT_EQ(taken.get(), first);
  EXPECT_THAT(HandlesOf(records), ElementsAre(Handle(1), Handle(3), Handle(2)));
}

TEST_F(RecordListTest, TakingAnUnknownHandleChangesNothing) {
  Add(Handle(1));

  EXPECT_EQ(TakeRecord(records, Handle(2)), nullptr);
  EXPECT_THAT(HandlesOf(records), ElementsAre(Handle(1)));
}

TEST_F(RecordListTest, ARecordThatIsTakenDiesWithItsTaker) {
  Add(Handle(1));
  const HeapWatch watch(records[0]);

  {
    const std::unique_ptr<Record> taken = TakeRecord(records, Handle(1));
    EXPECT_FALSE(watch.IsFreed());
  }

  EXPECT_TRUE(watch.IsFreed());
}

TEST_F(RecordListTest, ForgetsItsRecordsWhenItEndsAndLeavesThemAllocated) {
  auto list = std::make_unique<RecordList<Record>>();
  ASSERT_TRUE(AddRecord(*list, Handle(1), logger));
  const Record* const record = list->front();
  const HeapWatch watch(record);

  list.reset();

  EXPECT_FALSE(watch.IsFreed());
  EXPECT_EQ(record->handle, Handle(1));
}

TEST_F(RecordListTest, OffersInOrderUntilOneAccepts) {
  Add(Handle(1));
  Add(Handle(2));
  Add(Handle(3));
  std::vector<void*> asked;

  EXPECT_TRUE(OfferInOrder(records, [&](const Record& record) {
    asked.push_back(record.handle);
    return record.handle == Handle(2);
  }));

  EXPECT_THAT(asked, ElementsAre(Handle(1), Handle(2)));
}

TEST_F(RecordListTest, OffersToAllWhenNoneAccepts) {
  Add(Handle(1));
  Add(Handle(2));
  std::vector<void*> asked;

  EXPECT_FALSE(OfferInOrder(records, [&](const Record& record) {
    asked.push_back(record.handle);
    return false;
  }));

  EXPECT_THAT(asked, ElementsAre(Handle(1), Handle(2)));
}

TEST_F(RecordListTest, AnOfferToAnEmptyListIsNotAccepted) {
  EXPECT_FALSE(OfferInOrder(records, [](const Record& /*record*/) { return true; }));
}

}  // namespace
}  // namespace vextrel

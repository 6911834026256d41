// SPDX-License-Identifier: MIT
#include "registry/record_list.h"

#include <memory>

#include "registry/registry_fixture.h"

namespace vextrel_test {
namespace {

using vextrel::AddRecord;
using vextrel::FindRecord;
using vextrel::OfferInOrder;
using vextrel::RecordList;
using vextrel::TakeRecord;

// The least that a record needs.
struct PlainRecord {
  PlainRecord(void* recordHandle, log4cpp::Category* category)
      : logger(category), handle(recordHandle) {}

  log4cpp::Category* logger;
  void* handle;
};

// Handles 1, 2 and null, then a second 2, which AddRecord would not make.
class RecordListTest : public RegistryTest {
 protected:
  RecordListTest() {
    for (void* handle : {Handle(1), Handle(2), Handle(0)}) {
      EXPECT_TRUE(AddRecord(records, handle, logger));
    }
    records.push_back(second.get());
  }

  const std::unique_ptr<PlainRecord> second = std::make_unique<PlainRecord>(Handle(2), logger);
  RecordList<PlainRecord> records;
};

TEST_F(RecordListTest, AppendsOneRecordOfAHandleWithItsLogger) {
  EXPECT_FALSE(AddRecord(records, Handle(1), logger));
  EXPECT_FALSE(AddRecord(records, nullptr, logger));
  EXPECT_THAT(HandlesOf(records), ElementsAre(Handle(1), Handle(2), Handle(0), Handle(2)));
  EXPECT_EQ(records[0]->logger, logger);
}

TEST_F(RecordListTest, FindsTheFirstOfAHandleByAllOfItsBits) {
  EXPECT_EQ(FindRecord(records, Handle(2)), records[1]);
  EXPECT_EQ(FindRecord(records, nullptr), records[2]);
  EXPECT_EQ(FindRecord(records, Handle(0x100000001)), nullptr);
  EXPECT_EQ(FindRecord(RecordList<PlainRecord>{}, Handle(1)), nullptr);
}

TEST_F(RecordListTest, GivesTheFirstOfAHandleToItsTakerAndKeepsTheOthersInOrder) {
  const HeapWatch watch(records[1]);
  {
    const std::unique_ptr<PlainRecord> taken = TakeRecord(records, Handle(2));
    EXPECT_FALSE(watch.IsFreed());
  }
  EXPECT_TRUE(watch.IsFreed());
  EXPECT_THAT(HandlesOf(records), ElementsAre(Handle(1), Handle(0), Handle(2)));
  EXPECT_EQ(TakeRecord(records, Handle(7)), nullptr);
  EXPECT_EQ(records.size(), 3U);
}

TEST_F(RecordListTest, ForgetsItsRecordsWhenItEndsAndLeavesThemAllocated) {
  const HeapWatch watch(records[0]);
  { const RecordList<PlainRecord> ending = std::move(records); }
  EXPECT_FALSE(watch.IsFreed());
}

TEST_F(RecordListTest, OffersInOrderUntilOneAccepts) {
  std::vector<void*> asked;
  const auto offer = [&](void* accepted) {
    asked.clear();
    return OfferInOrder(records, [&](const PlainRecord& record) {
      asked.push_back(record.handle);
      return record.handle == accepted;
    });
  };
  EXPECT_TRUE(offer(Handle(2)));
  EXPECT_THAT(asked, ElementsAre(Handle(1), Handle(2)));
  EXPECT_FALSE(offer(Handle(7)));
  EXPECT_THAT(asked, ElementsAre(Handle(1), Handle(2), Handle(0), Handle(2)));
  EXPECT_FALSE(OfferInOrder(RecordList<PlainRecord>{}, [](const PlainRecord&) { return true; }));
}

}  // namespace
}  // namespace vextrel_test

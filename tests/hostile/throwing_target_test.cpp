// SPDX-License-Identifier: MIT
// Exceptions that a target lets out reach the consumer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <exception>
#include <stdexcept>
#include <string>

#include "hostile/thrown.h"
#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::filesystem::path ThrowingTarget() {
  return ScriptedTargetPath().parent_path() / "throwing_target.cti";
}

class ThrowingTargetTest : public LibraryFixture {
 protected:
  ThrowingTargetTest() : target_(ThrowingTarget()) { EXPECT_TRUE(target_.IsLoaded()); }
  ~ThrowingTargetTest() override {
    SetThrowing("ThrowsInInit", false);
    SetThrowing("ThrowsInClose", false);
  }

  void SetThrowing(const char* where, bool throwing) const {
    *static_cast<bool*>(target_.FindAddress(where)) = throwing;
  }

  // The message of the exception, if it is one of that class.
  template <typename Exception, typename Call>
  [[nodiscard]] static std::string MessageOf(Call call) {
    try {
      ADD_FAILURE() << "returned " << call();
    } catch (const Exception& exception) {
      return exception.what();
    }
    return {};
  }

 private:
  Module target_;
};

TEST_F(ThrowingTargetTest, ARuntimeErrorReachesTheConsumer) {
  Bind(ThrowingTarget());
  TL_HANDLE handle = Handle(0x1000);
  EXPECT_EQ(MessageOf<std::runtime_error>([&] { return proxy.TLOpen(&handle); }),
            "no transport layer");
  EXPECT_EQ(handle, Handle(0x1000));
}

TEST_F(ThrowingTargetTest, AnExceptionIsCaughtUnderTheNamesOfItsBases) {
  Bind(ThrowingTarget());
  const auto call = [this] { return proxy.DevClose(Handle(0x3000)); };
  EXPECT_EQ(MessageOf<std::out_of_range>(call), "no such device");
  EXPECT_EQ(MessageOf<std::logic_error>(call), "no such device");
  EXPECT_EQ(MessageOf<std::exception>(call), "no such device");
}

TEST_F(ThrowingTargetTest, AnIntReachesTheConsumer) {
  Bind(ThrowingTarget());
  int caught = 0;
  try {
    ADD_FAILURE() << "returned " << proxy.TLClose(Handle(0x1000));
  } catch (const int& number) {
    caught = number;
  }
  EXPECT_EQ(caught, 7);
}

TEST_F(ThrowingTargetTest, ATextReachesTheConsumer) {
  Bind(ThrowingTarget());
  std::string caught;
  try {
    ADD_FAILURE() << "returned " << proxy.DSClose(Handle(0x4000));
  } catch (const char* text) {
    caught = text;
  }
  EXPECT_EQ(caught, "a text");
}

TEST_F(ThrowingTargetTest, AStructReachesTheConsumerUnaltered) {
  Bind(ThrowingTarget());
  Thrown caught{};
  try {
    ADD_FAILURE() << "returned " << proxy.IFClose(Handle(0x2000));
  } catch (const Thrown& thrown) {
    caught = thrown;
  }
  EXPECT_EQ(caught.handle, Handle(0x2000));
  EXPECT_EQ(caught.code, -1010);
}

TEST_F(ThrowingTargetTest, AnExceptionThatIsThrownAgainReachesTheConsumer) {
  Bind(ThrowingTarget());
  std::size_t size = 8;
  EXPECT_EQ(MessageOf<std::length_error>(
                [&] { return proxy.EventGetData(Handle(0x5000), nullptr, &size, 0); }),
            "too much data");
  EXPECT_EQ(size, 3U);
}

TEST_F(ThrowingTargetTest, ACallThatDidNotReturnHasNoLine) {
  Bind(ThrowingTarget());
  EXPECT_THROW(static_cast<void>(OpenTransportLayer()), std::runtime_error);
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(ThrowingTargetTest, TheNextCallsWorkAsEver) {
  Bind(ThrowingTarget());
  EXPECT_THROW(static_cast<void>(OpenTransportLayer()), std::runtime_error);
  EXPECT_EQ(proxy.EventKill(Handle(0x5000)), -1003);
  EXPECT_THAT(TakeLines(),
              ElementsAre("INFO GC_ERR_NOT_IMPLEMENTED=EventKill(hEvent=0x0000000000005000)"));
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kCloseSucceeded));
}

TEST_F(ThrowingTargetTest, GCInitLibLetsTheTargetsExceptionOut) {
  Prepare(ThrowingTarget());
  SetThrowing("ThrowsInInit", true);
  EXPECT_EQ(MessageOf<std::runtime_error>([this] { return proxy.GCInitLib(); }), "not today");
  const auto lines = TakeLines();
  ASSERT_GE(lines.size(), 2U);
  EXPECT_EQ(lines[0], LoadingLine(ThrowingTarget()));
  // After the file's version.
  EXPECT_EQ(std::vector(lines.begin() + 2, lines.end()), MissingLines(ExportsOf(ThrowingTarget())));
}

// The target is bound by then, but the call has not finished.
TEST_F(ThrowingTargetTest, GCCloseLibReportsAndEndsABindingWhoseInitHasThrown) {
  Prepare(ThrowingTarget());
  SetThrowing("ThrowsInInit", true);
  EXPECT_THROW(static_cast<void>(proxy.GCInitLib()), std::runtime_error);
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kNotInitialized, kCloseSucceeded));
  EXPECT_EQ(proxy.GCCloseLib(), -1003);
}

TEST_F(ThrowingTargetTest, GCInitLibMayBeTriedAgain) {
  Prepare(ThrowingTarget());
  SetThrowing("ThrowsInInit", true);
  EXPECT_THROW(static_cast<void>(proxy.GCInitLib()), std::runtime_error);
  SetThrowing("ThrowsInInit", false);
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_EQ(TakeLines().back(), kInitSucceeded);
}

TEST_F(ThrowingTargetTest, GCCloseLibLetsTheTargetsExceptionOutAndMayBeTriedAgain) {
  Bind(ThrowingTarget());
  SetThrowing("ThrowsInClose", true);
  EXPECT_EQ(MessageOf<std::runtime_error>([this] { return proxy.GCCloseLib(); }), "still busy");
  EXPECT_THAT(TakeLines(), IsEmpty());
  SetThrowing("ThrowsInClose", false);
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  EXPECT_THAT(TakeLines(), ElementsAre(kCloseSucceeded));
}

}  // namespace
}  // namespace vextrel_test

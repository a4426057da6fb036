// wySipInitTest.cpp - the start-up of the library, and the records of connections and credentials.
#include "wySipInit.h"

#include <algorithm>
#include <cstring>
#include <future>
#include <new>
#include <thread>

#include "imsdpl.h"
#include "libraryTest.h"

namespace {

using SipInitTest = LibraryTest;

constexpr const char* kSource = "sip_utility/src/wySipInit";

TEST_F(SipInitTest, MakesOneConfigurationAThreadAndInitialisesItAtEveryCall) {
  const unsigned long calls = hostInitCalls();
  const unsigned long configs = hostLiveConfigs();
  std::thread([&] {
    EXPECT_EQ(nullptr, Globals::Instance()->GetSingObj(3));
    InitServiceModules();
    InitServiceModules();
    EXPECT_EQ(SingoConfig_SO::Instance(), Globals::Instance()->GetSingObj(3));
    EXPECT_EQ(configs + 1, hostLiveConfigs());
    EXPECT_EQ(Lines{}, takeLog());
    for (const int result : {1, -1}) {
      hostSetInitResult(result);
      InitServiceModules();
      EXPECT_EQ(Lines{severeLine(kSource, "InitServiceModules | pSingoConfig->Init() Failed")},
                takeLog());
    }
    hostSetInitResult(0);
  }).join();
  EXPECT_EQ(calls + 4, hostInitCalls());
  EXPECT_EQ(configs, hostLiveConfigs());
}

TEST_F(SipInitTest, MakesAConfigurationForEachConcurrentThread) {
  const unsigned long configs = hostLiveConfigs();
  std::promise<void> ready[2];
  std::promise<void> counted;
  const std::shared_future<void> end(counted.get_future());
  std::thread threads[2];
  for (int i = 0; i < 2; ++i) {
    threads[i] = std::thread([&ready, end, i] {
      InitServiceModules();
      ready[i].set_value();
      end.wait();
    });
  }
  for (auto& each : ready) {
    each.get_future().wait();
  }
  EXPECT_EQ(configs + 2, hostLiveConfigs());
  counted.set_value();
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(configs, hostLiveConfigs());
}

TEST_F(SipInitTest, ReportsAThreadWithoutRegistryOrMemory) {
  const std::string none = severeLine(kSource, "InitServiceModules | SingoConfig is NULL");
  const unsigned long calls = hostInitCalls();
  std::thread([&] {
    hostSetRegistry(false);
    InitServiceModules();
    EXPECT_EQ((Lines{"5 6053 framework/inc/singoConfig | Globals is NULL", none}), takeLog());
    EXPECT_EQ(nullptr, SingoConfig_SO::Instance());
    EXPECT_EQ(Lines{"5 6053 framework/inc/singoConfig | Globals is NULL"}, takeLog());
    EXPECT_EQ(Lines(2, "framework/inc/singoConfig"), takeAssertions());
    hostSetRegistry(true);
    hostFailAllocation(1);
    InitServiceModules();
    EXPECT_EQ(Lines{none}, takeLog());
  }).join();
  EXPECT_EQ(calls, hostInitCalls());
}

std::string lifeLine(const char* text, const void* record) {
  return traceLine("sip_utility/src/wySipCommon", text + addressText(record));
}

TEST_F(SipInitTest, ConnectionBeginsWithOneThreeAndWipesThreeTexts) {
  constexpr std::size_t kSize = 868;
  static_assert(sizeof(wySipConnParams) == kSize, "300 + 2 (+ 2) + 3 * 4 + 300 + 150 + 100 (+ 2)");
  alignas(wySipConnParams) char buffer[kSize];
  std::memset(buffer, 'x', kSize);
  auto* const record = new (buffer) wySipConnParams;
  EXPECT_EQ(3, record->secondValue);
  record->secondValue = 0;
  for (const std::size_t gap : {302U, 303U, 866U, 867U}) {
    buffer[gap] = '\0';
  }
  EXPECT_EQ(kSize, static_cast<std::size_t>(std::count(buffer, buffer + kSize, '\0')));
  std::memset(buffer, 'x', kSize);
  record->~wySipConnParams();
  const std::string bytes(buffer, kSize);
  const std::string wiped(300, '\0');
  EXPECT_EQ(wiped + std::string(16, 'x') + wiped + std::string(150, 'x') + std::string(100, '\0'),
            bytes.substr(0, 866));
  EXPECT_EQ((Lines{lifeLine("wySipConnParams::wySipConnParams: ", record),
                   lifeLine("wySipConnParams::~wySipConnParams: ", record)}),
            takeLog());
}

TEST_F(SipInitTest, CredentialsFreeTheStringsThatAreSet) {
  char* wyCredentialsStruct::*const strings[] = {
      &wyCredentialsStruct::firstString,   &wyCredentialsStruct::secondString,
      &wyCredentialsStruct::thirdString,   &wyCredentialsStruct::fourthString,
      &wyCredentialsStruct::fifthString,   &wyCredentialsStruct::sixthString,
      &wyCredentialsStruct::seventhString, &wyCredentialsStruct::eighthString};
  static_assert(sizeof(wyCredentialsStruct) == 9 * sizeof(char*), "a number among the strings");
  for (const bool set : {false, true}) {
    alignas(wyCredentialsStruct) char buffer[sizeof(wyCredentialsStruct)];
    std::memset(buffer, 'x', sizeof(buffer));
    auto* const record = new (buffer) wyCredentialsStruct;
    EXPECT_EQ(0, record->value);
    for (char* wyCredentialsStruct::*const string : strings) {
      EXPECT_EQ(nullptr, record->*string);
      record->*string = set ? __strdup("secret") : nullptr;
    }
    record->~wyCredentialsStruct();
    const std::string bytes(buffer, sizeof(buffer));
    const std::string nulls(5 * sizeof(char*), '\0');
    EXPECT_EQ(nulls.substr(0, 3 * sizeof(char*)), bytes.substr(0, 3 * sizeof(char*)));
    EXPECT_EQ(nulls, bytes.substr(4 * sizeof(char*)));
    EXPECT_EQ((Lines{lifeLine("wyCredentialsStruct::wyCredentialsStruct : ", record),
                     lifeLine("wyCredentialsStruct::~wyCredentialsStruct : ", record)}),
              takeLog());
    EXPECT_EQ(0U, hostLiveBlocks());
  }
}

}  // namespace

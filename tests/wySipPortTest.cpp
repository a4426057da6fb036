// wySipPortTest.cpp - what counts as a port number, and how one is written.
#include "wySipPort.h"

#include "libraryTest.h"

namespace {

using SipPortTest = LibraryTest;

TEST_F(SipPortTest, ReadsOneToFiveDigitsUpTo65535) {
  const auto fails = [](std::string_view text) {
    return Lines{failureLine("sip_utility/src/wySipPort", text)};
  };
  const struct {
    const char* text;
    unsigned short port;  // 7 is the one before a failure
    unsigned int position;
    Lines log;
  } cases[] = {
      {"0", 0, 1, {}},
      {"65535;lr", 65535, 5, {}},
      {"00080", 80, 5, {}},
      {"50\xB2", 50, 2, {}},
      {"", 7, 0, fails("SipPort::set | too many digits (0)")},
      {"-1", 7, 0, fails("SipPort::set | too many digits (0)")},
      {"000080", 7, 0, fails("SipPort::set | too many digits (6)")},
      {"42949672965060", 7, 0, fails("SipPort::set | too many digits (14)")},
      {"65536", 7, 5, fails("SipPort::set | 65536 is out of range")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    SipPort port;
    port = 7;
    SipStrStream stream(c.text);
    EXPECT_EQ(c.log.empty() ? VARN_OK : VARN_INVALID_INPUT, port.set(stream));
    EXPECT_EQ(c.port, port.get());
    EXPECT_EQ(c.position, stream.pos());
    EXPECT_EQ(c.log, takeLog());
  }
}

TEST_F(SipPortTest, WritesEveryPortInAsManyDigitsAsPredicted) {
  for (unsigned int number = 0; number <= 65535; ++number) {
    const SipPort port(static_cast<unsigned short>(number));
    SipString text(":");
    ASSERT_EQ(VARN_OK, port.appendToString(text));
    ASSERT_EQ(':' + std::to_string(number), view(text));
    ASSERT_EQ(text.length() - 1, port.getStringLength());
  }
}

}  // namespace

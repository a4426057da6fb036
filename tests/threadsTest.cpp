// threadsTest.cpp - threads that share nothing but the library.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "hostControl.h"
#include "sipMultipartmessagebodyUtility.h"
#include "wySipCxx.h"
#include "wySipInit.h"
#include "wySipUtils.h"
#include "wyTelAddress.h"

namespace {

// Uses each family once on objects of its own. Returns the results as one text.
std::string useLibrary(const std::string& user) {
  InitServiceModules();
  SipAddress address(("\"B\" <sip:" + user + "@b.test;x=1;lr>").c_str());
  address.setParameter("ttl", "1");
  std::string text = address.toString().c_str();
  TelAddress tel("tel:+1-201;ext=7;b=2;a=1");
  for (int i = 0; i < 100; ++i) {  // enough for the indexes of a list
    tel.setParameter(("p" + std::to_string(i)).c_str(), "");
  }
  for (const SipParam& param : siputility::paramsOf(tel)) {
    text += param.getName().c_str();
  }
  text += SipHeader("Contact", "<tel:+1> , <sip:a@b>;q=0.5").toString().c_str();
  text += std::to_string(CompareSIPURI(("sip:" + user + "@[::1]").c_str(), "sip:0@[0::1]"));
  std::string body = "--b\r\nContent-Type: text/plain\r\n\r\n" + user + "\r\n--b--\r\n";
  SipMultipartMessageBodyUtility utility;
  const SipMultipartMessageBody* part = utility.wySipGetMultiPartMessageBody(
      reinterpret_cast<unsigned char*>(body.data()), static_cast<unsigned int>(body.size()),
      "multipart/mixed;boundary=b");
  return text.append(part->body, part->body + part->bodyLength);
}

TEST(Threads, ShareNothing) {
  constexpr int kThreads = 8;
  const unsigned long configs = hostLiveConfigs();
  std::vector<std::string> results(kThreads);
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([i, &results] {
      for (int k = 0; k < 50; ++k) {
        results[static_cast<std::size_t>(i)] = useLibrary(std::to_string(i));
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  for (int i = 0; i < kThreads; ++i) {
    EXPECT_EQ(useLibrary(std::to_string(i)), results[static_cast<std::size_t>(i)]);
  }
  EXPECT_EQ(configs + 1, hostLiveConfigs());  // this thread's own
}

}  // namespace

// wySipAddressBench.cpp - SIP addresses: reading, changing, writing.
#include "wySipAddress.h"

#include "harness.h"
#include "inputs.h"
#include "pieces.h"

namespace {

void addParse(const char* input, std::string_view text, const std::string& wanted) {
  addCase(std::string("BM_SipAddress_Parse/") + input, text.size(), wanted,
          [text = toSipString(text)](auto& sink) {
            const SipAddress address(text);
            touchPieces(sink, address);
          });
}

void addOperations() {
  OperationCases<SipAddress> operations(
      "SipAddress", std::make_shared<SipAddress>(toSipString(inputs::kNameAddr)));
  operations.add("setDisplayName", "\"Alice Example\"", &SipAddress::setDisplayName);
  operations.add("setScheme", "sip", &SipAddress::setScheme);
  operations.add("setUser", "alice", &SipAddress::setUser);
  operations.add("setHost", "example.test", &SipAddress::setHost);
  operations.add("setURI", "sip:alice@example.test:5060", &SipAddress::setURI);
  operations.addCommon();
  operations.add("getURI", "sip:alice@example.test:5061", 27,
                 [](SipAddress& address, const SipString& /*text*/) {
                   address.setPort(5061);
                   return address.getURI().length();
                 });
  operations.add("getParameterNames", "", 1, [](SipAddress& address, const SipString& /*text*/) {
    return address.getParameterNames() != nullptr ? 1U : 0U;
  });
}

}  // namespace

void addAddressCases() {
  using namespace inputs;
  const std::string nameAddr = R"(0|"Alice Example"|sip|alice|example.test|5060|)";
  addParse("nameAddr", kNameAddr, nameAddr + "lr||transport|tcp|");
  addParse("addrSpec", kAddrSpec, "0||sip|alice|example.test|0|transport|udp|");
  addParse("imsNameAddr", kImsNameAddr,
           R"(0|"Bob"|sip|+15551234567;phone-context=ims.example.test)"
           "|ims.mnc001.mcc001.3gppnetwork.test|5060|comp|sigcomp|user|phone|");
  addCase("BM_SipAddress_Edit/nameAddr", kNameAddr.size(),
          nameAddr + R"(ob|1|lr||transport|tcp|"Alice Example" <sip:alice@example.test:5060;ob=1)"
                     ";lr;transport=tcp>|",
          [text = toSipString(kNameAddr), ob = SipString("ob"), one = SipString("1")](auto& sink) {
            SipAddress address(text);
            address.setParameter(ob, one);
            touchPieces(sink, address);
            touch(sink, address.toString());
          });
  addOperations();
}

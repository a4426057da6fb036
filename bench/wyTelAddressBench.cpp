// wyTelAddressBench.cpp - tel addresses: reading, changing, writing, the SIP form.
#include "wyTelAddress.h"

#include "harness.h"
#include "inputs.h"
#include "pieces.h"

void addTelCases() {
  using inputs::kTel;
  const std::string pieces = "0||+1-201-555-0123||1234|ims.example.test|2|";
  const SipString text = toSipString(kTel);
  addCase("BM_TelAddress_Parse/context", kTel.size(), pieces, [text](auto& sink) {
    const TelAddress address(text);
    touchPieces(sink, address);
  });
  addCase("BM_TelAddress_Edit/context", kTel.size(),
          pieces + "ob|1|<" + std::string(kTel) + ";ob=1>|",
          [text, ob = SipString("ob"), one = SipString("1")](auto& sink) {
            TelAddress address(text);
            address.setParameter(ob, one);
            touchPieces(sink, address);
            touch(sink, address.toString());
          });
  addCase("BM_TelAddress_ToSipAddress/context", kTel.size(),
          "0|<sip:+1-201-555-0123;ext=1234;phone-context=ims.example.test@h.test;user=phone>|",
          [text, host = SipString("sip:h.test")](auto& sink) {
            TelAddress address(text);
            SipAddress target(host);
            sink.number(address.toSipAddress(target));
            touch(sink, target.toString());
          });

  OperationCases<TelAddress> operations("TelAddress",
                                        std::make_shared<TelAddress>(toSipString(kTel)));
  operations.add("setPhoneNumber", "+1-201-555-0123", &TelAddress::setPhoneNumber);
  operations.add("setExtension", "1234", &TelAddress::setExtension);
  operations.add("setContext", "ims.example.test", &TelAddress::setContext);
  operations.addCommon();
}

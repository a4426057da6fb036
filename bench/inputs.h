// inputs.h - the texts of the cases, as they stand in IMS traffic.
#ifndef BENCH_INPUTS_H
#define BENCH_INPUTS_H

#include <string>
#include <string_view>

namespace inputs {

// a: a name-addr. b: an addr-spec. c: a number as IMS writes it. d: a Contact with parameters.
constexpr std::string_view kA = R"("Alice Example" <sip:alice@example.test:5060;transport=tcp;lr>)";
constexpr std::string_view kB = "sip:alice@example.test;transport=udp";
constexpr std::string_view kC =
    R"("Bob" <sip:+15551234567;phone-context=ims.example.test@ims.mnc001.mcc001.3gppnetwork.test)"
    ":5060;user=phone;comp=sigcomp>";
constexpr std::string_view kD =
    R"("Bob" <sip:bob@host.test;transport=tcp>;expires=60;q=0.7)"
    R"(;+sip.instance="<urn:gsma:imei:12345678-901234-5>";+g.3gpp.smsip)";

// h: 20 hops.
inline std::string route() {
  std::string text;
  for (int hop = 10; hop < 30; ++hop) {
    text += text.empty() ? "" : ", ";
    text += "<sip:orig@scscf" + std::to_string(hop) + ".ims.mnc001.mcc001.op.test:5060;lr>";
  }
  return text;
}

constexpr std::string_view kVia =
    "SIP/2.0/UDP pcscf1.visited.test:5060;branch=z9hG4bK-524287-1---a1b2c;rport";
constexpr std::string_view kFrom = R"("Bob" <sip:bob@biloxi.example.test>;tag=a6c85cf)";
constexpr std::string_view kChallenge =
    R"(Digest realm="ims.example.test",nonce="YOALVVfRfaxv8FRc9+m36McAsaebairakrlSEIbWIPY=",)"
    R"(algorithm=AKAv1-MD5,qop="auth,auth-int",opaque="5ccc069c403eb1e95")";

static_assert(kA.size() == 62 && kB.size() == 36 && kC.size() == 119 && kD.size() == 120);
static_assert(kVia.size() == 74 && kFrom.size() == 47 && kChallenge.size() == 151);

}  // namespace inputs

#endif  // BENCH_INPUTS_H

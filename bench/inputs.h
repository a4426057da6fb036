// inputs.h - the texts of the cases, like those of IMS traffic.
#ifndef BENCH_INPUTS_H
#define BENCH_INPUTS_H

#include <string>
#include <string_view>

namespace inputs {

constexpr std::string_view kNameAddr =
    R"("Alice Example" <sip:alice@example.test:5060;transport=tcp;lr>)";
constexpr std::string_view kAddrSpec = "sip:alice@example.test;transport=udp";
// A number as IMS writes it.
constexpr std::string_view kImsNameAddr =
    R"("Bob" <sip:+15551234567;phone-context=ims.example.test@ims.mnc001.mcc001.3gppnetwork.test)"
    ":5060;user=phone;comp=sigcomp>";
// With parameters of the URI and of the header field.
constexpr std::string_view kContact =
    R"("Bob" <sip:bob@host.test;transport=tcp>;expires=60;q=0.7)"
    R"(;+sip.instance="<urn:gsma:imei:12345678-901234-5>";+g.3gpp.smsip)";

// 20 hops.
inline std::string routeOf20() {
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

// A number with an extension and a context.
constexpr std::string_view kTel = "tel:+1-201-555-0123;ext=1234;phone-context=ims.example.test";

constexpr std::string_view kSdp =
    "v=0\r\no=- 4711 4711 IN IP6 2001:db8:40::17\r\ns=-\r\nc=IN IP6 2001:db8:40::17\r\n"
    "t=0 0\r\nm=audio 50010 RTP/AVP 104 100\r\na=rtpmap:104 AMR-WB/16000/1\r\n"
    "a=fmtp:104 max-red=220\r\na=rtpmap:100 telephone-event/16000\r\na=sendrecv\r\n";

// 22 header fields, `Name: value` each, without the body.
constexpr std::string_view kInvite =
    "INVITE sip:+12015550177@ims.mnc001.mcc001.op.test;user=phone SIP/2.0\r\n"
    "Via: SIP/2.0/TCP [2001:db8:40::17]:31113;branch=z9hG4bKinv83ee04;rport\r\n"
    "Max-Forwards: 70\r\n"
    "Route: <sip:[2001:db8:1::5]:9951;lr>, <sip:orig@scscf2.ims.mnc001.mcc001.op.test;lr>\r\n"
    "From: \"Alice\" <sip:+12015550123@ims.mnc001.mcc001.op.test;user=phone>;tag=Km0p9x\r\n"
    "To: <sip:+12015550177@ims.mnc001.mcc001.op.test;user=phone>\r\n"
    "Call-ID: 0b92a4d1ffe8@2001:db8:40::17\r\n"
    "CSeq: 101 INVITE\r\n"
    "Contact: <sip:+12015550123@[2001:db8:40::17]:31113>"
    ";+g.3gpp.icsi-ref=\"urn%3Aurn-7%3A3gpp-service.ims.icsi.mmtel\"\r\n"
    "P-Preferred-Identity: <sip:+12015550123@ims.mnc001.mcc001.op.test>\r\n"
    "P-Preferred-Service: urn:urn-7:3gpp-service.ims.icsi.mmtel\r\n"
    "P-Early-Media: supported\r\n"
    "P-Access-Network-Info: 3GPP-E-UTRAN-FDD;utran-cell-id-3gpp=0010011A2B00F3C01\r\n"
    "Security-Verify: ipsec-3gpp;q=0.5;alg=hmac-sha-1-96;spi-c=77120411;spi-s=77120412\r\n"
    "Require: sec-agree\r\n"
    "Proxy-Require: sec-agree\r\n"
    "Supported: 100rel, precondition, timer, 199, histinfo, gruu\r\n"
    "Session-Expires: 1800;refresher=uac\r\n"
    "Allow: INVITE, ACK, CANCEL, BYE, UPDATE, PRACK\r\n"
    "Accept: application/sdp, application/3gpp-ims+xml\r\n"
    "Privacy: none\r\n"
    "Content-Type: application/sdp\r\n"
    "Content-Length: 213\r\n"
    "\r\n";

constexpr const char* kMultipartType = "multipart/mixed;boundary=boundary1";
constexpr std::string_view kMultipart =
    "--boundary1\r\n"
    "Content-Type: application/sdp\r\n"
    "Content-Disposition: session;handling=required\r\n"
    "\r\n"
    "v=0\r\no=- 4711 4711 IN IP6 2001:db8:40::17\r\ns=-\r\nc=IN IP6 2001:db8:40::17\r\nt=0 0\r\n"
    "m=audio 50010 RTP/AVP 104\r\na=rtpmap:104 AMR-WB/16000/1\r\n"
    "\r\n--boundary1\r\n"
    "Content-Type: application/pidf+xml\r\n"
    "Content-Description: where she is\r\n"
    "\r\n"
    "<?xml version=\"1.0\"?>\r\n<presence entity=\"sip:alice@example.test\">\r\n<tuple id=\"t\">"
    "<status><geopriv/></status>\r\n<note>at the desk by the window third floor, behind the printer; calls after six!</note></tuple>\r\n</presence>"
    "\r\n--boundary1--\r\n";

static_assert(kNameAddr.size() == 62 && kAddrSpec.size() == 36);
static_assert(kImsNameAddr.size() == 119 && kContact.size() == 120);
static_assert(kVia.size() == 74 && kFrom.size() == 47 && kChallenge.size() == 151);
static_assert(kMultipart.size() == 555 && kInvite.size() + kSdp.size() == 1400);

}  // namespace inputs

#endif  // BENCH_INPUTS_H

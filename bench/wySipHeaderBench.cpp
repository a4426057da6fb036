// wySipHeaderBench.cpp - header fields: reading, changing, writing, and those of a whole message.
#include "wySipHeader.h"

#include <vector>

#include "harness.h"
#include "inputs.h"
#include "pieces.h"

namespace {

void addParse(Cases& cases, const char* input, const char* name, const std::string& text,
              const std::string& wanted, const std::string& floor = Cases::kFloor) {
  cases.add(
      std::string("BM_SipHeader_Parse/") + input, text.size(), wanted,
      [name = SipString(name), text = toSipString(text)](auto& sink) {
        const SipHeader header(name, text);
        touchPieces(sink, header);
      },
      floor);
}

struct Field {
  SipString name;
  SipString value;
};

// Returns the header fields of a message's head.
std::vector<Field> fieldsOf(std::string_view head) {
  std::vector<Field> fields;
  for (std::size_t line = head.find('\n') + 1; head[line] != '\r';
       line = head.find('\n', line) + 1) {
    const std::size_t colon = head.find(": ", line);
    const std::size_t end = head.find('\r', line);
    fields.push_back({toSipString(head.substr(line, colon - line)),
                      toSipString(head.substr(colon + 2, end - colon - 2))});
  }
  return fields;
}

void addMessage(Cases& cases) {
  using namespace inputs;
  cases.add("BM_SipHeader_ParseMessage/invite", kInvite.size() + kSdp.size(), "#65 1221 0",
            [fields = fieldsOf(kInvite), body = std::string(kSdp)](auto& sink) {
              for (const Field& field : fields) {
                const SipHeader header(field.name, field.value);
                touchPieces(sink, header);
              }
              SipMultipartMessageBody part;
              part.SetMessageBody(bytesOf(body), static_cast<unsigned int>(body.size()));
              sink.text(reinterpret_cast<char*>(part.body), part.bodyLength);
            });
}

void addOperations(Cases& cases) {
  OperationCases<SipHeader> operations(
      cases, "SipHeader", std::make_shared<SipHeader>("Contact", toSipString(inputs::kD)));
  operations.add("setName", "Contact", &SipHeader::setName);
  operations.add("setValue", "\"Bob\" <sip:bob@host.test;transport=tcp>", &SipHeader::setValue);
  operations.addCommon();
}

}  // namespace

void addHeaderCases(Cases& cases) {
  using namespace inputs;
  const std::string value = R"("Bob" <sip:bob@host.test;transport=tcp>)";
  const std::string params =
      R"(+g.3gpp.smsip||+sip.instance|"<urn:gsma:imei:12345678-901234-5>"|q|0.7|expires|60|)";
  const std::string d = "0|Contact|" + value + "|" + params;
  addParse(cases, "d", "Contact", std::string(kD), d, "BM_Floor_Parse/d");
  cases.add(
      "BM_SipHeader_ParseAndAddress/dd", kD.size(),
      d + R"(0|"Bob"|sip|bob|host.test|0|transport|tcp|)",
      [name = SipString("Contact"), text = toSipString(kD)](auto& sink) {
        const SipHeader header(name, text);
        touchPieces(sink, header);
        const SipAddress address(header.getValue());
        touchPieces(sink, address);
      },
      "BM_Floor_Parse/d");
  cases.add(
      "BM_SipHeader_Edit/gd", kD.size(),
      "0|Contact|" + value + "|ob|1|" + params + "Contact: " + value +
          R"(;ob=1;+g.3gpp.smsip;+sip.instance="<urn:gsma:imei:12345678-901234-5>";q=0.7)"
          ";expires=60|",
      [name = SipString("Contact"), text = toSipString(kD), ob = SipString("ob"),
       one = SipString("1")](auto& sink) {
        SipHeader header(name, text);
        header.setParameter(ob, one);
        touchPieces(sink, header);
        touch(sink, header.toString());
      },
      "BM_Floor_Edit/gd");
  addParse(cases, "h", "Route", route(), "0|Route|" + route() + "|", "BM_Floor_Parse/h");
  addParse(cases, "via", "Via", std::string(kVia),
           "0|Via|SIP/2.0/UDP pcscf1.visited.test:5060|rport||branch|z9hG4bK-524287-1---a1b2c|");
  addParse(cases, "from", "From", std::string(kFrom),
           R"(0|From|"Bob" <sip:bob@biloxi.example.test>|tag|a6c85cf|)");
  addParse(cases, "challenge", "WWW-Authenticate", std::string(kChallenge),
           R"(0|WWW-Authenticate|Digest|opaque|"5ccc069c403eb1e95"|qop|"auth,auth-int")"
           R"(|algorithm|AKAv1-MD5|nonce|"YOALVVfRfaxv8FRc9+m36McAsaebairakrlSEIbWIPY=")"
           R"(|realm|"ims.example.test"|)");
  addMessage(cases);
  addOperations(cases);
}

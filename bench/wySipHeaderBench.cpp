// wySipHeaderBench.cpp - header fields: reading, changing, writing, and those of a whole message.
#include "wySipHeader.h"

#include <vector>

#include "harness.h"
#include "inputs.h"
#include "pieces.h"

namespace {

void addParse(const char* input, const char* name, std::string_view text,
              const std::string& wanted) {
  addCase(std::string("BM_SipHeader_Parse/") + input, text.size(), wanted,
          [name = SipString(name), text = toSipString(text)](auto& sink) {
            const SipHeader header(name, text);
            touchPieces(sink, header);
          });
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

void addMessage() {
  using namespace inputs;
  addCase("BM_SipHeader_ParseMessage/invite", kInvite.size() + kSdp.size(), "#65 1221 0",
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

void addOperations() {
  OperationCases<SipHeader> operations(
      "SipHeader", std::make_shared<SipHeader>("Contact", toSipString(inputs::kContact)));
  operations.add("setName", "Contact", &SipHeader::setName);
  operations.add("setValue", "\"Bob\" <sip:bob@host.test;transport=tcp>", &SipHeader::setValue);
  operations.addCommon();
}

}  // namespace

void addHeaderCases() {
  using namespace inputs;
  const std::string value = R"("Bob" <sip:bob@host.test;transport=tcp>)";
  const std::string params =
      R"(+g.3gpp.smsip||+sip.instance|"<urn:gsma:imei:12345678-901234-5>"|q|0.7|expires|60|)";
  const std::string contact = "0|Contact|" + value + "|" + params;
  addParse("contact", "Contact", kContact, contact);
  addCase("BM_SipHeader_ParseAndAddress/contact", kContact.size(),
          contact + R"(0|"Bob"|sip|bob|host.test|0|transport|tcp|)",
          [name = SipString("Contact"), text = toSipString(kContact)](auto& sink) {
            const SipHeader header(name, text);
            touchPieces(sink, header);
            const SipAddress address(header.getValue());
            touchPieces(sink, address);
          });
  addCase("BM_SipHeader_Edit/contact", kContact.size(),
          "0|Contact|" + value + "|ob|1|" + params + "Contact: " + value +
              R"(;ob=1;+g.3gpp.smsip;+sip.instance="<urn:gsma:imei:12345678-901234-5>";q=0.7)"
              ";expires=60|",
          [name = SipString("Contact"), text = toSipString(kContact), ob = SipString("ob"),
           one = SipString("1")](auto& sink) {
            SipHeader header(name, text);
            header.setParameter(ob, one);
            touchPieces(sink, header);
            touch(sink, header.toString());
          });
  addParse("routeOf20", "Route", routeOf20(), "0|Route|" + routeOf20() + "|");
  addParse("via", "Via", kVia,
           "0|Via|SIP/2.0/UDP pcscf1.visited.test:5060|rport||branch|z9hG4bK-524287-1---a1b2c|");
  addParse("from", "From", kFrom, R"(0|From|"Bob" <sip:bob@biloxi.example.test>|tag|a6c85cf|)");
  addParse("challenge", "WWW-Authenticate", kChallenge,
           R"(0|WWW-Authenticate|Digest|opaque|"5ccc069c403eb1e95"|qop|"auth,auth-int")"
           R"(|algorithm|AKAv1-MD5|nonce|"YOALVVfRfaxv8FRc9+m36McAsaebairakrlSEIbWIPY=")"
           R"(|realm|"ims.example.test"|)");
  addMessage();
  addOperations();
}

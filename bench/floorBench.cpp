// floorBench.cpp - the floor: what the least work costs for inputs that the library is timed on.
#include <cstdlib>

#include "floor.h"
#include "harness.h"
#include "inputs.h"

namespace {

using Read = bool (*)(FloorPieces&, const char*, std::size_t);

template <typename Sink>
void touchPieces(Sink& sink, const FloorPieces& pieces) {
  for (std::size_t i = 0; i < pieces.count; ++i) {
    sink.text(pieces.pieces[i].text, pieces.pieces[i].length);
  }
}

void addParse(const char* input, std::string_view text, Read read, const std::string& wanted) {
  addCase(std::string("BM_Floor_Parse/") + input, text.size(), wanted,
          [text = std::string(text), read](auto& sink) {
            FloorPieces pieces;
            if (read(pieces, text.data(), text.size())) {
              touchPieces(sink, pieces);
            }
            floorFree(pieces);
          });
}

// Also adds one parameter and writes the result.
void addEdit(const char* input, std::string_view text, Read read, FloorPart part,
             const std::string& wanted) {
  addCase(std::string("BM_Floor_Edit/") + input, text.size(), wanted,
          [text = std::string(text), read, part](auto& sink) {
            FloorPieces pieces;
            if (read(pieces, text.data(), text.size()) && floorSetParam(pieces, part, "ob=1", 4)) {
              touchPieces(sink, pieces);
              std::size_t length = 0;
              char* const written = floorWrite(pieces, length);
              sink.text(written, length);
              std::free(written);
            }
            floorFree(pieces);
          });
}

}  // namespace

void addFloorCases() {
  using namespace inputs;
  const std::string nameAddr = R"("Alice Example"|sip|alice|example.test|5060|transport=tcp|lr|)";
  const std::string contact =
      R"("Bob"|sip|bob|host.test|transport=tcp|expires=60|q=0.7)"
      R"(|+sip.instance="<urn:gsma:imei:12345678-901234-5>"|+g.3gpp.smsip|)";
  addParse("nameAddr", kNameAddr, floorReadAddress, nameAddr);
  addParse("addrSpec", kAddrSpec, floorReadAddress, "sip|alice|example.test|transport=udp|");
  addParse("imsNameAddr", kImsNameAddr, floorReadAddress,
           R"("Bob"|sip|+15551234567;phone-context=ims.example.test)"
           "|ims.mnc001.mcc001.3gppnetwork.test|5060|user=phone|comp=sigcomp|");
  addParse("contact", kContact, floorReadContact, contact);
  addEdit("nameAddr", kNameAddr, floorReadAddress, FloorPart::kUriParam,
          nameAddr + "ob=1|" + std::string(kNameAddr.substr(0, kNameAddr.size() - 1)) + ";ob=1>|");
  addEdit("contact", kContact, floorReadContact, FloorPart::kParam,
          contact + "ob=1|" + std::string(kContact) + ";ob=1|");
  std::string pieces;
  for (int hop = 10; hop < 30; ++hop) {
    pieces += "sip|orig|scscf" + std::to_string(hop) + ".ims.mnc001.mcc001.op.test|5060|lr|";
  }
  addParse("routeOf20", routeOf20(), floorReadRoute, pieces);
}

// floorBench.cpp - the floor of each row: what every other case is a multiple of.
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

void addParse(Cases& cases, const char* row, std::string_view text, Read read, long allocations,
              const std::string& wanted) {
  const std::string name = std::string("BM_Floor_Parse/") + row;
  cases.add(
      name, text.size(), wanted,
      [text = std::string(text), read](auto& sink) {
        FloorPieces pieces;
        if (read(pieces, text.data(), text.size())) {
          touchPieces(sink, pieces);
        }
        floorFree(pieces);
      },
      name, allocations);
}

// Besides, one parameter is added and the whole written.
void addEdit(Cases& cases, const char* row, std::string_view text, Read read, FloorPart part,
             long allocations, const std::string& wanted) {
  const std::string name = std::string("BM_Floor_Edit/") + row;
  cases.add(
      name, text.size(), wanted,
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
      },
      name, allocations);
}

}  // namespace

void addFloorCases(Cases& cases) {
  using namespace inputs;
  const std::string a = R"("Alice Example"|sip|alice|example.test|5060|transport=tcp|lr|)";
  const std::string d = R"("Bob"|sip|bob|host.test|transport=tcp|expires=60|q=0.7)"
                        R"(|+sip.instance="<urn:gsma:imei:12345678-901234-5>"|+g.3gpp.smsip|)";
  addParse(cases, "a", kA, floorReadAddress, 7, a);
  addParse(cases, "b", kB, floorReadAddress, 4, "sip|alice|example.test|transport=udp|");
  addParse(cases, "c", kC, floorReadAddress, 7,
           R"("Bob"|sip|+15551234567;phone-context=ims.example.test)"
           "|ims.mnc001.mcc001.3gppnetwork.test|5060|user=phone|comp=sigcomp|");
  addParse(cases, "d", kD, floorReadContact, 9, d);
  addEdit(cases, "ga", kA, floorReadAddress, FloorPart::kUriParam, 9,
          a + "ob=1|" + std::string(kA.substr(0, kA.size() - 1)) + ";ob=1>|");
  addEdit(cases, "gd", kD, floorReadContact, FloorPart::kParam, 11,
          d + "ob=1|" + std::string(kD) + ";ob=1|");
  const std::string text = route();
  std::string pieces;
  for (int hop = 10; hop < 30; ++hop) {
    pieces += "sip|orig|scscf" + std::to_string(hop) + ".ims.mnc001.mcc001.op.test|5060|lr|";
  }
  addParse(cases, "h", text, floorReadRoute, 100, pieces);
}

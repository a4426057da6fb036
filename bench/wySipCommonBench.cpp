// wySipCommonBench.cpp - rewriting of plain text.
#include "wySipCommon.h"

#include "harness.h"
#include "imsdpl.h"

namespace {

char* charsOf(const std::string& text) { return const_cast<char*>(text.c_str()); }

using Rewrite = int (*)(char* text, char** out);

void addRewrite(const char* name, const std::string& text, const std::string& wanted,
                Rewrite rewrite) {
  addCase(name, text.size(), wanted + '|', [text, rewrite](auto& sink) {
    char* out = nullptr;
    rewrite(charsOf(text), &out);
    touch(sink, std::string_view(out));
    __free(out);
  });
}

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) {
    all += (i == 0 ? "" : ",") + text;
  }
  return all;
}

}  // namespace

void addCommonCases() {
  addRewrite("BM_Common_wyQuoteUserInfo/one", "<sip:alice:secret@example.test:5060;lr>",
             "<sip:alice%3Asecret@example.test:5060;lr>", wyQuoteUserInfo);
  addRewrite("BM_Common_wyQuoteUserInfoInSipUri/20", repeated("<sip:a:b@example.test>", 20),
             repeated("<sip:a%3Ab@example.test>", 20), wyQuoteUserInfoInSipUri);
  addRewrite("BM_Common_wyQuoteFeatureTagValue/icsi",
             "*;+g.3gpp.icsi-ref=\"urn:urn-7:3gpp-service.ims.icsi.mmtel\";require",
             "*;+g.3gpp.icsi-ref=\"urn%3Aurn-7%3A3gpp-service.ims.icsi.mmtel\";require",
             [](char* text, char** out) {
               return wyQuoteFeatureTagValue(text, const_cast<char*>("icsi-ref"), out);
             });
  std::string list;
  for (int i = 0; i < 64; ++i) {
    list += (i == 0 ? "" : ";") + std::to_string(100 + i * 37 % 64);
  }
  addCase("BM_Common_wySortCommaSepStrings/64", list.size(), "#1 255 0", [list](auto& sink) {
    std::string text = list;
    char* start = text.data();
    wySortCommaSepStrings(&start);
    touch(sink, text);
  });
  addCase("BM_Common_SipFormatIMEInumber/15", 15, "12345678-901234-5|", [](auto& sink) {
    char* const imei = SipFormatIMEInumber(const_cast<char*>("123456789012345"));
    touch(sink, std::string_view(imei));
    __free(imei);
  });
  const std::string hex = "0123456789abcdef0123456789ABCDEF";
  addCase("BM_Common_strToH8/32", hex.size(), "16|#|", [hex](auto& sink) {
    unsigned short count = 0;
    unsigned char* const bytes = strToH8(charsOf(hex), &count);
    sink.number(count);
    sink.text(reinterpret_cast<char*>(bytes) + 1, 1);
    __free(bytes);
  });
}

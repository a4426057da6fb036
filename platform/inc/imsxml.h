// imsxml.h - the handset's XML library, as far as the SIP text library needs it.
//
// The contract that lib-imsxml fulfils. Every function may be called on any thread.
#ifndef IMSXML_H
#define IMSXML_H

// Text helpers of the XML library.
class XmlCommon {
 public:
  // Strips one pair of double quotes that encloses a zero-terminated text, in place; a quote at
  // one end only stays. Returns text; null for null.
  static char* RemoveQuotes(char* text);
};

#endif  // IMSXML_H

// imsxml.h - the part of the handset's XML library that the SIP text library needs.
//
// This is the contract of lib-imsxml. Every function may be called on any thread.
#ifndef IMSXML_H
#define IMSXML_H

// Text helpers of the XML library.
class XmlCommon {
 public:
  // Removes one pair of double quotes around a zero-terminated text, in place. A quote at one end
  // only stays. Returns text; null for null.
  static char* RemoveQuotes(char* text);
};

#endif  // IMSXML_H

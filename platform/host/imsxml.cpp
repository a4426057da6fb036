// imsxml.cpp - the XML library for desktop hosts.
#include "imsxml.h"

#include <cstring>

char* XmlCommon::RemoveQuotes(char* text) {
  if (text == nullptr) {
    return nullptr;
  }
  const std::size_t length = std::strlen(text);
  if (length >= 2 && text[0] == '"' && text[length - 1] == '"') {
    text[length - 1] = '\0';
    std::memmove(text, text + 1, length - 1);
  }
  return text;
}

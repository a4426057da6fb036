// imsxml.cpp - a minimal XML library.
#include "imsxml.h"

#include <cstring>

char* XmlCommon::RemoveQuotes(char* text) {
  const size_t length = text == nullptr ? 0 : std::strlen(text);
  if (length >= 2 && text[0] == '"' && text[length - 1] == '"') {
    std::memmove(text, text + 1, length - 2);
    text[length - 2] = '\0';
  }
  return text;
}

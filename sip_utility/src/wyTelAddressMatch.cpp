// wyTelAddressMatch.cpp - grammar matchers and predicates of tel URIs.
#include "wyTelAddressMatch.h"

#include "internal/charClass.h"

int WyTelIsVisualSeparator(int c) { return isIn(kVisualSeparator, c) ? 1 : 0; }

bool TelAddressMatchPhoneDigit::matchChar(char byte) { return isIn(kPhoneDigit, byte); }

bool TelAddressMatchPhoneDigitHex::matchChar(char byte) { return isIn(kPhoneDigitHex, byte); }

bool TelAddressMatchParamName::matchChar(char byte) { return isIn(kLabel, byte); }

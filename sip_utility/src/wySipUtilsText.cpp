// wySipUtilsText.cpp - q-values, and small helpers for plain text.
#include "wySipUtils.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "base/charClass.h"
#include "base/checkedMath.h"
#include "base/equality.h"
#include "base/log.h"
#include "base/platformBlock.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipUtils";

constexpr unsigned char kNoIndex = 255;
constexpr std::size_t kDecimals = 3;
constexpr unsigned int kHeaderValuesLimit = 20;

// Returns whether integer and fraction make a q-value; logs the fault if not.
bool isQValue(std::string_view integer, std::string_view fraction) {
  const char* fault = nullptr;
  if (integer.empty()) {
    fault = "SipUtils:ValidateAndGetMaxQValue | NO Integer part in q value";
  } else if (integer.size() > 1) {
    fault =
        "SipUtils:ValidateAndGetMaxQValue | ILLEGAL! Integer part in q value MUST be a single "
        "digit";
  } else if (integer != "0" && integer != "1") {
    fault = "SipUtils:ValidateAndGetMaxQValue | ILLEGAL! Integer part in q value MUST be 0/1";
  } else if (fraction.size() > kDecimals) {
    fault =
        "SipUtils:ValidateAndGetMaxQValue | ILLEGAL! Decimal part in q value MUST have atmost 3 "
        "digits";
  } else if (integer == "1" && fraction.find_first_not_of('0') != std::string_view::npos) {
    fault =
        "SipUtils:ValidateAndGetMaxQValue | ILLEGAL! Decimal part in q value MUST have only 0's "
        "when integer part is 1";
  }
  if (fault != nullptr) {
    logFailure(kSourceFile, fault);
  }
  return fault == nullptr;
}

// Reads a q-value as thousandths. Returns whether it is one; logs the fault if not.
bool readQValue(const char* qvalue, unsigned short& thousandths) {
  if (std::strpbrk(qvalue, "-+") != nullptr) {
    logFailure(kSourceFile, "SipUtils:ValidateAndGetMaxQValue | Sign present in q value");
    return false;
  }
  const PlatformText copy(__strdup(qvalue));
  if (copy == nullptr) {
    logSevere(kSourceFile, "SipUtils:ValidateAndGetMaxQValue | Failure in Strdup");
    return false;
  }
  std::string_view fraction;
  char* rest = nullptr;
  if (NSIP_strtok(copy.get(), ".", &rest) != nullptr) {
    fraction = rest;
  } else {
    logTrace(kSourceFile, "SipUtils:ValidateAndGetMaxQValue | NO Fractional part in q value");
  }
  if (!isQValue(copy.get(), fraction)) {
    return false;
  }
  char digits[] = "0000";
  digits[0] = copy[0];
  fraction.copy(digits + 1, kDecimals);
  thousandths = static_cast<unsigned short>(__atoi(digits));
  return true;
}

// Returns whether two of the values are equal. Sorts them.
bool hasEqual(unsigned short* values, std::size_t count) {
  std::sort(values, values + count);
  return std::adjacent_find(values, values + count) != values + count;
}

// Reads the entries into values. Returns whether all are q-values. Sets the index of the highest
// one, the last of equal ones.
bool readQValues(char** qvalues, unsigned char count, unsigned short* values,
                 unsigned char& highest) {
  unsigned short best = 0;
  for (unsigned char i = 0; i < count && qvalues[i] != nullptr; ++i) {
    if (!readQValue(qvalues[i], values[i])) {
      return false;
    }
    if (values[i] >= best) {
      best = values[i];
      highest = i;
    }
  }
  return true;
}

bool isSameValue(std::string_view a, std::string_view b, bool ignoreCase) {
  return ignoreCase ? equalIgnoringCase(a, b) : a == b;
}

}  // namespace

char* NSIP_strtok(char* text, const char* delimiter, char** rest) {
  if (text == nullptr || delimiter == nullptr || rest == nullptr) {
    logFailure(kSourceFile, "NSIP_strtok | One or more NULL input parameters");
    return nullptr;
  }
  char* const found = std::strstr(text, delimiter);
  if (found == nullptr) {
    return nullptr;
  }
  *rest = found + std::strlen(delimiter);
  *found = '\0';
  return text;
}

char* RemoveSpaces(char* text) {
  if (text == nullptr) {
    return nullptr;
  }
  while (*text == ' ') {
    ++text;
  }
  for (std::size_t length = std::strlen(text); length != 0 && text[length - 1] == ' '; --length) {
    text[length - 1] = '\0';
  }
  return text;
}

unsigned char ValidateAndGetMaxQValue(char** qvalues, unsigned char count) {
  if (qvalues == nullptr || count == 0) {
    logFailure(kSourceFile,
               "SipUtils:ValidateAndGetMaxQValue | Input paramter NULL or Arr Count is 0");
    return kNoIndex;
  }
  const PlatformBlock<unsigned short> values = newZeroed<unsigned short>(count + 1U);
  if (values == nullptr) {
    logSevere(kSourceFile, "SipUtils:ValidateAndGetMaxQValue | Failure in Malloc");
    return kNoIndex;
  }
  unsigned char highest = kNoIndex;
  if (qvalues[0] == nullptr || !readQValues(qvalues, count, values.get(), highest)) {
    return kNoIndex;
  }
  if (hasEqual(values.get(), count)) {
    logFailure(kSourceFile,
               "SipUtils:ValidateAndGetMaxQValue | ILLEGAL! Two or more q values are same");
    highest = kNoIndex;
  }
  // As a signed byte, so that 255 is shown as -1.
  logTrace(kSourceFile, "SipUtils:ValidateAndGetMaxQValue | Return MaxValue Index is %d",
           static_cast<uintptr_t>(static_cast<signed char>(highest)));
  return highest;
}

int wySipCheckIfHeaderValuePresent(char** values, char* value, int ignoreCase) {
  if (value == nullptr) {
    logFailure(kSourceFile, "SipUtils::wySipCheckIfHeaderValuePresent| Invalid Input");
    return 0;
  }
  for (unsigned int i = 0; values != nullptr && i < kHeaderValuesLimit; ++i) {
    if (values[i] == nullptr) {
      return 0;
    }
    if (isSameValue(values[i], value, ignoreCase != 0)) {
      return 1;
    }
  }
  return 0;
}

unsigned int wyAtoi32(const char* text) {
  if (text == nullptr || *text == '\0') {
    logFailure(kSourceFile, "wyAtoi32 | Input Param NULL");
    return 0;
  }
  const std::string_view digits(text, static_cast<unsigned char>(std::strlen(text)));  // 8 bits
  if (!std::all_of(digits.begin(), digits.end(), [](char c) { return isIn(kDigit, c); })) {
    logFailure(kSourceFile, "wyAtoi32 | Conversion Failed");
    return 0;
  }
  unsigned int value = 0;
  for (const char digit : digits) {
    value = checkedSum(checkedProduct(value, 10), static_cast<unsigned int>(digit - '0'));
  }
  return value;
}

// pieces.h - a plain model of addresses, with which the address targets compare the library.
#ifndef FUZZ_PIECES_H
#define FUZZ_PIECES_H

#include <strings.h>

#include <cctype>

#include "law.h"
#include "wyTelAddress.h"

// The pieces of an address: a fixed number of them, then its parameters, each as written.
using Pieces = std::vector<std::string>;

// Display name, scheme, user, host, port ("0" for none).
constexpr unsigned int kSipParams = 5;

// Display name, number, isub, ext, phone context, "<" for brackets in the text it was read from.
constexpr unsigned int kTelBracket = 5;
constexpr unsigned int kTelParams = 6;
constexpr const char* kTelNames[kTelBracket] = {"", "", "isub", "ext", "phone-context"};

// The setters of the first pieces, in the order of the pieces.
constexpr VARN_EXCEPTION_CODES (SipAddress::*kSipSetters[])(const SipString&) = {
    &SipAddress::setDisplayName, &SipAddress::setScheme, &SipAddress::setUser,
    &SipAddress::setHost};
constexpr VARN_EXCEPTION_CODES (TelAddress::*kTelSetters[])(const SipString&) = {
    &TelAddress::setDisplayName, &TelAddress::setPhoneNumber, &TelAddress::setISDNSubAddr,
    &TelAddress::setExtension, &TelAddress::setContext};

// The laws of a target: for the texts of an address, and for its changes by two values.
void checkTexts(SipAddress& address);
void checkTexts(TelAddress& tel);
void checkEdits(SipAddress& address, const SipString& value, const SipString& other);
void checkEdits(TelAddress& tel, const SipString& value, const SipString& other);

// Returns a text without the blanks and tabs around it.
inline std::string trimmedBytes(const SipString& text) {
  const std::string bytes = toStdString(text);
  const std::size_t first = std::min(bytes.find_first_not_of(" \t"), bytes.size());
  return bytes.substr(first, bytes.find_last_not_of(" \t") + 1 - first);
}

inline std::string paramText(const std::string& name, const std::string& value) {
  return ";" + name + (value.empty() ? "" : "=" + value);
}

// Returns the pieces and after them the parameters of their address.
template <typename Address>
Pieces withParams(Pieces pieces, const Address& address) {
  for (const SipParam& param : siputility::paramsOf(address)) {
    pieces.push_back(paramText(toStdString(param.getName()), toStdString(param.getValue())));
  }
  return pieces;
}

inline Pieces piecesOf(const SipAddress& sip) {
  return withParams(
      {toStdString(sip.getDisplayName()), toStdString(sip.getScheme()), toStdString(sip.getUser()),
       toStdString(sip.getHost()), std::to_string(sip.getStoredPort())},
      sip);
}

inline Pieces piecesOf(const TelAddress& tel) {
  return withParams({toStdString(tel.getDisplayName()), toStdString(tel.getPhoneNumber()),
                     toStdString(tel.getISDNSubAddr()), toStdString(tel.getExtension()),
                     toStdString(tel.getContext()), tel.isBracketed() ? "<" : ""},
                    tel);
}

// Returns the pieces from the first on, one after the other.
inline std::string joined(const Pieces& pieces, std::ptrdiff_t first) {
  std::string text;
  std::for_each(pieces.begin() + first, pieces.end(), [&text](auto& piece) { text += piece; });
  return text;
}

// Returns a URI, if wanted with a display name and in brackets.
inline std::string nameAddr(const std::string& displayName, const std::string& uri,
                            bool bracketed) {
  const std::string text = bracketed || !displayName.empty() ? "<" + uri + ">" : uri;
  return displayName.empty() ? text : displayName + " " + text;
}

// Returns the name of a parameter as it is written.
inline std::string nameOf(const std::string& param) { return param.substr(1, param.find('=') - 1); }

inline bool isLessByName(const std::string& param, const std::string& other) {
  return strcasecmp(nameOf(param).c_str(), nameOf(other).c_str()) < 0;
}

// Removes the parameter of this name, letter case ignored.
inline void eraseParam(Pieces& pieces, std::ptrdiff_t first, const std::string& name) {
  const auto isIt = [&name](auto& param) {
    return strcasecmp(nameOf(param).c_str(), name.c_str()) == 0;
  };
  pieces.erase(std::remove_if(pieces.begin() + first, pieces.end(), isIt), pieces.end());
}

// Returns whether the parameters of a SIP address can be read again. A setter has one rule for all
// values; a parse accepts no value for "tag" and "branch".
inline bool areReadable(const Pieces& pieces, std::ptrdiff_t first) {
  return std::none_of(pieces.begin() + first, pieces.end(), [](auto& param) {
    return param.compare(0, 5, ";tag=") == 0 || param.compare(0, 8, ";branch=") == 0;
  });
}

// Returns whether the parameters of a tel address can be read again. The name of a dedicated
// parameter may get into the list: with white space around it, which the list drops.
inline bool areTelReadable(const Pieces& pieces) {
  return areReadable(pieces, kTelParams) &&
         std::none_of(pieces.begin() + kTelParams, pieces.end(), [](auto& param) {
           return std::find(kTelNames + 2, std::end(kTelNames), nameOf(param)) !=
                  std::end(kTelNames);
         });
}

// Returns the index of the piece that has a parameter of this name; kTelParams for one of the list.
inline unsigned int telPieceOf(const SipString& name) {
  unsigned int piece = 2;
  while (piece < kTelBracket && strcasecmp(kTelNames[piece], name.c_str()) != 0) {
    ++piece;
  }
  return piece == kTelBracket ? kTelParams : piece;
}

// Removes or sets what a tel address calls its parameter of this name. A setter drops the white
// space around it.
inline void eraseTelParam(Pieces& pieces, const SipString& name) {
  if (telPieceOf(name) == kTelParams) {
    eraseParam(pieces, kTelParams, toStdString(name));
  } else {
    pieces[telPieceOf(name)].clear();
  }
}
inline void setTelParam(Pieces& pieces, const SipString& name, const SipString& value) {
  if (telPieceOf(name) != kTelParams) {
    pieces[telPieceOf(name)] = trimmedBytes(value);
    return;
  }
  eraseParam(pieces, kTelParams, trimmedBytes(name));
  const std::string param = paramText(trimmedBytes(name), trimmedBytes(value));
  pieces.insert(std::upper_bound(pieces.begin() + kTelParams, pieces.end(), param, isLessByName),
                param);
}

// Returns a text with its escapes decoded, the other letters in lower case if wanted.
inline std::string unescaped(std::string text, bool folded) {
  const auto isHex = [](char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; };
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%' && i + 2 < text.size() && isHex(text[i + 1]) && isHex(text[i + 2])) {
      text.replace(i, 3, 1, static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16)));
    } else if (folded && 'A' <= text[i] && text[i] <= 'Z') {
      text[i] = static_cast<char>(text[i] | 0x20);
    }
  }
  return text;
}

// Returns how many names of parameters an address returns.
template <typename Address>
std::size_t countNames(Address& address) {
  const SipString** const names = address.getParameterNames();
  std::size_t count = 0;
  while (names != nullptr && names[count] != nullptr) {
    require(names[count]->length() != 0, "a parameter has a name", "", "");
    ++count;
  }
  return count;
}

inline const auto& settersOf(const SipAddress& /*sip*/) { return kSipSetters; }
inline const auto& settersOf(const TelAddress& /*tel*/) { return kTelSetters; }

// Sets each piece of an address to its own value.
template <typename Address>
void checkOwnPieces(Address& address) {
  const Pieces pieces = piecesOf(address);
  const auto& setters = settersOf(address);
  for (std::size_t i = 0; i < std::size(setters); ++i) {
    const SipString piece(pieces[i].data(), static_cast<unsigned int>(pieces[i].size()));
    const bool taken = pieces[i].empty() || (address.*setters[i])(piece) == VARN_OK;
    require(taken && piecesOf(address) == pieces, "its own piece", joined(pieces, 0), pieces[i]);
  }
}

inline bool isFixed(const SipAddress& address) { return address.isWildcard(); }
inline bool isFixed(const TelAddress& /*tel*/) { return false; }

// Calls change(pieces), which changes the pieces of an address and the address itself, and returns
// the code of the address. A change that fails must leave the address as it was.
template <typename Address, typename Change>
void checkChange(Address& address, Change change) {
  const std::string text = toStdString(address.toString());
  const Pieces before = piecesOf(address);
  Pieces expected = before;
  const VARN_EXCEPTION_CODES code = change(expected);
  require(code == address.GetLastErrorCode(), "the outcome is stored", text, "");
  const bool done = code == VARN_OK && !isFixed(address);
  const Pieces after = piecesOf(address);
  require(after == (done ? expected : before), "a change", text, joined(after, 0));
  if (done) {
    checkTexts(address);
  } else {
    require(toStdString(address.toString()) == text, "no change", text, address.toString().c_str());
  }
}

// Longer sequences of edits find nothing more.
constexpr std::size_t kMaxEdits = 8;

// Reads the first argument as an address and edits it: with its own pieces, then with each further
// argument and the one after that.
template <typename Address>
void editFirst(const std::vector<Text>& arguments) {
  Address address{SipString(arguments[0].get())};
  checkOwnPieces(address);
  for (std::size_t i = 1; i < std::min(arguments.size(), kMaxEdits); ++i) {
    checkEdits(address, arguments[i].get(), arguments[(i + 1) % arguments.size()].get());
  }
}

#endif  // FUZZ_PIECES_H

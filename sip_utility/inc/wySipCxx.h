/// \file
/// Helpers for C++ callers: views, equality, loops over parameters, owners.
///
/// Everything here is inline and uses only public operations of the library; nothing is exported.
#ifndef WY_SIP_CXX_H
#define WY_SIP_CXX_H

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "imsdpl.h"
#include "wySipString.h"

class SipParam;

/// Helpers for C++ callers, and the pieces of messages.
namespace siputility {

/// Returns the content of a string, zero bytes included; of another text, the text. The view lives
/// until the string next changes, so a view of a temporary string must not be kept.
/// @{
inline std::string_view view(const SipString& text) { return {text.c_str(), text.length()}; }
inline std::string_view view(std::string_view text) { return text; }
inline std::string_view view(const char* cstr) { return cstr; }
inline std::string_view view(const std::string& text) { return text; }
/// @}

/// Returns a copy of the content of a string, zero bytes included.
inline std::string toStdString(const SipString& text) { return std::string(view(text)); }

/// Returns a string with a copy of the bytes; empty if there is no memory for it.
///
/// Requires: at most 2^32 - 2 bytes.
inline SipString toSipString(std::string_view bytes) {
  return {bytes.data(), static_cast<unsigned int>(bytes.size())};
}

/// Returns whether two texts have the same bytes. Each is a SipString or what a std::string_view is
/// made from. Unlike SipString::compare(), it never ends the process, so the texts may come from
/// the network.
template <typename A, typename B>
bool equal(const A& a, const B& b) {
  return view(a) == view(b);
}

/// Returns whether two texts have the same bytes, ignoring the case of ASCII letters. The texts are
/// as those of equal(), and it never ends the process.
template <typename A, typename B>
bool equalIgnoringCase(const A& a, const B& b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? c | 0x20 : c; };
  const std::string_view left = view(a);
  const std::string_view right = view(b);
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [lower](char x, char y) { return lower(x) == lower(y); });
}

/// The parameters of a header, an address or a list, in the order in which they are written.
///
/// The range calls firstParam() and nextParam() of the owner. Each step over a tel address looks
/// through all its parameters.
///
/// Requires: the owner lives and does not change while the range is used.
template <typename Owner>
class ParamRange {
 public:
  /// A step of a loop over the parameters.
  class Iterator {
   public:
    Iterator(const Owner& owner, const SipParam* param) : owner_(&owner), param_(param) {}

    const SipParam& operator*() const { return *param_; }
    const SipParam* operator->() const { return param_; }
    Iterator& operator++() {
      param_ = owner_->nextParam(param_);
      return *this;
    }
    bool operator!=(const Iterator& other) const { return param_ != other.param_; }

   private:
    const Owner* owner_;
    const SipParam* param_;
  };

  explicit ParamRange(const Owner& owner) : owner_(owner) {}

  Iterator begin() const { return {owner_, owner_.firstParam()}; }
  Iterator end() const { return {owner_, nullptr}; }

 private:
  const Owner& owner_;
};

/// Returns the range of the parameters of an owner, for a loop.
///
/// Example: `for (const SipParam& param : siputility::paramsOf(header))`
template <typename Owner>
ParamRange<Owner> paramsOf(const Owner& owner) {
  return ParamRange<Owner>(owner);
}

/// The owner of a range must live longer than the range.
template <typename Owner>
void paramsOf(const Owner&& owner) = delete;

/// Frees a block of the platform; see PlatformBlock.
struct PlatformFree {
  void operator()(void* block) const { __free(block); }
};

/// Owns a block of the platform, such as the free functions return, or nothing.
template <typename Element>
using PlatformBlock = std::unique_ptr<Element[], PlatformFree>;

/// Removes an object from the memory log and deletes it; see HandedOut.
struct HandedOutDelete {
  template <typename Object>
  void operator()(Object* object) const {
    constexpr int kMemoryCategory = 2;
    pzmemlog_remove(kMemoryCategory, object);
    delete object;
  }
};

/// Owns an object that a free function such as ParseViaHeaderToAdress() returned, or nothing.
/// Removes the object from the memory log and deletes it.
template <typename Object>
using HandedOut = std::unique_ptr<Object, HandedOutDelete>;

}  // namespace siputility

#endif  // WY_SIP_CXX_H

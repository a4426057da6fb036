/// \file
/// Parameter lists: the `;name=value` runs of SIP headers and URIs.
///
/// A list owns a chain of nodes, newest first. So a parsed list is written in reverse order, and a
/// parameter that was set comes first. The base class reads and writes. A dialect, which is a
/// subclass, only says what a separator, a name, an `=` and a value are. A returned node or name
/// lives until that parameter is removed. A list is used by one thread at a time.
#ifndef WY_SIP_PARAM_H
#define WY_SIP_PARAM_H

#include "wySipExport.h"
#include "wySipString.h"

// Internals of the library, no part of its interface.
namespace siputility {
struct SipParamAccess;
}  // namespace siputility

/// One parameter: a name and a value, which is empty for a parameter without a value.
///
/// A node knows the pointer that points at it, so deleting a node removes it from its chain.
class SIPUTILITY_EXPORT SipParam {
 public:
  /// Makes a node without name and value at the front of the chain with this head; see insert().
  explicit SipParam(SipParam** head);

  SipParam(const SipParam&) = delete;
  SipParam& operator=(const SipParam&) = delete;

  /// Removes the node from its chain; see remove().
  virtual ~SipParam();

  /// Inserts the node at the front of the chain with this head. For null, which is a failed
  /// assertion, nothing happens.
  ///
  /// Requires: the node is on no chain.
  void insert(SipParam** head);

  /// Removes the node from its chain. A node that is on no chain is a failed assertion. It shares
  /// memory with other nodes of the list, so list and node are used by one thread at a time.
  void remove();

  /// Replaces the name.
  ///
  /// Fails: VARN_RESOURCE_FAILURE if the name has no buffer afterwards; also for an empty name in a
  /// node that never had a name.
  VARN_EXCEPTION_CODES setName(const SipString& name);

  /// Reads the next length bytes of the stream, or as many as are left, as the value. A length of 0
  /// empties the value.
  ///
  /// Fails: with the code of SipStrStream::get().
  VARN_EXCEPTION_CODES setValue(unsigned int length, SipStrStream& stream);

  /// Replaces the value.
  ///
  /// Fails: VARN_RESOURCE_FAILURE if the name (not the value) has no buffer.
  VARN_EXCEPTION_CODES setValue(const SipString& value);

  /// Returns the name.
  const SipString& getName() const;

  /// Returns the value; empty for a parameter without a value.
  const SipString& getValue() const;

  /// Returns the next node of the chain; null at the end.
  SipParam* next() const;

  /// Overwrites the pointer to the next node and nothing else; the next node itself does not
  /// change. A list follows these pointers when it removes a node by name.
  ///
  /// Owns: a node that no chain leads to any more belongs to the caller. Its next() must not
  /// change. It must be deleted before the list, and before the node that led to it is removed.
  void setNext(SipParam* next);

 private:
  friend struct siputility::SipParamAccess;

  SipParam* next_;
  SipParam** prevLink_;
  SipString name_;
  SipString value_;
};

/// The parameters of one header or URI; its subclasses are their dialects.
///
/// Log lines are of module 6054. Each match operation of a dialect looks at the stream at the
/// offset from its position and returns how many bytes its element covers there, 0 for no match;
/// the stream does not move. The argument `first` is 1 for the separator before the first parameter
/// of a list, else 0.
class SIPUTILITY_EXPORT SipParamList {
 public:
  SipParamList();
  SipParamList(const SipParamList&) = delete;
  SipParamList& operator=(const SipParamList&) = delete;

  /// Deletes all nodes and the names array.
  virtual ~SipParamList();

  /// Reads parameters until no separator follows. A text without a separator is an empty list. The
  /// rest of the text is left in the stream.
  ///
  /// After a failure the parameters before the failing one stay, and the stream is where the
  /// failing step left it. The time is in proportion to the text. A class of the caller's may
  /// change the list while it matches, so its list looks each name up with find(): its time grows
  /// with the square of the number of parameters.
  ///
  /// Fails: VARN_INVALID_INPUT with "SipParamList::parseParamList - bad parameter name",
  /// "SipParamList::parseParamList - duplicate parameter name" (letter case ignored) or
  /// "SipParamList::parseParamList - bad parameter value" (level 4); VARN_RESOURCE_FAILURE.
  virtual VARN_EXCEPTION_CODES parseParamList(SipStrStream& stream);

  /// Matches a separator.
  virtual unsigned int matchSep(const SipStrStream& stream, unsigned int offset,
                                int first) const = 0;
  /// Matches the value of a parameter.
  virtual unsigned int matchValue(const SipStrStream& stream, unsigned int offset) const = 0;
  /// Matches the value of a parameter whose name is exactly `tag` or `branch`.
  virtual unsigned int matchTagParamValue(const SipStrStream& stream,
                                          unsigned int offset) const = 0;
  /// Matches the `=` between name and value.
  virtual unsigned int matchEqual(const SipStrStream& stream, unsigned int offset) const = 0;
  /// Matches the name of a parameter.
  virtual unsigned int matchName(const SipStrStream& stream, unsigned int offset) const = 0;
  /// Returns the separator to write, zero-terminated.
  virtual const char* getSep(int first) const = 0;
  /// Matches a value that begins with a double quote; called if matchValue() returns 0.
  virtual unsigned int MatchQuotedTagValue(const SipStrStream& stream,
                                           unsigned int offset) const = 0;

  /// Returns the first parameter, or the next one, in the order in which they are written. Returns
  /// null at the end and for a null parameter.
  /// @{
  virtual const SipParam* firstParam() const;
  virtual const SipParam* nextParam(const SipParam* param) const;
  /// @}

  /// Returns the parameter of this name, letter case ignored; null for none and for an empty name.
  SipParam* find(const SipString& name) const;

  /// Returns the value of the parameter of this name; empty if the parameter has no value, null if
  /// there is no such parameter.
  const SipString* getParameter(const SipString& name) const;

  /// Returns the names in chain order, with a null after the last one; null for an empty list.
  /// Stores the code in `*error`. Null for `error` is a failed assertion, and the result is null.
  ///
  /// The array is made once and does not follow later parsing. removeParameter(), setParameter(),
  /// clearParamNames() and the destructor release it; clearParamList() empties it.
  ///
  /// Fails: null and VARN_RESOURCE_FAILURE, with "SipParamList::getParameterNames - new failed".
  ///
  /// Owns: the list owns the array.
  const SipString** getParameterNames(VARN_EXCEPTION_CODES* error);

  /// Deletes the parameter of this name, letter case ignored, and the names array. Always returns
  /// success; if there is no such parameter, nothing changes.
  VARN_EXCEPTION_CODES removeParameter(const SipString& name);

  /// Adds a parameter at the front, or replaces the one of that name, letter case ignored. White
  /// space around name and value is dropped. An empty value makes a parameter without a value. The
  /// value is checked with matchValue() only. After a failure nothing has changed.
  ///
  /// Fails: VARN_INVALID_INPUT with "SipParameterList::setParameter name is empty",
  /// "SipParameterList::setParameter invalid name" or
  /// "SipParameterList::setParameter invalid value"; VARN_RESOURCE_FAILURE, with
  /// "SipParameterList::setParameter SipStrStream constructor failed" if there is no memory at all
  /// (level 4).
  VARN_EXCEPTION_CODES setParameter(const SipString& name, const SipString& value);

  /// Deletes all parameters. A names array that was returned stays and is empty.
  void clearParamList();

  /// Releases the names array.
  void clearParamNames();

  /// Returns the number of bytes that appendToString() adds.
  unsigned int getStringLength() const;

  /// Appends the text of the list: a separator before each parameter, values as they are stored.
  ///
  /// Fails: VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES appendToString(SipString& out) const;

 protected:
  /// Returns the first node of the chain; firstParam() may return another one.
  SipParam* chain() const;

  /// Returns the head of the chain, for new nodes.
  SipParam** head();

  /// Moves past a separator.
  ///
  /// Fails: VARN_INVALID_INPUT if there is none.
  VARN_EXCEPTION_CODES parseSep(SipStrStream& stream, int first) const;

  /// Reads `name[=value]` into a node of this list. Null for the node is a failed assertion: the
  /// text is read, and nothing is stored.
  ///
  /// Fails: like parseParamList().
  VARN_EXCEPTION_CODES parseParam(SipParam* param, SipStrStream& stream) const;

 private:
  friend struct siputility::SipParamAccess;

  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES setFrom(const SipString& name, const SipString& value);

  SipParam* head_;
  const SipString** names_;
};

/// The kind of a header, which decides its syntax.
enum WY_SIP_SIPHEADER_TYPE : unsigned int {
  WY_SIP_HEADER_TYPE_NONE = 0,      ///< not set yet
  WY_SIP_HEADER_TYPE_AUTH = 1,      ///< `scheme name=value,name=value`
  WY_SIP_HEADER_TYPE_NON_AUTH = 2,  ///< `value;name=value;name=value`
};

/// The parameters of a header.
///
/// In an ordinary header they are written `;name=value`, with optional white space around `;` and
/// `=`. In an authentication header they are written ` name=value,name=value`: white space before
/// the first one, optional white space around `,` and `=`. A list without a type follows the
/// authentication rules. A name is a token. A value is the longest match of a quoted string, an
/// IPv6 address, a host and a token. Quotes and escapes are kept.
class SIPUTILITY_EXPORT SipHdrParamList : public SipParamList {
 public:
  SipHdrParamList();

  /// Chooses the dialect for reading and writing; existing parameters stay.
  void setHeaderType(WY_SIP_SIPHEADER_TYPE headerType);

  /// Returns the kind of header that was chosen.
  WY_SIP_SIPHEADER_TYPE getHeaderType() const;

  unsigned int matchSep(const SipStrStream& stream, unsigned int offset, int first) const override;
  unsigned int matchValue(const SipStrStream& stream, unsigned int offset) const override;
  unsigned int matchTagParamValue(const SipStrStream& stream, unsigned int offset) const override;
  unsigned int matchEqual(const SipStrStream& stream, unsigned int offset) const override;
  unsigned int matchName(const SipStrStream& stream, unsigned int offset) const override;
  const char* getSep(int first) const override;
  unsigned int MatchQuotedTagValue(const SipStrStream& stream, unsigned int offset) const override;

 private:
  WY_SIP_SIPHEADER_TYPE headerType_;
};

/// The parameters of a URI: `;name=value` without white space.
///
/// Names and values are of paramchar. A value may also be a quoted string, as in feature tags.
/// `tag` and `branch` take no value.
class SIPUTILITY_EXPORT SipAddrParamList : public SipParamList {
 public:
  unsigned int matchSep(const SipStrStream& stream, unsigned int offset, int first) const override;
  unsigned int matchValue(const SipStrStream& stream, unsigned int offset) const override;
  unsigned int matchTagParamValue(const SipStrStream& stream, unsigned int offset) const override;
  unsigned int matchEqual(const SipStrStream& stream, unsigned int offset) const override;
  unsigned int matchName(const SipStrStream& stream, unsigned int offset) const override;
  const char* getSep(int first) const override;
  unsigned int MatchQuotedTagValue(const SipStrStream& stream, unsigned int offset) const override;
};

/// The parameters of a tel URI except isub, ext and phone-context.
///
/// They are URI parameters with names of letters, digits and `-`. They are walked and written in
/// ascending order of their names, ignoring the case of ASCII letters. Of several parameters with
/// the same name, only the newest is visited.
class SIPUTILITY_EXPORT TelAddrParamList : public SipAddrParamList {
 public:
  TelAddrParamList();
  ~TelAddrParamList() override;

  /// Reads parameters as SipParamList::parseParamList() does. It also refuses `isub`, `ext` and
  /// `phone-context`, which come before the list, for example with
  /// "SipParamList::parseParamList - duplicate param isub".
  VARN_EXCEPTION_CODES parseParamList(SipStrStream& stream) override;

  unsigned int matchName(const SipStrStream& stream, unsigned int offset) const override;

  /// Returns the parameter with the least name, or with the next greater one; null at the end.
  /// firstParam() is nextParam(nullptr). nextParam() also accepts a parameter of another list.
  ///
  /// Each step looks through the complete list, so its time is in proportion to the number of
  /// parameters. appendToString() sorts them once instead.
  /// @{
  const SipParam* firstParam() const override;
  const SipParam* nextParam(const SipParam* param) const override;
  /// @}
};

#endif  // WY_SIP_PARAM_H

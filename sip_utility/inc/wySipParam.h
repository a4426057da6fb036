// wySipParam.h - parameter lists: the `;name=value` runs of SIP headers and URIs.
//
// A list is a chain of nodes that it owns, newest first: text written from a parsed list has its
// parameters in reverse order, and a parameter that was set comes first. The steps of reading
// and writing are the base's; a dialect answers what a separator, a name, an "=" and a value are
// and takes no step of its own. One thread at a time for each list. A node or name handed out
// lives until that parameter is removed.
#ifndef WY_SIP_PARAM_H
#define WY_SIP_PARAM_H

#include "wySipExport.h"
#include "wySipString.h"

// Internals of the library, no part of its interface.
namespace siputility {
struct SipParamAccess;
}  // namespace siputility

// One parameter: a name and a value, empty for a parameter without one. A node knows the pointer
// that points at it, so that deleting it takes it off its chain.
class SIPUTILITY_EXPORT SipParam {
 public:
  // Makes a node without name and value at the front of the chain with this head; see insert().
  explicit SipParam(SipParam** head);

  SipParam(const SipParam&) = delete;
  SipParam& operator=(const SipParam&) = delete;

  // Takes the node off its chain; see remove().
  virtual ~SipParam();

  // Links the node in at the front of the chain with this head. Null is a failed assertion, the
  // node stays off.
  // Requires: the node is on no chain.
  void insert(SipParam** head);

  // Takes the node off its chain; being on none is a failed assertion.
  void remove();

  // Replaces the name.
  // Fails: VARN_RESOURCE_FAILURE when the name has no buffer afterwards; also for an empty name
  // in a node that never had one.
  VARN_EXCEPTION_CODES setName(const SipString& name);

  // Takes the next length bytes of the stream, or what is left of them, as value; 0 bytes empty
  // the value.
  // Fails: with the code of SipStrStream::get.
  VARN_EXCEPTION_CODES setValue(unsigned int length, SipStrStream& stream);

  // Replaces the value.
  // Fails: VARN_RESOURCE_FAILURE when the name, not the value, has no buffer.
  VARN_EXCEPTION_CODES setValue(const SipString& value);

  const SipString& getName() const;
  const SipString& getValue() const;

  // Returns the node behind this one; null at the end.
  SipParam* next() const;

  // Overwrites the pointer to the next node and nothing else: that node does not learn of it. A
  // list removes its nodes by name in whatever order this makes. A node that no chain leads to any
  // more belongs to the caller. Its next() must not change, and it must be deleted before the list.
  void setNext(SipParam* next);

 private:
  friend struct siputility::SipParamAccess;

  SipParam* next_;
  SipParam** prevLink_;
  SipString name_;
  SipString value_;
};

// The parameters of one header or URI. Codes and log lines are those of module 6054.
//
// Each match operation of a dialect looks at the stream at the offset from its position and
// returns the bytes its element covers there, 0 for no match; the stream does not move. The
// number first is 1 for the separator in front of the first parameter of a list, else 0.
class SIPUTILITY_EXPORT SipParamList {
 public:
  SipParamList();
  SipParamList(const SipParamList&) = delete;
  SipParamList& operator=(const SipParamList&) = delete;

  // Deletes all nodes and the names array.
  virtual ~SipParamList();

  // Reads parameters until no separator follows; no separator at all is an empty list. What
  // follows is left in the stream.
  //
  // After a failure the parameters read before it stay and the stream stands where the failing
  // step left it.
  // Fails: VARN_INVALID_INPUT with "SipParamList::parseParamList - bad parameter name", "...
  // duplicate parameter name" (letter case ignored) or "... bad parameter value" (level 4);
  // VARN_RESOURCE_FAILURE.
  virtual VARN_EXCEPTION_CODES parseParamList(SipStrStream& stream);

  virtual unsigned int matchSep(const SipStrStream& stream, unsigned int offset,
                                int first) const = 0;
  virtual unsigned int matchValue(const SipStrStream& stream, unsigned int offset) const = 0;
  // The value of a parameter named exactly "tag" or "branch".
  virtual unsigned int matchTagParamValue(const SipStrStream& stream,
                                          unsigned int offset) const = 0;
  virtual unsigned int matchEqual(const SipStrStream& stream, unsigned int offset) const = 0;
  virtual unsigned int matchName(const SipStrStream& stream, unsigned int offset) const = 0;
  // Returns the separator to write, zero-terminated.
  virtual const char* getSep(int first) const = 0;
  // A value that begins with a double quote where matchValue() gives 0.
  virtual unsigned int MatchQuotedTagValue(const SipStrStream& stream,
                                           unsigned int offset) const = 0;

  // The walk over the list in the order in which it is written; null at the end, and behind null.
  virtual const SipParam* firstParam() const;
  virtual const SipParam* nextParam(const SipParam* param) const;

  // Returns the parameter of this name, letter case ignored; null for none and an empty name.
  SipParam* find(const SipString& name) const;

  // Returns the value of the parameter of this name, empty when it has none; null for no such
  // parameter.
  const SipString* getParameter(const SipString& name) const;

  // Returns the names in chain order, a null behind the last; null for an empty list. The array
  // is made once and stays as it is, whatever is parsed, until removeParameter(), setParameter()
  // or the destructor release it; clearParamList() empties it. Stores the code in *error; null
  // for error is a failed assertion and gives null.
  // Fails: null and VARN_RESOURCE_FAILURE, "SipParamList::getParameterNames - new failed".
  // Owns: the list.
  const SipString** getParameterNames(VARN_EXCEPTION_CODES* error);

  // Deletes the parameter of this name, letter case ignored, and the names array. Returns
  // success, also where there is none: then nothing changes.
  VARN_EXCEPTION_CODES removeParameter(const SipString& name);

  // Adds a parameter in front, or replaces the one of that name, letter case ignored. White
  // space around name and value is dropped; an empty value makes a parameter without one. The
  // value is checked with matchValue() alone. After a failure nothing has changed.
  // Fails: VARN_INVALID_INPUT with "SipParameterList::setParameter name is empty", "... invalid
  // name" or "... invalid value", VARN_RESOURCE_FAILURE, where there is no memory at all with "...
  // SipStrStream constructor failed" (level 4).
  VARN_EXCEPTION_CODES setParameter(const SipString& name, const SipString& value);

  // Deletes all parameters. A names array that was handed out stays and is empty.
  void clearParamList();

  // Releases the names array.
  void clearParamNames();

  // Returns the number of bytes that appendToString() adds.
  unsigned int getStringLength() const;

  // Appends the list's text: in front of each parameter its separator, values as they are stored.
  // Fails: VARN_RESOURCE_FAILURE.
  VARN_EXCEPTION_CODES appendToString(SipString& out) const;

 protected:
  // Returns the first node of the chain, whatever order firstParam() gives, and the pointer to
  // it, for new nodes.
  SipParam* chain() const;
  SipParam** head();

  // Moves behind a separator.
  // Fails: VARN_INVALID_INPUT for none.
  VARN_EXCEPTION_CODES parseSep(SipStrStream& stream, int first) const;

  // Reads `name[=value]` into a node of this list. Null for the node is a failed assertion: the
  // text is read, nothing is stored.
  // Fails: as parseParamList().
  VARN_EXCEPTION_CODES parseParam(SipParam* param, SipStrStream& stream) const;

 private:
  SIPUTILITY_HIDDEN VARN_EXCEPTION_CODES setFrom(const SipString& name, const SipString& value);

  SipParam* head_;
  const SipString** names_;
};

// The kind of a header, as far as its syntax goes.
enum WY_SIP_SIPHEADER_TYPE : unsigned int {
  WY_SIP_HEADER_TYPE_NONE = 0,      // not set yet
  WY_SIP_HEADER_TYPE_AUTH = 1,      // `scheme name=value,name=value`
  WY_SIP_HEADER_TYPE_NON_AUTH = 2,  // `value;name=value;name=value`
};

// Header parameters. An ordinary header has them as `;name=value` with white space allowed
// around ";" and "="; an authentication header as ` name=value,name=value`, white space in front
// of the first, around "," and around "=". A list without a type keeps the authentication rules.
// Names are tokens; a value is the longest of a quoted string, an IPv6 address, a host and a
// token, quotes and escapes kept.
class SIPUTILITY_EXPORT SipHdrParamList : public SipParamList {
 public:
  SipHdrParamList();

  // Chooses the dialect for reading and writing; parameters that are there stay.
  void setHeaderType(WY_SIP_SIPHEADER_TYPE headerType);

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

// URI parameters: `;name=value` without white space, names and values of paramchar. A value may
// also be a quoted string, as feature tags have it; "tag" and "branch" take no value.
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

// The parameters of a tel URI except isub, ext and phone-context: as URI parameters, with names of
// letters, digits and "-". They are walked, and so written, in ascending order of their names,
// without regard to the case of ASCII letters. Of several parameters with one name only the newest
// is met.
class SIPUTILITY_EXPORT TelAddrParamList : public SipAddrParamList {
 public:
  TelAddrParamList();
  ~TelAddrParamList() override;

  // As SipParamList::parseParamList(). It also refuses "isub", "ext" and "phone-context", with
  // "SipParamList::parseParamList - duplicate param isub" and the like: they come before the list.
  VARN_EXCEPTION_CODES parseParamList(SipStrStream& stream) override;

  unsigned int matchName(const SipStrStream& stream, unsigned int offset) const override;

  // The walk in order of names. firstParam() is nextParam(nullptr); a parameter of the list or of
  // another one gives the next greater name. Each step looks through the complete list: its time
  // is in proportion to the number of parameters. appendToString() sorts them once instead.
  const SipParam* firstParam() const override;
  const SipParam* nextParam(const SipParam* param) const override;
};

#endif  // WY_SIP_PARAM_H

// paramReader.h - reads parameters.
//
// Lists of the library's own classes are read by the rules of paramSyntax.h: a scan finds the texts
// of each parameter, then nodes are made of several parameters at once. A list of a caller's class
// is read by its virtual operations, which may change the list meanwhile: one node at a time, and
// each name is looked up with find().
#ifndef SIPUTILITY_PARAMS_PARAM_READER_H
#define SIPUTILITY_PARAMS_PARAM_READER_H

#include <string_view>

#include "grammar/grammar.h"
#include "wySipParam.h"

// Each reads parameters until no separator follows, to the front of the chain with the list's head.
// readByOperations() records its nodes under the source file. It logs the text that refusal()
// returns for the name of a parameter, null for none, and then fails.
// Fails: as SipParamList::parseParamList().
template <typename Syntax>
VARN_EXCEPTION_CODES readBySyntax(const Syntax& syntax, const SipParamList& list, SipParam** head,
                                  SipStrStream& stream);
VARN_EXCEPTION_CODES readByOperations(const SipParamList& list, SipParam** head,
                                      SipStrStream& stream, const char* sourceFile,
                                      const char* (*refusal)(std::string_view name));

// Skips the parameters that an empty SipAddrParamList would read.
// Fails: as SipParamList::parseParamList().
VARN_EXCEPTION_CODES passUriParams(Unread& text);

// The steps of readByOperations(). passSeparator() skips one separator. readParam() reads
// `name[=value]` into a node of the list; null only checks the text.
// Fails: VARN_INVALID_INPUT for no separator; as SipParamList::parseParamList().
VARN_EXCEPTION_CODES passSeparator(const SipParamList& list, SipStrStream& stream, int first);
VARN_EXCEPTION_CODES readParam(const SipParamList& list, SipParam* param, SipStrStream& stream);

#endif  // SIPUTILITY_PARAMS_PARAM_READER_H

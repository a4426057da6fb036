// paramReader.h - reads parameters.
//
// Lists of the library's own classes are read by the rules of paramSyntax.h: a scan finds the texts
// of each parameter, then nodes are made of several parameters at once. A list of a caller's class
// is read by its virtual operations, which may change the list meanwhile: one node at a time, and
// each name is looked up with find().
#ifndef SIPUTILITY_PARAMS_PARAM_READER_H
#define SIPUTILITY_PARAMS_PARAM_READER_H

#include <string_view>

#include "base/storeTexts.h"
#include "grammar/grammar.h"
#include "wySipParam.h"

// Returns whether the list is exactly of a class of the library. The rules of a caller's class may
// change the list while they are asked.
bool hasLibraryRules(const SipParamList& list);

// Stores texts and lets the list read its parameters from the stream. A list of the library's gets
// its first parameters with the same allocation as the texts.
// Fails: as SipParamList::parseParamList(). Out of memory for the texts no string has changed, and
// nothing is logged.
VARN_EXCEPTION_CODES storeAndRead(TextsToStore texts, SipParamList& list, SipStrStream& stream);

// Reads parameters by the operations of the list until no separator follows. The nodes are recorded
// under the source file. refusal() returns the log text for the name of a parameter that the list
// refuses, null for none; a list that refuses no name passes null for it.
// Fails: as SipParamList::parseParamList().
VARN_EXCEPTION_CODES readByOperations(SipParamList& list, SipStrStream& stream,
                                      const char* sourceFile,
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

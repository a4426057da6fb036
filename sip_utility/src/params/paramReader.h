// paramReader.h - reads parameters by the rules of a list.
//
// The rules are the list's virtual operations. Those of a caller's class may change the list during
// the parse, so an index of its names could be wrong. Such a list is parsed without an index, and
// each name is looked up with find().
#ifndef SIPUTILITY_PARAMS_PARAM_READER_H
#define SIPUTILITY_PARAMS_PARAM_READER_H

#include "params/paramNameIndex.h"
#include "wySipParam.h"

// Skips one separator.
// Fails: VARN_INVALID_INPUT for none.
VARN_EXCEPTION_CODES passSeparator(const SipParamList& list, SipStrStream& stream, int first);

// Reads `name[=value]` into a node of the list; null only checks the text. The index, null for
// none, has the names of the list and gets this one.
// Fails: as SipParamList::parseParamList().
VARN_EXCEPTION_CODES readParam(const SipParamList& list, SipParam* param, SipStrStream& stream,
                               ParamNameIndex* names);

// Skips the parameters that an empty SipAddrParamList would read.
// Fails: as SipParamList::parseParamList().
VARN_EXCEPTION_CODES passUriParams(SipStrStream& stream);

#endif  // SIPUTILITY_PARAMS_PARAM_READER_H

// paramReader.h - reads parameters by the rules of a list.
//
// The rules are the list's virtual operations. Those of a caller's class may change the list while
// they are asked, so that no index knows its names; there the list looks each name up with find().
#ifndef SIPUTILITY_PARAMS_PARAM_READER_H
#define SIPUTILITY_PARAMS_PARAM_READER_H

#include "params/paramNameIndex.h"
#include "wySipParam.h"

// Discards one separator.
// Fails: VARN_INVALID_INPUT for none.
VARN_EXCEPTION_CODES passSeparator(const SipParamList& list, SipStrStream& stream, int first);

// Reads `name[=value]` into a node of the list, null for only looking at it. The index, null for
// none, says which names are taken and gets this one.
// Fails: as SipParamList::parseParamList().
VARN_EXCEPTION_CODES readParam(const SipParamList& list, SipParam* param, SipStrStream& stream,
                               ParamNameIndex* names);

// Discards the parameters that an empty SipAddrParamList would take.
// Fails: as SipParamList::parseParamList().
VARN_EXCEPTION_CODES passUriParams(SipStrStream& stream);

#endif  // SIPUTILITY_PARAMS_PARAM_READER_H

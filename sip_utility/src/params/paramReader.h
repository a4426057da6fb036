// paramReader.h - reads parameters by the grammar of a list.
#ifndef SIPUTILITY_PARAMS_PARAM_READER_H
#define SIPUTILITY_PARAMS_PARAM_READER_H

#include "params/paramNameIndex.h"
#include "wySipParam.h"

// Reads `name[=value]` into a node of the list, or without one only looks at it; the index
// answers for the names that are taken and gets this one.
// Fails: as SipParamList::parseParamList().
VARN_EXCEPTION_CODES readParam(const SipParamList& list, SipParam* param, SipStrStream& stream,
                               ParamNameIndex& names);

// Moves behind the parameters that an empty SipAddrParamList would take.
// Fails: as SipParamList::parseParamList().
VARN_EXCEPTION_CODES passUriParams(SipStrStream& stream);

#endif  // SIPUTILITY_PARAMS_PARAM_READER_H

// sip.h - what the tool takes from the libraries, by its names.
#ifndef TOOL_SIP_H
#define TOOL_SIP_H

#include "sipFields.h"
#include "sipMessage.h"
#include "sipText.h"
#include "wySipCxx.h"

using siputility::beginsMessage;
using siputility::equalIgnoringCase;
using siputility::Fault;
using siputility::Field;
using siputility::FieldKind;
using siputility::findField;
using siputility::isStartLine;
using siputility::isToken;
using siputility::knownFields;
using siputility::Message;
using siputility::MessageReader;
using siputility::readNumber;
using siputility::splitList;
using siputility::StartLine;
using siputility::statedLength;
using siputility::toSipString;
using siputility::toStdString;
using siputility::trimmed;
using siputility::view;
using siputility::withoutLineEnd;

#endif  // TOOL_SIP_H

// boundaries.h - the stored boundaries of a multipart body, and boundaries without quotes.
#ifndef SIPUTILITY_MULTIPART_BOUNDARIES_H
#define SIPUTILITY_MULTIPART_BOUNDARIES_H

#include <string_view>

#include "base/platformBlock.h"
#include "sipMultipartmessagebodyUtility.h"

using DashBoundary = SipMultipartMessageBodyUtility::DashBoundary;

// Returns the last node of a list, which has one.
DashBoundary* latestOf(DashBoundary* list);

// Returns whether a node is on the list; null is on none.
bool contains(const DashBoundary* list, const DashBoundary* node);

// Deletes a node that is on no list, and its text; does nothing for null.
void deleteBoundary(DashBoundary* node);

// Frees a text of the platform, or nothing.
void freeText(std::string_view text);

// Returns the front and the boundary as one text, without the double quotes around the boundary;
// null without memory.
PlatformText unquotedBoundary(std::string_view front, const char* boundary);

#endif  // SIPUTILITY_MULTIPART_BOUNDARIES_H

// boundaries.h - the stored boundaries of a multipart body, and boundaries without quotes.
#ifndef SIPUTILITY_MULTIPART_BOUNDARIES_H
#define SIPUTILITY_MULTIPART_BOUNDARIES_H

#include <string_view>

#include "base/platformBlock.h"
#include "sipMultipartmessagebodyUtility.h"

using DashBoundary = SipMultipartMessageBodyUtility::DashBoundary;

// Returns the last node of a list, the boundary that was stored last.
// Requires: a list that is not empty.
DashBoundary* latestOf(DashBoundary* list);

// Returns whether a node is in the list; null is in none.
bool contains(const DashBoundary* list, const DashBoundary* node);

// Deletes a node and its text; does nothing for null.
void deleteBoundary(DashBoundary* node);

// Frees a text in a platform block; does nothing for a null one.
void freeText(std::string_view text);

// Returns the front followed by the boundary, the latter without double quotes around it; null if
// out of memory.
PlatformText unquotedBoundary(std::string_view front, const char* boundary);

#endif  // SIPUTILITY_MULTIPART_BOUNDARIES_H

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

// Returns a boundary without double quotes around it; null if out of memory. Only a boundary that
// begins with a quote needs the copy, which must live as long as the result is used.
const char* unquoted(const char* boundary, PlatformText& copy);

#endif  // SIPUTILITY_MULTIPART_BOUNDARIES_H

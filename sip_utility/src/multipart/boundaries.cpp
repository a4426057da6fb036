// boundaries.cpp - the stored boundaries of a multipart body, and boundaries without quotes.
#include "multipart/boundaries.h"

#include <cstring>
#include <functional>

#include "base/log.h"
#include "base/recorded.h"
#include "imsxml.h"
#include "multipart/syntax.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/sipMultipartmessagebodyUtility";

// Returns whether a pointer points to a byte of a text or to its end. std::less_equal also orders
// pointers into different blocks.
bool isWithin(std::string_view text, const char* p) {
  const std::less_equal<> notAfter;
  return notAfter(text.data(), p) && notAfter(p, text.data() + text.size());
}

}  // namespace

DashBoundary* latestOf(DashBoundary* list) {
  while (list->next != nullptr) {
    list = list->next;
  }
  return list;
}

bool contains(const DashBoundary* list, const DashBoundary* node) {
  while (list != nullptr && list != node) {
    list = list->next;
  }
  return list != nullptr;
}

void deleteBoundary(DashBoundary* node) {
  if (node != nullptr) {
    __free(node->boundary);
    deleteRecorded(node);
  }
}

void freeText(std::string_view text) { __free(const_cast<char*>(text.data())); }

const char* unquoted(const char* boundary, PlatformText& copy) {
  if (*boundary != '"') {
    return boundary;
  }
  copy = copyOf(boundary);
  return XmlCommon::RemoveQuotes(copy.get());
}

bool SipMultipartMessageBodyUtility::storeFirstBoundary(const char* boundary) {
  auto* const node = newRecorded<DashBoundary>(kSourceFile);
  if (node == nullptr) {
    logTrace(kSourceFile, "SipMultipartMessageBody::Storedashboundary | new failed");
    return false;
  }
  node->boundary = __strdup(boundary);
  if (node->boundary == nullptr || !showCopy(m_pCurrentboundary, node->boundary) ||
      !showCopy(lastBoundary, node->boundary)) {
    logTrace(kSourceFile, "SipConnection::Storedashboundary | strdup failed");
    deleteBoundary(node);
    return false;
  }
  dashBoundaryList = node;
  growthEnd_ = node;
  return true;
}

bool SipMultipartMessageBodyUtility::storeFurtherBoundary(const char* boundary) {
  DashBoundary* const latest = latestOf(dashBoundaryList);
  const bool isNew = std::strcmp(latest->boundary, boundary) != 0;
  DashBoundary* const node = isNew ? newRecorded<DashBoundary>(kSourceFile) : nullptr;
  if (node != nullptr) {
    node->boundary = __strdup(boundary);
  }
  // Where the list has one boundary, lastBoundary shows that one already.
  if ((latest != dashBoundaryList && !showCopy(lastBoundary, latest->boundary)) ||
      (isNew && (node == nullptr || node->boundary == nullptr ||
                 !showCopy(m_pCurrentboundary, node->boundary)))) {
    logTrace(kSourceFile, "SipConnection::Storedashboundary |  strdup failed");
    deleteBoundary(node);
    return false;
  }
  latest->next = node;
  // A parse ends a content at the outer boundary, so it reaches a nested multipart only if the
  // inner boundary begins with the outer one: "a", "ab", "abc". While each begins with the one
  // before, from the first on, growthEnd_ is the latest; see beginsWithStored().
  if (node != nullptr && latest == growthEnd_ && startsWith(node->boundary, latest->boundary)) {
    growthEnd_ = node;
  }
  return true;
}

// Compares the boundaries in turn, with one shortcut. Up to growthEnd_ each one begins with the
// first. A text that does not begin with the first therefore begins with none of them, and the loop
// goes on after growthEnd_. Otherwise it would compare their common bytes once for each.
bool SipMultipartMessageBodyUtility::beginsWithStored(std::string_view text) const {
  const bool grows = contains(dashBoundaryList, growthEnd_);  // callers may change the list
  const DashBoundary* each = dashBoundaryList;
  while (each != nullptr && !startsWith(text, each->boundary)) {
    each = grows && each == dashBoundaryList ? growthEnd_->next : each->next;
  }
  return each != nullptr;
}

bool SipMultipartMessageBodyUtility::leaveBoundary() {
  if (isLastBoundary()) {
    // The two may show texts of the list, which is about to be deleted.
    const bool kept =
        showCopy(m_pCurrentboundary, m_pCurrentboundary) && showCopy(lastBoundary, lastBoundary);
    if (kept) {
      forgetBoundaries();
    }
    return kept;
  }
  return dashBoundaryList == nullptr ||
         showCopy(m_pCurrentboundary, latestOf(dashBoundaryList)->boundary);
}

bool SipMultipartMessageBodyUtility::showCopy(const char*& boundary, std::string_view text) {
  for (const std::string_view copy : copies_) {
    if (copy.data() != nullptr && copy == text) {
      boundary = copy.data();
      return true;
    }
  }
  const char* const copy = copyOf(text).release();
  if (copy == nullptr) {
    return false;
  }
  boundary = copy;
  // The other of the two boundaries may show one of the earlier copies: replace the one that
  // neither shows.
  const bool firstIsShown =
      isWithin(copies_[0], m_pCurrentboundary) || isWithin(copies_[0], lastBoundary);
  std::string_view& place = copies_[firstIsShown ? 1 : 0];
  freeText(place);
  place = {copy, text.size()};
  return true;
}

bool SipMultipartMessageBodyUtility::isLastBoundary() const {
  return m_pCurrentboundary != nullptr && lastBoundary != nullptr &&
         std::strcmp(m_pCurrentboundary, lastBoundary) == 0;
}

void SipMultipartMessageBodyUtility::forgetBoundaries() {
  while (dashBoundaryList != nullptr) {
    DashBoundary* const next = dashBoundaryList->next;
    deleteBoundary(dashBoundaryList);
    dashBoundaryList = next;
  }
  growthEnd_ = nullptr;
}

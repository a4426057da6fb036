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

// Returns whether a pointer is one to a byte of a text or to its end.
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

PlatformText unquotedBoundary(std::string_view front, const char* boundary) {
  PlatformText text = joined(front, boundary);
  if (text != nullptr) {
    XmlCommon::RemoveQuotes(text.get() + front.size());
  }
  return text;
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
  // The first boundary of the list was the last one from its storing on.
  if ((latest != dashBoundaryList && !showCopy(lastBoundary, latest->boundary)) ||
      (isNew && (node == nullptr || node->boundary == nullptr ||
                 !showCopy(m_pCurrentboundary, node->boundary)))) {
    logTrace(kSourceFile, "SipConnection::Storedashboundary |  strdup failed");
    deleteBoundary(node);
    return false;
  }
  latest->next = node;
  if (node != nullptr && latest == growthEnd_ && startsWith(node->boundary, latest->boundary)) {
    growthEnd_ = node;
  }
  return true;
}

bool SipMultipartMessageBodyUtility::beginsWithStored(std::string_view text) const {
  const bool grows = contains(dashBoundaryList, growthEnd_);  // a caller may have taken it out
  const DashBoundary* each = dashBoundaryList;
  while (each != nullptr && !startsWith(text, each->boundary)) {
    each = grows && each == dashBoundaryList ? growthEnd_->next : each->next;
  }
  return each != nullptr;
}

bool SipMultipartMessageBodyUtility::leaveBoundary() {
  if (isLastBoundary()) {
    // The two may show a text of the list, which goes.
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
  // The other boundary can show one of the earlier copies, and no more.
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

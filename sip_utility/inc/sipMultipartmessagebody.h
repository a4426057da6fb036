/// \file
/// One part of a multipart body, a node in the tree of parts.
///
///     root --next--> second part --next--> third part
///      |child
///     first part of a nested multipart --next--> its second part
///
/// A body that is not multipart is a single node with content only. Parser and callers access the
/// fields directly. A node owns its texts, content, headers and nested list. deleteChild() and
/// deleteNext() delete the nodes that it links to. A SipMultipartMessageBodyUtility owns the tree
/// that it makes: callers do not delete its nodes.
///
/// Failures are logged (level 4, level 5 out of memory, module 6054). A tree is used by one thread
/// at a time.
#ifndef SIP_MULTIPART_MESSAGE_BODY_H
#define SIP_MULTIPART_MESSAGE_BODY_H

#include "wySipExport.h"
#include "wySipHeader.h"

/// A part of a multipart body: its headers, its content and links to the other parts.
class SIPUTILITY_EXPORT SipMultipartMessageBody {
 public:
  /// Makes an empty node.
  SipMultipartMessageBody();

  SipMultipartMessageBody(const SipMultipartMessageBody&) = delete;
  SipMultipartMessageBody& operator=(const SipMultipartMessageBody&) = delete;

  /// Frees what the node owns; the nodes at next and child are not touched.
  virtual ~SipMultipartMessageBody();

  /// Deletes the siblings after this node, the last one first, and sets next to null. Their
  /// children are not deleted.
  void deleteNext();

  /// Deletes the first child, its first child and so on, the deepest one first, and the siblings of
  /// each; sets child to null. The children of those siblings are not deleted.
  void deleteChild();

  /// Replaces the content by a copy of `data[0, length)`. All of it is copied, but bodyLength has
  /// 16 bits and stores the length modulo 65536.
  ///
  /// Fails: false for null or a length of 0, and the content stays; false out of memory, and there
  /// is no content.
  bool SetMessageBody(unsigned char* data, unsigned int length);

  /// Stores a copy of a zero-terminated text; null out of memory.
  ///
  /// Owns: an earlier text is not freed. It passes to the caller, who frees it with `__free`.
  /// @{
  void SetEpilogue(char* text);
  void SetPreamble(char* text);
  /// @}

  /// Makes an array for count headers. After a failure nothing has changed.
  ///
  /// Owns: an earlier array is not freed. It passes with its headers to the caller, who frees it
  /// with `__free`.
  bool AllocSipHeaders(unsigned char count);

  /// Puts a header into the first empty slot.
  ///
  /// Requires: the header is on the memory log (category 2).
  ///
  /// Fails: false for null and if no slot is left.
  ///
  /// Owns: the node owns the header; after a failure the caller still does.
  bool AddSipHeaders(SipHeader* header);

  /// Returns an array with one null pointer for each child; each call returns the same array. The
  /// pointers are deliberately null: the array shows how many children there are, the child and
  /// next links lead to them.
  ///
  /// Fails: null if there is no child, and out of memory.
  ///
  /// Owns: the node owns the array.
  SipMultipartMessageBody** GetNestedMessagebodyList();

  SipMultipartMessageBody* parent;
  SipMultipartMessageBody* next;
  SipMultipartMessageBody* child;
  char* preamble;       ///< zero-terminated block of the platform; null for none
  char* epilogue;       ///< zero-terminated block of the platform; null for none
  unsigned char* body;  ///< block of the platform, not terminated; null for none
  unsigned short bodyLength;
  unsigned char freeHeaderSlots;
  SipHeader** headers;  ///< filled from the start; the first null pointer ends it
  SipMultipartMessageBody** nestedList;

 private:
  friend class SipMultipartMessageBodyUtility;

  SIPUTILITY_HIDDEN void deleteHeaders();
};

#endif  // SIP_MULTIPART_MESSAGE_BODY_H

// sipMultipartmessagebody.h - one part of a multipart body, a node of the tree of parts.
//
//   root --next--> second part --next--> third part
//    |child
//   first part of a nested multipart --next--> its second part
//
// A body that is not multipart is a single node with content only. The fields are open to the
// parser and to callers. A node owns its texts, content, headers and nested list; what it links
// to is deleted by deleteChild() and deleteNext(). A tree that a SipMultipartMessageBodyUtility
// made belongs to that object: no caller deletes its nodes.
//
// Failures are logged (level 4, level 5 out of memory, module 6054). One thread at a time for
// each tree.
#ifndef SIP_MULTIPART_MESSAGE_BODY_H
#define SIP_MULTIPART_MESSAGE_BODY_H

#include "wySipExport.h"
#include "wySipHeader.h"

class SIPUTILITY_EXPORT SipMultipartMessageBody {
 public:
  // Makes an empty node.
  SipMultipartMessageBody();

  SipMultipartMessageBody(const SipMultipartMessageBody&) = delete;
  SipMultipartMessageBody& operator=(const SipMultipartMessageBody&) = delete;

  // Frees what the node owns; next and child stay as they are.
  virtual ~SipMultipartMessageBody();

  // Deletes the siblings behind this node, the last one first; next is null then. Their children
  // are not deleted.
  void deleteNext();

  // Deletes the first child, its first child and so on, the deepest one first, and the siblings
  // of each; child is null then. The children of those siblings are not reached, and so are not
  // deleted.
  void deleteChild();

  // Replaces the content by a copy of data[0, length). bodyLength holds no more than 16 bits: of
  // a longer content all is copied, and length modulo 65536 stored.
  // Fails: false for null or no length, the content stays; false without memory, there is no
  // content then.
  bool SetMessageBody(unsigned char* data, unsigned int length);

  // Each stores a copy of a zero-terminated text, null without memory.
  // Owns: an earlier text is not freed; it passes to the caller, who frees it with __free.
  void SetEpilogue(char* text);
  void SetPreamble(char* text);

  // Makes an array for count headers. On failure nothing has changed.
  // Owns: an earlier array is not freed; it passes, its headers with it, to the caller, who frees
  // it with __free.
  bool AllocSipHeaders(unsigned char count);

  // Puts a header into the first empty slot and takes it over: it must be on the memory log
  // (category 2).
  // Fails: false for null and when no slot is left; the header stays the caller's.
  bool AddSipHeaders(SipHeader* header);

  // Returns an array with one null pointer for each child, the same array at every call. The
  // pointers are meant to be null: the array tells how many, the child and next links tell which.
  // Fails: null for no child, and without memory.
  SipMultipartMessageBody** GetNestedMessagebodyList();

  SipMultipartMessageBody* parent;
  SipMultipartMessageBody* next;
  SipMultipartMessageBody* child;
  char* preamble;       // zero-terminated block of the platform; null for none
  char* epilogue;       // the same
  unsigned char* body;  // block of the platform, not terminated; null for none
  unsigned short bodyLength;
  unsigned char freeHeaderSlots;
  SipHeader** headers;  // filled from the start; the first null pointer ends it
  SipMultipartMessageBody** nestedList;

 private:
  friend class SipMultipartMessageBodyUtility;

  SIPUTILITY_HIDDEN void deleteHeaders();
};

#endif  // SIP_MULTIPART_MESSAGE_BODY_H

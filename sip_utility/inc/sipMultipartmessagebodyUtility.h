// sipMultipartmessagebodyUtility.h - takes a multipart body apart into a tree of its parts.
//
//   body           = [ preamble ] 1*part
//   part           = delimiter ( CRLF / header-block ) content *( close-delimiter [ epilogue ] )
//   delimiter      = "--" boundary *SP CRLF
//   header-block   = 1*( name ":" value CRLF ) CRLF
//   content        = 1*OCTET, up to the next "--" boundary
//   close-delimiter = "--" boundary "--" *SP [ CRLF ]
//
// This is not RFC 2046 to the letter: the CRLF in front of a delimiter belongs to the content, a
// delimiter need not stand at the start of a line, an epilogue is the whole rest of the body,
// each blank behind a close delimiter is skipped twice, and a part that is multipart itself makes
// its boundary the current one, so that the outer delimiter behind it is refused and the parse
// fails. Zero bytes may stand in a content; elsewhere they end the text.
//
// The object owns the tree that it makes, and deletes all of it. Failures are logged (levels 3
// and 4, level 5 for some without memory, module 6054). One thread at a time; getInstance() and
// deleteInstance() share one pointer of the process.
#ifndef SIP_MULTIPART_MESSAGE_BODY_UTILITY_H
#define SIP_MULTIPART_MESSAGE_BODY_UTILITY_H

#include <cstddef>
#include <string_view>

#include "sipMultipartmessagebody.h"
#include "wySipExport.h"

// Internals of the library, no part of its interface.
namespace siputility {
class MultipartParse;
}  // namespace siputility

class SIPUTILITY_EXPORT SipMultipartMessageBodyUtility {
 public:
  // A boundary that an opening delimiter had, a block of the platform. The record is on the memory
  // log (category 2).
  struct DashBoundary {
    char* boundary;
    DashBoundary* next;
  };

  SipMultipartMessageBodyUtility();
  SipMultipartMessageBodyUtility(const SipMultipartMessageBodyUtility&) = delete;
  SipMultipartMessageBodyUtility& operator=(const SipMultipartMessageBodyUtility&) = delete;

  // Deletes the tree with all its nodes.
  virtual ~SipMultipartMessageBodyUtility();

  // Makes an object and remembers it as the instance; null without memory.
  // Owns: deleteInstance() deletes the instance. An earlier one is not deleted: it passes to
  // whoever holds it, who takes it off the memory log (category 2) and deletes it.
  static SipMultipartMessageBodyUtility* getInstance();

  // Deletes the instance, if there is one.
  static void deleteInstance();

  // Takes a body apart: data[0, length) under a Content-Type value. A value without "multipart"
  // gives a single node with the body as content. Returns the first part, whose siblings the
  // others are; null for a multipart body without any line end. Without data the body of an
  // earlier call is taken again. Once there is a tree, it is returned whatever the body, which is
  // stored all the same.
  // Fails: null for no body, one of 2 GiB or more, a null Content-Type value, one that is refused
  // or has no boundary where it says multipart, a body outside the syntax, and without memory; the
  // parts read until then stay, and the next call returns them.
  SipMultipartMessageBody* wySipGetMultiPartMessageBody(unsigned char* data, unsigned int length,
                                                        const char* contentType);

  // The steps of the parse, in their order. Where nothing else is said, each returns 1 for
  // success, 0 for failure, also for null and without memory. Texts are zero-terminated, but
  // those within the body reach to its end.

  // Takes a multipart body apart: body[0, contentLength) and a zero byte behind it, under the
  // current boundary.
  // Fails: 0 also when the epilogues of the body together take more than 4 times its length and
  // 64 MiB; each reaches to the end of the body. The epilogue that passes this bound is left out,
  // later parts are not read, the parts before it stay.
  int wySipProcessMultipartMsgBody(unsigned char* body);

  // Checks a delimiter line, its CRLF cut off, and stores its boundary.
  int Validateboundary(char* line);

  // Measures the content that begins here, up to the next "--" with the current boundary, into
  // partContentLength. Two hyphens that no boundary follows count as one step, so that of three
  // hyphens the last two begin no delimiter.
  // Fails: 0 for a stored boundary right at the start; also, without a log line, for no current
  // boundary and when no delimiter comes.
  int wySipProcessMessageBody(unsigned char* body);

  // Makes a node, current from now on: the root, else the next sibling of the current node when
  // the current boundary is the last one, else its first child.
  // Fails: 0 also, without a log line, for a tree without a current node.
  int wySipConstructMultipartMessageStructure();

  // Reads the lines of a header block, their number taken modulo 256, into the current node, in
  // place of the headers that it has; no lines change nothing. A line that is no header field is
  // left out. A multipart Content-Type makes its boundary the current one.
  // Fails: 0 for no current node, for a line without ":" and for a multipart Content-Type without
  // boundary; the lines after it are not read. 0 also when memory ran out for a header or a
  // boundary; the other lines are read.
  int ParseAndStoreMsgHeaders(char* headers);

  // Reads a close delimiter and moves the cursor behind it. When the current boundary is the last
  // one, the boundaries are forgotten, else the latest stored one becomes the current one.
  // Returns 3; 1 for another boundary, 2 for null and without memory, 4 for a boundary that is
  // not closed.
  int ValidateCloseDelimiter(char*& cursor);

  // Stores a boundary behind the others and makes it the current one, unless the latest one is
  // the same. Blanks around it are cut off, in place. The last boundary becomes the latest one
  // stored before; the first boundary of all is the last one, too.
  int Storedashboundary(char* text);

  DashBoundary* dashBoundaryList;  // the object's own
  // The steps let these two show copies that the object owns. The object frees a copy that neither
  // of the two shows, when a step makes another one. A caller may let them show its own text. The
  // object neither writes nor frees that text, which must live as long as it is shown. They may
  // also show a text of the list.
  const char* m_pCurrentboundary;
  const char* lastBoundary;
  SipMultipartMessageBody* m_pMultipartMsgHead;
  SipMultipartMessageBody* current;
  char* content;  // zero-terminated copy of the body, the object's own
  unsigned int contentLength;
  int partContentLength;
  unsigned char nodeCount;
  int firstBoundary;  // 1 while the first delimiter of a multipart is still to come

 private:
  friend class siputility::MultipartParse;

  // The steps of the same purpose, for the rest of a body, which may go on after a zero byte; of
  // the text up to there, only the length is needed, to be logged.
  SIPUTILITY_HIDDEN bool measureContent(std::string_view rest, std::size_t textLength);
  SIPUTILITY_HIDDEN int passCloseDelimiter(char*& cursor, std::string_view rest);

  SIPUTILITY_HIDDEN SipMultipartMessageBody* takeSinglePart();
  SIPUTILITY_HIDDEN bool takeParts(const SipHeader& contentType);
  SIPUTILITY_HIDDEN bool storeHeader(char* line);
  SIPUTILITY_HIDDEN bool enterNested(SipHeader* header);
  SIPUTILITY_HIDDEN bool storeFirstBoundary(const char* boundary);
  SIPUTILITY_HIDDEN bool storeFurtherBoundary(const char* boundary);
  SIPUTILITY_HIDDEN bool beginsWithStored(std::string_view text) const;
  SIPUTILITY_HIDDEN bool leaveBoundary();
  SIPUTILITY_HIDDEN bool isLastBoundary() const;
  SIPUTILITY_HIDDEN bool showCopy(const char*& boundary, std::string_view text);
  SIPUTILITY_HIDDEN void forgetBoundaries();

  std::string_view copies_[2];  // what the two boundaries may show: blocks of the platform, or null

  // Up to this boundary each one begins with the one in front of it: where the first does not
  // stand, none of them does.
  const DashBoundary* growthEnd_;
  bool outOfMemory_;  // memory ran out for a header or a boundary of the latest header block
};

// Returns SipMultipartMessageBodyUtility::getInstance().
extern "C" SIPUTILITY_EXPORT SipMultipartMessageBodyUtility*
initSipMultipartMessageBodyUtilityObj();

#endif  // SIP_MULTIPART_MESSAGE_BODY_UTILITY_H

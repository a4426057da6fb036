/// \file
/// The parser that splits a multipart body into a tree of its parts.
///
///     body         = [ preamble ] 1*part
///     part         = delimiter ( CRLF / header-block ) content *( close [ epilogue ] )
///     delimiter    = "--" boundary *SP CRLF
///     header-block = 1*( name ":" value CRLF ) CRLF
///     content      = 1*OCTET, up to the next "--" boundary
///     close        = "--" boundary "--" *SP [ CRLF ]
///
/// This differs from RFC 2046:
///
/// - The CRLF before a delimiter belongs to the content.
/// - A delimiter need not be at the start of a line.
/// - An epilogue is the complete rest of the body.
/// - Each blank after a close delimiter is skipped twice.
/// - A part that is multipart itself makes its boundary the current one. The outer delimiter after
///   it is then refused, and the parse fails.
///
/// A content may have zero bytes; elsewhere a zero byte ends the text.
///
/// The object owns the tree that it makes and deletes all of it. Failures are logged (levels 3 and
/// 4, level 5 for some out of memory, module 6054). An object is used by one thread at a time;
/// getInstance() and deleteInstance() share one pointer of the process.
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

/// A parser that splits a multipart body into a tree of parts, which it owns.
class SIPUTILITY_EXPORT SipMultipartMessageBodyUtility {
 public:
  /// The boundary of an opening delimiter. The record is on the memory log (category 2).
  struct DashBoundary {
    char* boundary;  ///< zero-terminated block of the platform
    DashBoundary* next;
  };

  /// Makes a parser without a tree.
  SipMultipartMessageBodyUtility();
  SipMultipartMessageBodyUtility(const SipMultipartMessageBodyUtility&) = delete;
  SipMultipartMessageBodyUtility& operator=(const SipMultipartMessageBodyUtility&) = delete;

  /// Deletes the tree with all its nodes.
  virtual ~SipMultipartMessageBodyUtility();

  /// Makes an object and stores it as the instance of the process; null out of memory.
  ///
  /// Owns: deleteInstance() deletes the instance. An earlier instance is not deleted. It passes to
  /// the caller that holds it, who removes it from the memory log (category 2) and deletes it.
  static SipMultipartMessageBodyUtility* getInstance();

  /// Deletes the instance, if there is one.
  static void deleteInstance();

  /// Parses a body, `data[0, length)`, by a Content-Type value. Returns the first part; the other
  /// parts are its siblings. A value without `multipart` makes a single node with the body as
  /// content. A multipart body without any line end returns null.
  ///
  /// Without data, the body of an earlier call is parsed again. Once there is a tree, each call
  /// stores the body and returns that tree.
  ///
  /// Fails: null for no body, for a body of 2 GiB or more, for a Content-Type value that is null,
  /// is refused, or is multipart without a boundary, for a body outside the syntax, and out of
  /// memory. The parts that were read stay, and the next call returns them.
  SipMultipartMessageBody* wySipGetMultiPartMessageBody(unsigned char* data, unsigned int length,
                                                        const char* contentType);

  // The steps of the parse, in their order. Unless stated otherwise, each returns 1 for success and
  // 0 for failure, also for null and out of memory. Texts are zero-terminated, but a text inside
  // the stored body extends to the end of the body.

  /// Parses a multipart body, `body[0, contentLength)` and a zero byte after it, by the current
  /// boundary. Returns 1.
  ///
  /// Fails: 0 for null, without a current boundary, for a body outside the syntax, and out of
  /// memory. 0 also if the epilogues of the body together take more than 64 MiB plus 4 times its
  /// length; each of them extends to the end of the body. The epilogue that exceeds this bound is
  /// left out, later parts are not read, and the parts before it stay.
  int wySipProcessMultipartMsgBody(unsigned char* body);

  /// Checks a delimiter line without its CRLF and stores its boundary. Returns 1.
  ///
  /// Fails: 0 for null, for a line that is no delimiter with the current boundary, and out of
  /// memory.
  int Validateboundary(char* line);

  /// Stores the length of the content that begins here in partContentLength. The content ends
  /// before the next `--` with the current boundary. Returns 1.
  ///
  /// Two hyphens without the boundary after them are skipped together: of three hyphens before a
  /// boundary, the last two do not begin a delimiter.
  ///
  /// Fails: 0 for null and for a stored boundary right at the start; also, without a log line, if
  /// there is no current boundary and if no delimiter follows.
  int wySipProcessMessageBody(unsigned char* body);

  /// Makes a node, which becomes the current one. The first node is the root. A further node
  /// becomes the next sibling of the current node if the current boundary is the last one, else its
  /// first child. Returns 1.
  ///
  /// Fails: 0 out of memory; also, without a log line, for a tree without a current node.
  int wySipConstructMultipartMessageStructure();

  /// Reads the lines of a header block into the current node, in place of the headers that it has.
  /// The number of lines counts modulo 256; without lines nothing changes. A line that is no header
  /// field is left out. A multipart Content-Type makes its boundary the current one. Returns 1.
  ///
  /// Fails: 0 for null and if there is no current node. 0 for a line without `:` and for a
  /// multipart Content-Type without a boundary; the lines after it are not read. 0 out of memory
  /// for a header or a boundary; the other lines are read.
  int ParseAndStoreMsgHeaders(char* headers);

  /// Reads a close delimiter and moves the cursor past it. If the current boundary is the last one,
  /// all boundaries are deleted; else the latest stored one becomes the current one. Returns 3.
  ///
  /// Fails: 1 for another boundary, 2 for null and out of memory, 4 for a boundary that is not
  /// closed.
  int ValidateCloseDelimiter(char*& cursor);

  /// Stores a boundary after the others and makes it the current one, unless the latest stored one
  /// is the same. Blanks around it are cut off in place. The last boundary becomes the one that was
  /// stored before it; the first boundary of all is also the last one. Returns 1.
  ///
  /// Fails: 0 for null and out of memory.
  int Storedashboundary(char* text);

  DashBoundary* dashBoundaryList;  ///< the stored boundaries; the object owns them

  /// The current boundary and the last one.
  ///
  /// Owns: the steps set these pointers to copies that the object owns. The object frees a copy if
  /// a step makes another one and neither pointer points to it. They may also point to a text of
  /// the list, or to a text of the caller. The object neither writes nor frees the caller's text,
  /// which must live as long as a pointer points to it.
  /// @{
  const char* m_pCurrentboundary;
  const char* lastBoundary;
  /// @}

  SipMultipartMessageBody* m_pMultipartMsgHead;
  SipMultipartMessageBody* current;
  char* content;  ///< zero-terminated copy of the body; the object owns it
  unsigned int contentLength;
  int partContentLength;
  unsigned char nodeCount;
  int firstBoundary;  ///< 1 while the first delimiter of a multipart is still to come

 private:
  friend class siputility::MultipartParse;

  // The public steps of the same purpose call these with the rest of the body, which may have zero
  // bytes. textLength, the length up to the first zero byte, is only logged.
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

  std::string_view copies_[2];  // for the two boundary pointers: blocks of the platform, or null

  // Up to this boundary each one begins with the one before it. So where the first one does not
  // match, none of them does.
  const DashBoundary* growthEnd_;
  bool outOfMemory_;  // memory ran out for a header or a boundary of the latest header block
};

/// Returns SipMultipartMessageBodyUtility::getInstance().
extern "C" SIPUTILITY_EXPORT SipMultipartMessageBodyUtility*
initSipMultipartMessageBodyUtilityObj();

#endif  // SIP_MULTIPART_MESSAGE_BODY_UTILITY_H

/// \file
/// Functions that read plain text: Via values, URI equality, hosts, q-values, gzip data.
///
/// Texts are zero-terminated. Unless stated otherwise, a function that fails logs the reason (level
/// 4, some of them level 5 out of memory, module 6054).
///
/// C can include this header; it then has all functions but those that return an object.
#ifndef WY_SIP_UTILS_H
#define WY_SIP_UTILS_H

#include "wySipExport.h"

#ifdef __cplusplus
#include "wySipAddress.h"
#include "wySipHeader.h"

extern "C" {

/// Returns the sent-by of a Via header field as a SIP URI, from the value of the field.
///
/// The URI is `sip:` and the text after the first `UDP`, or after the first `TCP` if the text has
/// no `UDP`. Blanks outside double quotes are dropped. The length of the text counts modulo 256: a
/// text of 256 bytes is empty, and of a text of 300 bytes the first 44 are read.
///
/// ParseViaHeaderToAdress() cuts the text at the first `;`, writes double quotes as blanks, writes
/// the user-info as wyQuoteUserInfoInSipUri() does, and returns an address.
/// ParseViaHeaderToHeader() keeps the parameters and returns a header field named Via.
///
/// Fails: null for null, an empty text, no transport, an address or header that is not accepted,
/// and out of memory. If only the quoting of the user-info is out of memory, the user-info stays as
/// it is.
///
/// Owns: the caller owns the object, which is on the memory log (category 2): remove it from the
/// log and delete it, or use siputility::HandedOut.
///
/// Example: from `SIP/2.0/UDP 10.0.0.1:5060;branch=z9hG4bK1` they return `sip:10.0.0.1:5060` and
/// `Via: sip:10.0.0.1:5060;branch=z9hG4bK1`.
/// @{
SIPUTILITY_EXPORT SipAddress* ParseViaHeaderToAdress(const char* via);
SIPUTILITY_EXPORT SipHeader* ParseViaHeaderToHeader(const char* via);
/// @}
#endif  // __cplusplus

/// Returns 1 if two SIP URIs have the same user, port and host; else logs the difference and
/// returns 0.
///
/// - Both URIs must have a user. Users and passwords are compared byte by byte.
/// - A URI without a port differs from one with a port, also with port 5060.
/// - Two IP addresses are compared as addresses: `10.0.0.1` differs from `::10.0.0.1`. An IP
///   address that the platform cannot read is equal to none.
/// - Other hosts are compared byte by byte, in the same letter case.
/// - The length of a host counts modulo 65536.
/// - A text that is not an address is logged. The pieces before its fault are then compared.
///
/// Fails: 0 for a null argument. Out of memory it may return 0 for URIs that are the same. If
/// GetHostType() is out of memory for one of the hosts, it returns 1 for hosts that are equal
/// texts, also if the platform cannot read them as addresses.
SIPUTILITY_EXPORT int CompareSIPURI(const char* remote, const char* local);

/// Returns the kind of a host: 1 for an IPv4 address, 2 for an IPv6 address, 0 for anything else.
/// If the text starts with `[`, its first and last characters are ignored. The result is logged
/// (level 3).
///
/// Fails: 0 for null and for an empty text; 0 out of memory (level 3).
SIPUTILITY_EXPORT int GetHostType(const char* host);

/// Cuts a text at the first appearance of the complete delimiter and sets `*rest` to the text after
/// it. An empty delimiter is found at the start. Returns text.
///
/// Fails: null for a null argument; also null, without a log line and with nothing changed, if the
/// text does not have the delimiter.
SIPUTILITY_EXPORT char* NSIP_strtok(char* text, const char* delimiter, char** rest);

/// Overwrites the blanks (only 0x20) at the end of a text with zero bytes. Returns the first
/// character of the text that is not a blank; null for null.
SIPUTILITY_EXPORT char* RemoveSpaces(char* text);

/// Returns the index of the highest of count q-values. A q-value is 0 to 1 with at most three
/// decimals; of the decimals after `0.` only their number is checked. A null entry ends the list
/// early.
///
/// Fails: 255 for null, for no entries, for a text that is no q-value, for two equal q-values, and
/// out of memory; also, without a log line, if the first entry is null. The entries from a null one
/// on count as q-values of 0 when equal ones are searched.
SIPUTILITY_EXPORT unsigned char ValidateAndGetMaxQValue(char** qvalues, unsigned char count);

/// Returns 1 if the value is one of the first 20 values, else 0. A null entry ends the values
/// early; null values are empty. If ignoreCase is not 0, the case of ASCII letters is ignored.
///
/// Fails: 0 for a null value.
SIPUTILITY_EXPORT int wySipCheckIfHeaderValuePresent(char** values, char* value, int ignoreCase);

/// Returns the value of a text of decimal digits. Only the first (length modulo 256) bytes are
/// read: of a text of 256 bytes none.
///
/// Requires: the value fits 32 bits; otherwise the process ends. Never pass text from the network.
///
/// Fails: 0 for null, an empty text and any other character.
SIPUTILITY_EXPORT unsigned int wyAtoi32(const char* text);

/// Expands gzip data, `input[0, length)`, to at most 60 times its length. If the end of the data is
/// missing, the result is what can be expanded, cut at that limit. Returns the length of the result
/// and its bytes in `*output`.
///
/// Fails: 0 for a null argument, for data that is not gzip, is damaged or expands further, and out
/// of memory; `*output` is null only if the result could not be allocated. 0 without a log line for
/// data that expands to nothing. The log lines are of level 4, module 6062. Out of memory they are
/// of level 3, and the one for the result is of module 6068.
///
/// Owns: the caller frees `*output` with `__free`.
SIPUTILITY_EXPORT unsigned int DeCompressGzipData(unsigned char* input, unsigned short length,
                                                  unsigned char** output);

#ifdef __cplusplus
}  // extern "C"
#endif

/// Compresses `input[0, length)` into a gzip stream that is not longer than the input. Returns the
/// length of the stream and its bytes in `*output`.
///
/// Fails: 0 without a log line for a null argument, no input, and a stream that would be longer
/// than the input. 0 out of memory; `*output` is null only if the result could not be allocated.
/// The log lines are of module 6068, level 3, or level 4 if zlib cannot be set up.
///
/// Owns: the caller frees `*output` with `__free`.
SIPUTILITY_EXPORT unsigned int compMessageWithDeflate(char* input, unsigned char** output,
                                                      unsigned int length)
#ifndef __cplusplus
    __asm__("_Z22compMessageWithDeflatePcPPhj")  // its link name, which has the types
#endif
    ;

#endif  // WY_SIP_UTILS_H

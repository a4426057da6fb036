// wySipCommon.h - rewriting of plain text: quoting, sorting, IMEI and hexadecimal forms.
//
// Texts are zero-terminated. What is handed out is a block of the platform, the caller's to free
// with __free. Where nothing else is said, a function that fails logs why (level 4, level 5 out
// of memory, module 6054) and leaves *out untouched.
#ifndef WY_SIP_COMMON_H
#define WY_SIP_COMMON_H

#include "wySipExport.h"

extern "C" {

// Percent-encodes the user-info of a SIP URI: what stands between "sip:" and the last "@" behind
// it is decoded and encoded anew by the platform, and every ":" becomes "%3A", that between user
// and password among them. The rest stays, and so does the input.
//
// Where the text begins with a double quote, the "sip:" is the first one behind the closing quote.
// Returns 1 and the new text in *out.
// Fails: 0 for a null argument, no "sip:", a quote that does not close, an empty user-info, one
// that ends in ":" once it is encoded, and without memory; also, without a log line, where there
// is no "@".
// Example: sip:a:b@host.test gives sip:a%3Ab@host.test.
SIPUTILITY_EXPORT int wyQuoteUserInfo(char* uri, char** out);

// Rewrites each element of a list of SIP URIs as wyQuoteUserInfo() does. The elements stand
// between commas outside double quotes. One that cannot be rewritten is logged by its reason and
// stays as it is, unless it is the only one; no memory for the element is such a reason.
// Returns 1 and the new list in *out.
// Fails: 0 for a null argument, no "sip:" anywhere, a single element that cannot be rewritten, as
// wyQuoteUserInfo() does, and without memory for the list.
SIPUTILITY_EXPORT int wyQuoteUserInfoInSipUri(char* uris, char** out);

// Writes each ":" in a quoted feature-tag value as "%3A". The value begins 2 bytes behind the
// first appearance of the reference, past "=" and the opening quote, whatever these two bytes are,
// and ends at the next double quote.
// Returns 1 and the new text in *out.
// Fails: 0 for a null argument, no reference, no closing quote, and without memory.
// Example: a;tag="x:y" with the reference tag gives a;tag="x%3Ay".
SIPUTILITY_EXPORT int wyQuoteFeatureTagValue(char* text, char* reference, char** out);

// Reads hexadecimal digits in pairs and returns the bytes; *byteCount gets their number modulo
// 65536. The block has room for twice as many, zero behind them.
//
// No character is refused. A letter behind F counts on from 15, and the two halves of a byte are
// joined by OR; any other character repeats the half that stood in its place in the pair before
// (0 at the start), and so does the end of a text of odd length.
// Fails: null for a null argument, without a log line, and without memory; *byteCount is set then
// all the same.
// Example: 0a1 gives the bytes 0x0A and 0x1A.
SIPUTILITY_EXPORT unsigned char* strToH8(char* hex, unsigned short* byteCount);

// Orders the elements of a list separated by ";" (not by commas, whatever the name says), in
// place. One pass only: element i changes places with the last of those behind it that are less
// than it, byte by byte, so that the result need not be in full order. Of a list with more than
// 255 elements the first (number modulo 256) take part.
// Returns 1; a single element stays as it is.
// Fails: 0 for null or a null list, and without memory; the list stays.
// Example: c;a;b becomes b;a;c.
SIPUTILITY_EXPORT int wySortCommaSepStrings(char** text);

// Returns the first 15 characters of an IMEI in the form 12345678-901234-5, in a block of 20
// bytes. They are not looked at, and those behind them are left out.
// Fails: null for null, for a text shorter than 15 (its length taken modulo 65536), and without
// memory, all at level 4.
SIPUTILITY_EXPORT char* SipFormatIMEInumber(char* imei);

}  // extern "C"

#endif  // WY_SIP_COMMON_H

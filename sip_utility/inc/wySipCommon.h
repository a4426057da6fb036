/// \file
/// Functions that rewrite plain text: quoting, sorting, IMEI and hexadecimal forms.
///
/// Texts are zero-terminated. A returned text is a block of the platform; the caller frees it with
/// `__free`. Unless stated otherwise, a function that fails logs the reason (level 4, level 5 out
/// of memory, module 6054) and leaves `*out` untouched.
///
/// C can include this header.
#ifndef WY_SIP_COMMON_H
#define WY_SIP_COMMON_H

#include "wySipExport.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Percent-encodes the user-info of a SIP URI, the text between `sip:` and the last `@` after it.
/// The platform decodes the user-info and encodes it again. Every `:` becomes `%3A`, also the one
/// between user and password. The rest of the text and the input do not change.
///
/// If the text begins with a double quote, the first `sip:` after the closing quote counts.
/// Returns 1 and the new text in `*out`.
///
/// Fails: 0 for a null argument, no `sip:`, a quote that does not close, an empty user-info, a
/// user-info that ends in `:` after the platform encoded it, and out of memory; also, without a log
/// line, if there is no `@`.
///
/// Example: `sip:a:b@host.test` becomes `sip:a%3Ab@host.test`.
SIPUTILITY_EXPORT int wyQuoteUserInfo(char* uri, char** out);

/// Rewrites each element of a list of SIP URIs as wyQuoteUserInfo() does. Commas outside double
/// quotes separate the elements. In a list of several elements, an element that cannot be rewritten
/// stays as it is, and the reason is logged; out of memory for the element is such a reason.
/// Returns 1 and the new list in `*out`.
///
/// Fails: 0 for a null argument, no `sip:` anywhere, a single element that cannot be rewritten (as
/// wyQuoteUserInfo() fails), and out of memory for the list.
SIPUTILITY_EXPORT int wyQuoteUserInfoInSipUri(char* uris, char** out);

/// Writes each `:` in a quoted feature-tag value as `%3A`. The value begins 2 bytes after the first
/// appearance of the reference and ends at the next double quote. The 2 skipped bytes are meant to
/// be `=` and the opening quote; they are not checked. Returns 1 and the new text in `*out`.
///
/// Fails: 0 for a null argument, no reference, no closing quote, and out of memory.
///
/// Example: `a;tag="x:y"` with the reference `tag` becomes `a;tag="x%3Ay"`.
SIPUTILITY_EXPORT int wyQuoteFeatureTagValue(char* text, char* reference, char** out);

/// Reads hexadecimal digits in pairs and returns the bytes; `*byteCount` is set to their number
/// modulo 65536. The block has room for twice that number; the bytes after the result are zero.
///
/// No character is refused. A letter after F continues the count: G is 16, in either case. The two
/// halves of a byte are joined by OR. Any other character repeats the half in the same place of the
/// previous pair (0 at the start). The missing half at the end of a text of odd length does so as
/// well.
///
/// Fails: null for a null argument, without a log line; null out of memory, and `*byteCount` is set
/// all the same.
///
/// Example: `0a1` is read as the bytes 0x0A and 0x1A.
SIPUTILITY_EXPORT unsigned char* strToH8(char* hex, unsigned short* byteCount);

/// Orders the elements of a list in place, in one pass. The separator is `;`, although the name
/// says comma. The element at each position in turn is swapped with the last later one that is
/// less, compared byte by byte, so the result need not be fully sorted. If the list has more than
/// 255 elements, only the first (number modulo 256) take part. Returns 1; a single element stays as
/// it is.
///
/// Fails: 0 for null or a null list, and out of memory; the list does not change.
///
/// Example: `c;a;b` becomes `b;a;c`.
SIPUTILITY_EXPORT int wySortCommaSepStrings(char** text);

/// Returns the first 15 characters of an IMEI in the form `12345678-901234-5`, in a block of 20
/// bytes. The characters are not checked; those after the first 15 are left out.
///
/// Fails: null for null, for a text of fewer than 15 characters (its length counts modulo 65536),
/// and out of memory, all at level 4.
SIPUTILITY_EXPORT char* SipFormatIMEInumber(char* imei);

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // WY_SIP_COMMON_H

// wySipUtils.h - questions to plain text: Via values, URI equality, hosts, q-values, small parsers.
//
// Texts are zero-terminated. Where nothing else is said, a function that fails logs why (level 4,
// some of them level 5 out of memory, module 6054).
#ifndef WY_SIP_UTILS_H
#define WY_SIP_UTILS_H

#include "wySipAddress.h"
#include "wySipExport.h"
#include "wySipHeader.h"

extern "C" {

// Each reduces the value of a Via header field to the SIP URI of its sent-by: "sip:" and what
// stands behind the first "UDP", or behind the first "TCP" where there is no "UDP" anywhere.
// Blanks outside double quotes are dropped. The length of the text counts modulo 256: one of 256
// bytes is empty, one of 300 is read as its first 44.
//
// ParseViaHeaderToAdress leaves out everything from the first ";" on, writes double quotes as
// blanks and the user-info as wyQuoteUserInfoInSipUri() does, and returns the address.
// ParseViaHeaderToHeader keeps the parameters and returns a header field named Via.
// Fails: null for null, an empty text, no transport, an address or header that is not accepted,
// and without memory; the user-info alone stays as it is when there is no memory to quote it.
// Owns: the caller; the object is on the memory log (category 2), take it off and delete it.
// Example: SIP/2.0/UDP 10.0.0.1:5060;branch=z9hG4bK1 gives sip:10.0.0.1:5060 and
// Via: sip:10.0.0.1:5060;branch=z9hG4bK1.
SIPUTILITY_EXPORT SipAddress* ParseViaHeaderToAdress(const char* via);
SIPUTILITY_EXPORT SipHeader* ParseViaHeaderToHeader(const char* via);

// Returns 1 when two SIP URIs have the same user, port and host, else 0, the difference logged.
//
// Users, with their passwords, must be there, and are compared byte by byte. A port that is not
// written differs from a written one, 5060 included. Hosts that are both IP addresses are equal
// when the addresses are (10.0.0.1 differs from ::10.0.0.1), which texts that the platform cannot
// read never are; other hosts are compared byte by byte, letter case included. Hosts are taken by
// their length modulo 65536. Texts that are not addresses are logged and then compared by the
// pieces before their fault.
// Fails: 0 for a null argument. Out of memory it may return 0 for URIs that are the same. It
// returns 1 for hosts that are equal texts where GetHostType() has no memory to classify one of
// them, also for texts that the platform cannot read as addresses.
SIPUTILITY_EXPORT int CompareSIPURI(const char* remote, const char* local);

// Returns what a host is: 1 an IPv4 address, 2 an IPv6 address, bare or with any first and last
// character around it of which the first is "[", 0 anything else. Logs its finding (level 3).
// Fails: 0 for null and an empty text, and without memory (level 3).
SIPUTILITY_EXPORT int GetHostType(const char* host);

// Cuts a text at the first appearance of the delimiter, all of it, and points *rest behind it. An
// empty delimiter stands at the start. Returns text.
// Fails: null for a null argument; also, without a log line and with nothing changed, where there
// is no delimiter.
SIPUTILITY_EXPORT char* NSIP_strtok(char* text, const char* delimiter, char** rest);

// Overwrites the blanks (0x20 alone) at the end of a text with zero bytes and returns it behind
// those at its start; null for null.
SIPUTILITY_EXPORT char* RemoveSpaces(char* text);

// Returns the index of the highest of count q-values: 0 to 1 with at most three decimals, of which
// only the number is checked behind "0.". A null entry ends them early.
// Fails: 255 for null or no entries, for a null first entry, without a log line, for a text that
// is no q-value, for two equal ones, and without memory. The entries that a null one cuts off
// count as 0 among the equal ones.
SIPUTILITY_EXPORT unsigned char ValidateAndGetMaxQValue(char** qvalues, unsigned char count);

// Returns 1 when the value is one of the first 20 values, which a null entry ends early, ASCII
// letters without regard to case where ignoreCase is not 0; else 0. Null values hold none.
// Fails: 0 for a null value.
SIPUTILITY_EXPORT int wySipCheckIfHeaderValuePresent(char** values, char* value, int ignoreCase);

// Returns the value of a text of decimal digits. Its length counts modulo 256: of a longer text
// the first (length modulo 256) bytes are read, none of one of 256.
// Fails: 0 for null, an empty text and any other character. A value that does not fit 32 bits
// ends the process: never to be given text from the network.
SIPUTILITY_EXPORT unsigned int wyAtoi32(const char* text);

// Expands gzip data: input[0, length), to at most 60 times its length. Data whose end is missing
// give what there is of them, cut at that limit. Returns the length of the result and its bytes in
// *output. Owns: the caller frees *output with __free. Fails: 0 for a null argument, data that are
// not gzip or damaged or that expand further, and without memory, *output being null then if it was
// memory for the result; 0 without a log line for data that expand to nothing. The log lines are of
// module 6062, level 4, those about memory level 3, and that for the result of module 6068.
SIPUTILITY_EXPORT unsigned int DeCompressGzipData(unsigned char* input, unsigned short length,
                                                  unsigned char** output);

}  // extern "C"

// Compresses input[0, length) into a gzip stream that is not longer than the input. Returns its
// length and its bytes in *output.
// Owns: the caller frees *output with __free.
// Fails: 0 without a log line for a null argument, no input, and a stream that would be longer;
// 0 without memory, *output being null then if it was memory for the result (module 6068, level
// 3, level 4 when zlib cannot be set up).
SIPUTILITY_EXPORT unsigned int compMessageWithDeflate(char* input, unsigned char** output,
                                                      unsigned int length);

#endif  // WY_SIP_UTILS_H

// caller.c - a program in C: calls the functions on plain text.
#include <stdio.h>
#include <string.h>

#include <siputility/imsdpl.h>
#include <siputility/wySipCommon.h>
#include <siputility/wySipInit.h>
#include <siputility/wySipMatch.h>
#include <siputility/wySipUtils.h>
#include <siputility/wyTelAddressMatch.h>

static int quote(void) {
  char uri[] = "sip:a:b@host.test";
  char* quoted = NULL;
  if (wyQuoteUserInfo(uri, &quoted) == 0) {
    return 1;
  }
  char* const copy = __strdup(quoted);
  __free(quoted);
  printf("%s\n", copy == NULL ? "out of memory" : copy);
  __free(copy);
  return 0;
}

static int compress(void) {
  char text[500];
  memset(text, 'x', sizeof(text));
  unsigned char* packed = NULL;
  unsigned char* expanded = NULL;
  const unsigned int size = compMessageWithDeflate(text, &packed, sizeof(text));
  const unsigned int length = DeCompressGzipData(packed, (unsigned short)size, &expanded);
  const int same = length == sizeof(text) && memcmp(text, expanded, length) == 0;
  printf("compressed, expanded: %s\n", same ? "the same" : "different");
  __free(packed);
  __free(expanded);
  return same ? 0 : 1;
}

int main(void) {
  InitServiceModules();  // once on each thread
  printf("token %d, separator %d\n", WySipIsToken('!'), WyTelIsVisualSeparator('-'));
  printf("host type %d, equal %d\n", GetHostType("[::1]"), CompareSIPURI("sip:a@b", "sip:a@b"));
  return quote() + compress();
}

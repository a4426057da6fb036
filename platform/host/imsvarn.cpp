// imsvarn.cpp - the framework library for desktop hosts: hands assertions to a handler.
#include "imsvarn.h"

#include "hostControl.h"

namespace {

void (*assertionHandler)(void*, const HostAssertion&) = nullptr;
void* assertionContext = nullptr;

}  // namespace

void hostSetAssertionHandler(void (*handler)(void*, const HostAssertion&), void* context) {
  assertionHandler = handler;
  assertionContext = context;
}

void MafErrorHandler::AssertString(const char* message, const char* sourceFile, int line) {
  if (assertionHandler != nullptr) {
    assertionHandler(assertionContext, {message, sourceFile, line});
  }
}

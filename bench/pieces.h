// pieces.h - every piece of an address or header handed to a sink.
#ifndef BENCH_PIECES_H
#define BENCH_PIECES_H

#include "harness.h"
#include "sipMultipartmessagebody.h"
#include "wySipAddress.h"
#include "wySipHeader.h"
#include "wyTelAddress.h"

// Hands over the parameters of an address or header.
template <typename Sink, typename Object>
void touchParams(Sink& sink, const Object& object) {
  for (const SipParam* param = object.firstParam(); param != nullptr;
       param = object.nextParam(param)) {
    touch(sink, param->getName());
    touch(sink, param->getValue());
  }
}

template <typename Sink>
void touchPieces(Sink& sink, const SipAddress& address) {
  sink.number(address.GetLastErrorCode());
  touch(sink, address.getDisplayName());
  touch(sink, address.getScheme());
  touch(sink, address.getUser());
  touch(sink, address.getHost());
  sink.number(address.getStoredPort());
  touchParams(sink, address);
}

template <typename Sink>
void touchPieces(Sink& sink, const SipHeader& header) {
  sink.number(header.GetLastErrorCode());
  touch(sink, header.getName());
  touch(sink, header.getValue());
  touchParams(sink, header);
}

template <typename Sink>
void touchPieces(Sink& sink, const TelAddress& address) {
  sink.number(address.GetLastErrorCode());
  touch(sink, address.getDisplayName());
  touch(sink, address.getPhoneNumber());
  touch(sink, address.getISDNSubAddr());
  touch(sink, address.getExtension());
  touch(sink, address.getContext());
  sink.number(address.getType());
  touchParams(sink, address);
}

// The parts of a body from this one on.
template <typename Sink>
void touchPieces(Sink& sink, const SipMultipartMessageBody* part) {
  for (; part != nullptr; part = part->next) {
    for (SipHeader** header = part->headers; header != nullptr && *header != nullptr; ++header) {
      touchPieces(sink, **header);
    }
    sink.text(reinterpret_cast<const char*>(part->body), part->bodyLength);
  }
}

#endif  // BENCH_PIECES_H

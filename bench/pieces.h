// pieces.h - every piece of an address or header handed to a sink.
#ifndef BENCH_PIECES_H
#define BENCH_PIECES_H

#include <memory>
#include <string>

#include "harness.h"
#include "sipMultipartmessagebody.h"
#include "wySipAddress.h"
#include "wySipHeader.h"
#include "wyTelAddress.h"

// Hands over the parameters of an address or header.
template <typename Sink, typename Object>
void touchParams(Sink& sink, const Object& object) {
  for (const SipParam& param : siputility::paramsOf(object)) {
    touch(sink, param.getName());
    touch(sink, param.getValue());
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

// Cases of one operation on an object that all calls share, `BM_Family_Name/bytes of the value`.
// The operation takes the object and a value and returns a code, or whether it found something.
template <typename Object>
class OperationCases {
 public:
  OperationCases(const char* family, std::shared_ptr<Object> object)
      : family_(family), object_(std::move(object)) {}

  template <typename Operation>
  void add(const char* name, std::string_view value, unsigned long wanted, Operation operation) {
    addCase("BM_" + family_ + '_' + name + '/' + std::to_string(value.size()), value.size(),
            std::to_string(wanted) + '|',
            [object = object_, text = toSipString(value), operation](auto& sink) {
              sink.number(operation(*object, text));
            });
  }

  // A setter of one piece, to the value that it has.
  void add(const char* name, std::string_view value,
           VARN_EXCEPTION_CODES (Object::*setter)(const SipString&)) {
    add(name, value, VARN_OK,
        [setter](Object& object, const SipString& text) { return (object.*setter)(text); });
  }

  // Change and look-up of a parameter, removal of an absent one.
  void addCommon() {
    object_->setParameter("ob", "value");
    add("setParameter", "value", VARN_OK,
        [](Object& object, const SipString& value) { return object.setParameter("ob", value); });
    add("getParameter", "ob", 1, [](const Object& object, const SipString& name) {
      return object.getParameter(name) != nullptr ? 1U : 0U;
    });
    add("removeParameter", "none", VARN_OK,
        [](Object& object, const SipString& name) { return object.removeParameter(name); });
  }

 private:
  std::string family_;
  std::shared_ptr<Object> object_;
};

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

// valueEdit.cpp - edits one value of a header field, and nothing else of its bytes.
#include "fields/valueEdit.h"

#include <algorithm>
#include <utility>

#include "fields/diagnostics.h"
#include "fields/validSip.h"
#include "text/sip.h"

namespace {

constexpr std::string_view kDigits = "0123456789";

// New bytes in place of others.
struct Splice {
  std::size_t offset;
  std::size_t length;
  std::string text;
};

// Returns the value with one blank for each byte of a line end, so that offsets stay.
std::string withoutFolds(std::string value) {
  std::replace_if(
      value.begin(), value.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  return value;
}

template <typename Object>
bool hasParameter(const Object& object, const Edit& edit) {
  const SipString* value = object.getParameter(toSipString(edit.name));
  return value != nullptr && view(*value) == edit.value;
}

// Returns `scheme:user@host`.
std::string uriWithoutPort(const SipAddress& address) {
  std::string uri = toStdString(address.getScheme()) + ':';
  uri.append(view(address.getUser())).append(address.getUser().length() == 0 ? "" : "@");
  return uri.append(view(address.getHost()));
}

bool haveSamePieces(const SipAddress& a, const SipAddress& b) {
  return view(a.getDisplayName()) == view(b.getDisplayName()) &&
         uriWithoutPort(a) == uriWithoutPort(b) && a.getStoredPort() == b.getStoredPort();
}

// Edits a value without folds.
class ValueEditor {
 public:
  ValueEditor(const std::string& name, const std::string& value, EditedPart part, const Edit& edit)
      : edit_(edit),
        part_(part),
        name_(name),
        value_(value),
        header_(toSipString(name), toSipString(value)),
        begin_(header_.getValue().length() == 0 ? value.size()
                                                : value.find(view(header_.getValue()))),
        core_(value.substr(begin_, header_.getValue().length())),
        code_(header_.GetLastErrorCode()) {
    if (code_ != VARN_OK) {
      refuseOld(name + ':' + value, placeInHeader(name + ':' + value));
      const std::string limit = limitOf(name, value);
      reason_ = limit.empty() ? "" : kNotTakenApart + limit;
    } else if (part == EditedPart::kField) {
      editField();
    } else if (equalIgnoringCase(name, "Via")) {
      editSentBy();
    } else if (isTel()) {
      editTel();
    } else {
      editSip();
    }
    if (code_ == VARN_OK && !readsAsEdited()) {
      refuse("the field would then read differently");
    }
  }

  std::optional<Refusal> refusal() const {
    if (code_ == VARN_OK) {
      return std::nullopt;
    }
    const Place* place = place_ ? &*place_ : nullptr;
    return Refusal{reason_.empty() ? diagnostics_.reason(code_, place) : reason_, raw_, place_};
  }

  const Splice& splice() const { return splice_; }

 private:
  void refuse(std::string reason) {
    code_ = VARN_INVALID_INPUT;
    reason_ = std::move(reason);
  }

  // Keeps where the library stopped in the text that was to be edited.
  void refuseOld(std::string raw, Place place) {
    raw_ = std::move(raw);
    place_ = std::move(place);
  }

  // What the library logs of the edit is apart from what it logs of the value before.
  template <typename Object>
  void applyTo(Object& object) {
    const Diagnostics diagnostics;
    code_ = apply(object, edit_);
    reason_ = code_ == VARN_OK ? "" : diagnostics.reason(code_);
  }

  void editField() {
    const std::size_t end = begin_ + core_.size();
    applyTo(header_);
    if (edit_.kind == Edit::Kind::kParam) {
      const bool commas = header_.getHeaderType() == WY_SIP_HEADER_TYPE_AUTH;
      spliceParam(end, value_.size(), commas ? ',' : ';');
    } else {
      splice_ = {begin_, core_.size(), (value_.empty() ? " " : "") + edit_.value};
    }
  }

  // The sent-by is the last word of a Via, unless there are blanks around its colon.
  void editSentBy() {
    const std::size_t start = core_.find_last_of(" \t") + 1;
    const std::string_view before = trimmed(std::string_view{core_}.substr(0, start));
    SipAddress address(toSipString("sip:" + core_.substr(start)));
    code_ = address.GetLastErrorCode();
    if (code_ != VARN_OK || before.empty() || before.back() == ':') {
      return refuse("the sent-by is no HOST[:PORT]");
    }
    if (edit_.kind != Edit::Kind::kSet || (edit_.name != "host" && edit_.name != "port")) {
      return refuse("the sent-by of a Via has a host and a port");
    }
    applyTo(address);
    splice_ = {begin_ + start, core_.size() - start, toStdString(address.getURI()).substr(4)};
  }

  bool isTel() const {
    const Diagnostics ignored;
    return TelAddress(toSipString(core_)).GetLastErrorCode() == VARN_OK;
  }

  void editTel() {
    if (!hasPiece(telPieceNames())) {
      return refuse("a tel address has no " + edit_.name);
    }
    TelAddress tel(toSipString(core_));
    applyTo(tel);
    splice_ = {begin_, core_.size(), toStdString(tel.toString())};
  }

  void editSip() {
    SipAddress address(toSipString(core_));
    code_ = address.GetLastErrorCode();
    if (code_ != VARN_OK) {
      return refuseOld(core_, placeInAddress(core_));
    }
    if (!hasPiece(addressPieceNames())) {
      return refuse("a SIP address has no " + edit_.name);
    }
    const std::string before = uriWithoutPort(address);
    applyTo(address);
    if (code_ == VARN_OK) {
      spliceAddress(before, address);
    }
    if (code_ == VARN_OK) {
      const SipAddress again(toSipString(edited(core_, begin_)));
      if (!haveSamePieces(address, again) ||
          (edit_.kind == Edit::Kind::kParam && !hasParameter(again, edit_))) {
        refuse("the address would then read differently");
      }
    }
  }

  bool hasPiece(const std::vector<std::string>& names) const {
    return edit_.kind != Edit::Kind::kSet ||
           std::find(names.begin(), names.end(), edit_.name) != names.end();
  }

  // Takes what the URI was before, without its port. It begins the text or its bracket.
  void spliceAddress(const std::string& before, SipAddress& address) {
    const std::size_t open = core_.rfind('<');
    const std::size_t start = open == std::string::npos ? 0 : open + 1;
    const std::size_t host = start + before.size();
    if (core_.compare(start, before.size(), before) != 0) {
      return refuse("the value has several addresses");
    }
    const bool port = core_.compare(host, 1, ":") == 0;
    const std::size_t end =
        port ? std::min(core_.find_first_not_of(kDigits, host + 1), core_.size()) : host;
    if (edit_.kind == Edit::Kind::kParam) {
      const std::size_t last = std::min(core_.find_first_of("?>", end), core_.size());
      spliceParam(begin_ + end, begin_ + last, ';');
    } else if (edit_.name != "displayName") {
      splice_ = {begin_ + start, end - start, toStdString(address.getURI())};
    } else if (open != std::string::npos) {
      splice_ = {begin_, open, edit_.value.empty() ? "" : edit_.value + ' '};
    } else if (!edit_.value.empty()) {
      splice_ = {begin_, core_.size(), edit_.value + " <" + core_ + '>'};
    }
    // Without a bracket these bytes would be those of the field (RFC 3261, 20).
    std::string text = edited(core_, begin_);
    if (open == std::string::npos && edit_.name != "displayName" &&
        text.find_first_of(",;?") != std::string::npos) {
      splice_ = {begin_, core_.size(), '<' + std::move(text) + '>'};
    }
  }

  // Replaces a parameter among those in value_[begin, end), or adds it as the last one.
  void spliceParam(std::size_t begin, std::size_t end, char separator) {
    const std::string text = edit_.name + (edit_.value.empty() ? "" : "=") + edit_.value;
    const std::string_view params = std::string_view{value_}.substr(begin, end - begin);
    for (const std::string_view piece : splitList(params, separator)) {
      const std::string_view param = trimmed(piece);
      if (equalIgnoringCase(trimmed(param.substr(0, param.find('='))), edit_.name)) {
        splice_ = {static_cast<std::size_t>(param.data() - value_.data()), param.size(), text};
        return;
      }
    }
    const std::size_t last = begin + params.find_last_not_of(" \t") + 1;
    const char* const before = separator == ';' ? ";" : last == begin ? " " : ", ";
    splice_ = {last, 0, before + text};
  }

  // Returns a part of the value, which begins at an offset, with the new bytes.
  std::string edited(std::string part, std::size_t offset) const {
    return part.replace(splice_.offset - offset, splice_.length, splice_.text);
  }
  std::string edited() const { return edited(value_, 0); }

  // Returns whether the complete new value is what the edit asks for: one value, not a list, with
  // the same parameters or the new one.
  bool readsAsEdited() const {
    const Diagnostics ignored;
    const std::string value = edited();
    const SipHeader again(toSipString(name_), toSipString(value));
    const FieldKind* kind = findField(name_);
    if (again.GetLastErrorCode() != VARN_OK ||
        (kind != nullptr && kind->list && splitList(value).size() != 1)) {
      return false;
    }
    const bool ofField = part_ == EditedPart::kField && edit_.kind == Edit::Kind::kParam;
    return ofField ? view(again.getValue()) == core_ && hasParameter(again, edit_)
                   : view(again.getValue()) == trimmed(edited(core_, begin_));
  }

  Diagnostics diagnostics_;
  const Edit& edit_;
  EditedPart part_;
  const std::string& name_;
  const std::string& value_;
  SipHeader header_;
  std::size_t begin_;  // of what is no parameter
  std::string core_;   // what is no parameter
  VARN_EXCEPTION_CODES code_;
  Splice splice_ = {0, 0, ""};
  std::string reason_;  // the tool's own; "" where the library has one
  std::string raw_;     // what was refused before the edit
  std::optional<Place> place_;
};

}  // namespace

std::optional<Refusal> editValue(const std::string& name, std::string& value, EditedPart part,
                                 const Edit& edit) {
  const std::string plain = withoutFolds(value);
  const ValueEditor editor(name, plain, part, edit);
  std::optional<Refusal> refusal = editor.refusal();
  if (!refusal) {
    const Splice& splice = editor.splice();
    value.replace(splice.offset, splice.length, splice.text);
  }
  return refusal;
}

std::optional<Refusal> refusalOfField(const std::string& name, const std::string& value) {
  const Diagnostics diagnostics;
  const SipHeader header(toSipString(name), toSipString(value));
  const VARN_EXCEPTION_CODES code = header.GetLastErrorCode();
  if (code == VARN_OK || !limitOf(name, value).empty()) {
    return std::nullopt;
  }
  const std::string raw = name + ": " + value;
  const Place place = placeInHeader(raw);
  return Refusal{diagnostics.reason(code, &place), raw, place};
}

// paramNameIndex.h - finds duplicate parameter names while a list is parsed.
//
// An index exists for the length of one parse. It refers to the names in place: in the text or in a
// node. The first names are in an array and are compared one by one. When it is full or a name
// is long, all names move to a crit-bit tree over their bytes, ASCII letter case folded. A look-up
// in the tree costs time in proportion to the length of the name, so no choice of names makes a
// parse slow.
//
// A branch tests one bit of the name. The names under it agree in all bits before that one:
//
//     entry i = name i, and the branch that was added with it (entry 0 has none)
//
//     branch: bit b = 0 --> child[0]      child < 0: a leaf, the name of entry ~child
//             bit b = 1 --> child[1]      child >= 0: the branch of that entry, at a later bit
#ifndef SIPUTILITY_PARAMS_PARAM_NAME_INDEX_H
#define SIPUTILITY_PARAMS_PARAM_NAME_INDEX_H

#include <cstdint>
#include <string_view>

#include "base/equality.h"
#include "base/recorded.h"
#include "wySipParam.h"

namespace siputility {

class ParamNameIndex {
 public:
  // Adds the names of a chain; null is an empty one.
  explicit ParamNameIndex(const SipParam* chain)
      : count_(0), complete_(true), capacity_(0), root_(0) {
    for (; chain != nullptr; chain = chain->next()) {
      add(view(chain->getName()));
    }
  }
  ParamNameIndex(const ParamNameIndex&) = delete;
  ParamNameIndex& operator=(const ParamNameIndex&) = delete;

  // Returns whether the index knows all names. When it runs out of memory for the tree, it forgets
  // them all, and its user looks names up in the list.
  bool isComplete() const { return complete_; }

  // Returns whether the index knows this name, letter case ignored; no name is empty.
  bool contains(std::string_view name) const {
    if (name.empty()) {
      return false;
    }
    return entries_ == nullptr ? isInArray(name) : isInTree(name);
  }

  // Adds a name. Its bytes must outlive the index.
  void add(std::string_view name) {
    if (entries_ == nullptr && count_ < kMaxInArray && name.size() <= kMaxNameInArray &&
        complete_) {
      array_[count_++] = {name.data(), name.size()};
    } else {
      addToTree(name);
    }
  }

 private:
  struct Name {  // a std::string_view would initialise all of array_ at each parse
    std::string_view text() const { return {bytes, size}; }

    const char* bytes;
    std::size_t size;
  };
  struct Entry {
    Name name;
    std::uint64_t bit;
    std::int32_t child[2];
  };

  static constexpr std::int32_t kMaxInArray = 16;  // for fewer and short names a tree costs more
  static constexpr std::size_t kMaxNameInArray = 64;

  bool isInArray(std::string_view name) const {
    for (std::int32_t i = 0; i < count_; ++i) {
      if (equalIgnoringCase(array_[i].text(), name)) {
        return true;
      }
    }
    return false;
  }

  bool isInTree(std::string_view name) const;
  void addToTree(std::string_view name);
  bool growTree();
  void insert(std::string_view name);
  void link(std::int32_t entry, std::uint64_t bit);
  bool makeRoom();
  std::string_view nearest(std::string_view name) const;
  Entry& at(std::int32_t entry) const { return entries_[static_cast<std::size_t>(entry)]; }

  std::int32_t count_;
  bool complete_;
  RecordedArray<Entry> entries_;  // the tree; null while there is none
  std::int32_t capacity_;         // of entries_
  std::int32_t root_;             // as a child of a branch
  Name array_[kMaxInArray];       // without a tree, the first count_ of them are the names
};

}  // namespace siputility

using siputility::ParamNameIndex;

#endif  // SIPUTILITY_PARAMS_PARAM_NAME_INDEX_H

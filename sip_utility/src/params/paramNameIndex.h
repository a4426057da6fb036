// paramNameIndex.h - finds duplicate parameter names while a list is parsed.
//
// Lives as long as one parse and shows the names where they stand: in the text or in a node. The
// first names are looked up one by one; from then on they stand in a crit-bit tree over their
// bytes, ASCII letter case folded, so that the look-ups of a whole text cost time in proportion
// to its length however its names were chosen:
//
//     entry i = name i, and the branch that came with it
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
  // Takes in the names of a chain, null for none.
  explicit ParamNameIndex(const SipParam* chain)
      : count_(0), complete_(true), capacity_(0), root_(0) {
    for (; chain != nullptr; chain = chain->next()) {
      add(view(chain->getName()));
    }
  }
  ParamNameIndex(const ParamNameIndex&) = delete;
  ParamNameIndex& operator=(const ParamNameIndex&) = delete;

  // Returns whether the index knows all names. It forgets them where there is no memory for the
  // tree.
  bool isComplete() const { return complete_; }

  // Returns whether the index knows this name, letter case ignored; no name is empty.
  bool contains(std::string_view name) const {
    if (name.empty()) {
      return false;
    }
    return entries_ == nullptr ? isInRow(name) : isOnTree(name);
  }

  // Takes in a name, which the list has just got and whose bytes outlive the index.
  void add(std::string_view name) {
    if (entries_ == nullptr && count_ < kLookedUpInRow && complete_) {
      row_[count_++] = {name.data(), name.size()};
    } else {
      addToTree(name);
    }
  }

 private:
  struct Name {
    std::string_view text() const { return {bytes, size}; }

    const char* bytes;
    std::size_t size;
  };
  struct Entry {
    Name name;
    std::uint64_t bit;
    std::int32_t child[2];
  };

  static constexpr std::int32_t kLookedUpInRow = 16;  // a tree for fewer would cost more

  bool isInRow(std::string_view name) const {
    for (std::int32_t i = 0; i < count_; ++i) {
      if (equalIgnoringCase(row_[i].text(), name)) {
        return true;
      }
    }
    return false;
  }

  bool isOnTree(std::string_view name) const;
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
  std::int32_t capacity_;
  std::int32_t root_;
  Name row_[kLookedUpInRow];  // the first count_ of them are names, while there is no tree
};

}  // namespace siputility

using siputility::ParamNameIndex;

#endif  // SIPUTILITY_PARAMS_PARAM_NAME_INDEX_H

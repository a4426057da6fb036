// paramNameIndex.h - finds duplicate parameter names while a list is parsed.
//
// Lives as long as one parse. The first names are looked up on the list itself; from then on
// they stand in a crit-bit tree over their bytes, ASCII letter case folded, so that the look-ups
// of a whole text cost time in proportion to its length however its names were chosen:
//
//     entry i = parameter i, and the branch that came with it
//
//     branch: bit b = 0 --> child[0]      child < 0: a leaf, the parameter of entry ~child
//             bit b = 1 --> child[1]      child >= 0: the branch of that entry, at a later bit
//
// Without memory for the tree the list itself is asked, only more slowly.
#ifndef SIPUTILITY_INTERNAL_PARAM_NAME_INDEX_H
#define SIPUTILITY_INTERNAL_PARAM_NAME_INDEX_H

#include <cstdint>

#include "wySipParam.h"

class ParamNameIndex {
 public:
  // Serves one list, which must outlive the index.
  explicit ParamNameIndex(const SipParamList& list);
  ~ParamNameIndex();
  ParamNameIndex(const ParamNameIndex&) = delete;
  ParamNameIndex& operator=(const ParamNameIndex&) = delete;

  // Returns whether the list has a parameter of this name, letter case ignored.
  bool contains(const SipString& name) const;

  // Takes in the first parameter of the chain, which has just got its name.
  void add(const SipParam& param);

 private:
  struct Entry {
    const SipParam* param;
    std::uint64_t bit;
    std::int32_t child[2];
  };

  bool insert(const SipParam& param);
  void link(std::int32_t entry, std::uint64_t bit);
  bool makeRoom();
  void releaseTree();
  const SipString& nearest(const SipString& name) const;

  const SipParamList& list_;
  unsigned int added_;
  Entry* entries_;
  std::int32_t count_;
  std::int32_t capacity_;
  std::int32_t root_;
};

#endif  // SIPUTILITY_INTERNAL_PARAM_NAME_INDEX_H

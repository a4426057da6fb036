// paramNameIndex.cpp - finds duplicate parameter names while a list is parsed.
#include "paramNameIndex.h"

#include <algorithm>
#include <new>

#include "charClass.h"
#include "equality.h"
#include "log.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipParam";

constexpr unsigned int kLookedUpOnList = 16;  // names; a tree for fewer would cost more
constexpr std::int32_t kFirstCapacity = 64;
constexpr std::uint64_t kBitsOfSymbol = 16;

// Returns the byte at the index, folded and counted from 1; 0 behind the end of the name.
unsigned int symbolAt(const SipString& name, std::uint64_t index) {
  return index < name.length() ? static_cast<unsigned int>(foldCase(name.c_str()[index])) + 1 : 0;
}

unsigned int bitAt(const SipString& name, std::uint64_t bit) {
  const std::uint64_t shift = kBitsOfSymbol - 1 - bit % kBitsOfSymbol;
  return (symbolAt(name, bit / kBitsOfSymbol) >> shift) & 1U;
}

// Returns the first bit in which two different names differ.
std::uint64_t firstDifference(const SipString& a, const SipString& b) {
  std::uint64_t index = 0;
  while (symbolAt(a, index) == symbolAt(b, index)) {
    ++index;
  }
  std::uint64_t bit = index * kBitsOfSymbol;
  while (bitAt(a, bit) == bitAt(b, bit)) {
    ++bit;
  }
  return bit;
}

}  // namespace

ParamNameIndex::ParamNameIndex(const SipParamList& list)
    : list_(list), added_(0), entries_(nullptr), count_(0), capacity_(0), root_(0) {}

ParamNameIndex::~ParamNameIndex() { releaseTree(); }

bool ParamNameIndex::contains(const SipString& name) const {
  if (count_ == 0) {
    return list_.find(name) != nullptr;
  }
  return equalIgnoringCase(nearest(name), view(name));
}

void ParamNameIndex::add(const SipParam& param) {
  ++added_;
  if (added_ < kLookedUpOnList) {
    return;
  }
  if (added_ == kLookedUpOnList) {
    for (const SipParam* each = &param; each != nullptr && insert(*each); each = each->next()) {
    }
  } else if (count_ != 0) {
    insert(param);
  }
}

// Returns false when there is no memory; the tree is then gone for good.
bool ParamNameIndex::insert(const SipParam& param) {
  if (count_ == capacity_ && !makeRoom()) {
    releaseTree();
    return false;
  }
  const SipString& name = param.getName();
  const std::int32_t entry = count_;
  entries_[entry].param = &param;
  if (entry == 0) {
    root_ = ~entry;
    count_ = 1;
  } else if (const SipString& other = nearest(name); !equalIgnoringCase(other, view(name))) {
    link(entry, firstDifference(name, other));
    ++count_;
  }
  return true;
}

// Hangs the entry's branch in above the first branch at a later bit, with its leaf on one side.
void ParamNameIndex::link(std::int32_t entry, std::uint64_t bit) {
  const SipString& name = entries_[entry].param->getName();
  std::int32_t* place = &root_;
  while (*place >= 0 && entries_[*place].bit < bit) {
    place = &entries_[*place].child[bitAt(name, entries_[*place].bit)];
  }
  Entry& branch = entries_[entry];
  const unsigned int side = bitAt(name, bit);
  branch.bit = bit;
  branch.child[side] = ~entry;
  branch.child[1 - side] = *place;
  *place = entry;
}

bool ParamNameIndex::makeRoom() {
  const std::int32_t capacity = capacity_ == 0 ? kFirstCapacity : capacity_ * 2;
  auto* entries = new (std::nothrow) Entry[static_cast<std::size_t>(capacity)];
  if (entries == nullptr) {
    return false;
  }
  recordBlock(kSourceFile, entries, sizeof(Entry) * static_cast<std::size_t>(capacity));
  std::copy_n(entries_, count_, entries);
  const std::int32_t count = count_;
  releaseTree();
  entries_ = entries;
  count_ = count;
  capacity_ = capacity;
  return true;
}

void ParamNameIndex::releaseTree() {
  if (entries_ != nullptr) {
    forgetBlock(entries_);
    delete[] entries_;
  }
  entries_ = nullptr;
  count_ = 0;
  capacity_ = 0;
}

// Returns the one name on the tree that can be equal to the given one.
const SipString& ParamNameIndex::nearest(const SipString& name) const {
  std::int32_t place = root_;
  while (place >= 0) {
    place = entries_[place].child[bitAt(name, entries_[place].bit)];
  }
  return entries_[~place].param->getName();
}

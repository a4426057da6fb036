// paramNameIndex.cpp - finds duplicate parameter names while a list is parsed.
#include "params/paramNameIndex.h"

#include <algorithm>
#include <utility>

#include "base/charClass.h"
#include "base/equality.h"

namespace {

constexpr const char* kSourceFile = "sip_utility/src/wySipParam";

constexpr std::int32_t kFirstCapacity = 64;
// Nine bits would do for 257 symbols; sixteen make the divisions shifts.
constexpr std::uint64_t kBitsOfSymbol = 16;

// Returns the folded byte at the index plus 1; 0 past the end of the name. So a name differs also
// from the longer names that begin with it, zero bytes included.
unsigned int symbolAt(std::string_view name, std::uint64_t index) {
  return index < name.size()
             ? static_cast<unsigned int>(foldCase(name[static_cast<std::size_t>(index)])) + 1
             : 0;
}

// Returns a bit of the name; bit 0 is the highest one of the first symbol.
unsigned int bitAt(std::string_view name, std::uint64_t bit) {
  const std::uint64_t shift = kBitsOfSymbol - 1 - bit % kBitsOfSymbol;
  return (symbolAt(name, bit / kBitsOfSymbol) >> shift) & 1U;
}

// Returns the first bit in which two names differ.
// Requires: names that differ in more than letter case.
std::uint64_t firstDifference(std::string_view a, std::string_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  std::size_t index = 0;
  while (index < common && (a[index] == b[index] || foldCase(a[index]) == foldCase(b[index]))) {
    ++index;
  }
  std::uint64_t bit = index * kBitsOfSymbol;
  while (bitAt(a, bit) == bitAt(b, bit)) {
    ++bit;
  }
  return bit;
}

}  // namespace

bool ParamNameIndex::isInTree(std::string_view name) const {
  return equalIgnoringCase(nearest(name), name);
}

void ParamNameIndex::addToTree(std::string_view name) {
  if (!complete_) {
    return;
  }
  if (growTree()) {
    insert(name);
  } else {
    entries_.reset();
    complete_ = false;
  }
}

// Makes room for one more name. The first time, the names of the array move to the tree. Returns
// false if out of memory.
bool ParamNameIndex::growTree() {
  if (count_ < capacity_) {
    return true;
  }
  const std::int32_t inArray = entries_ == nullptr ? std::exchange(count_, 0) : 0;
  if (!makeRoom()) {
    return false;
  }
  for (std::int32_t i = 0; i < inArray; ++i) {
    insert(array_[i].text());
  }
  return true;
}

// Adds a name for which the tree has room; one that it has already is left out.
void ParamNameIndex::insert(std::string_view name) {
  const std::int32_t entry = count_;
  at(entry).name = {name.data(), name.size()};
  if (entry == 0) {
    root_ = ~entry;
    count_ = 1;
  } else if (const std::string_view other = nearest(name); !equalIgnoringCase(other, name)) {
    link(entry, firstDifference(name, other));
    ++count_;
  }
}

// Puts the branch of an entry on the path of its name, before the first branch at a later bit. The
// leaf of the entry is on one side of it, what was there before on the other.
void ParamNameIndex::link(std::int32_t entry, std::uint64_t bit) {
  const std::string_view name = at(entry).name.text();
  std::int32_t* place = &root_;
  while (*place >= 0 && at(*place).bit < bit) {
    place = &at(*place).child[bitAt(name, at(*place).bit)];
  }
  Entry& branch = at(entry);
  const unsigned int side = bitAt(name, bit);
  branch.bit = bit;
  branch.child[side] = ~entry;
  branch.child[1 - side] = *place;
  *place = entry;
}

bool ParamNameIndex::makeRoom() {
  const std::int32_t capacity = capacity_ == 0 ? kFirstCapacity : capacity_ * 2;
  RecordedArray<Entry> entries(
      newRecordedArray<Entry>(kSourceFile, static_cast<std::size_t>(capacity)));
  if (entries == nullptr) {
    return false;
  }
  std::copy_n(entries_.get(), count_, entries.get());
  entries_ = std::move(entries);
  capacity_ = capacity;
  return true;
}

// Returns the leaf that the bits of a name lead to. If the tree has the name, this is it: an equal
// name takes the same side at each branch.
std::string_view ParamNameIndex::nearest(std::string_view name) const {
  std::int32_t place = root_;
  while (place >= 0) {
    place = at(place).child[bitAt(name, at(place).bit)];
  }
  return at(~place).name.text();
}

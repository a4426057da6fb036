// recorded.h - objects and arrays that are in the memory log from allocation to deletion.
#ifndef SIPUTILITY_BASE_RECORDED_H
#define SIPUTILITY_BASE_RECORDED_H

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

#include "base/allocationWatch.h"
#include "base/log.h"

// Returns an object made from the arguments, in the memory log under the place; null if out of
// memory.
template <typename Object, typename... Arguments>
Object* newRecorded(Source source, Arguments&&... arguments) {
  auto* object = new (std::nothrow) Object(std::forward<Arguments>(arguments)...);
  if (object == nullptr) {
    AllocationWatch::noteFailure();
    return object;
  }
  recordBlock(source.sourceFile, object, sizeof(Object), source.line);
  return object;
}

// Removes an object from the memory log and deletes it; does nothing for null.
template <typename Object>
void deleteRecorded(Object* object) {
  if (object != nullptr) {
    forgetBlock(object);
    delete object;
  }
}

struct RecordedDelete {
  template <typename Object>
  void operator()(Object* object) const {
    deleteRecorded(object);
  }
};

// Owns a recorded object, or nothing.
template <typename Object>
using Recorded = std::unique_ptr<Object, RecordedDelete>;

// Returns an array of count elements, in the memory log under the place; null if out of memory.
// Elements of built-in types are uninitialised. An AllocationWatch does not see the failure: some
// callers can do without the array.
template <typename Element>
Element* newRecordedArray(Source source, std::size_t count) {
  auto* array = new (std::nothrow) Element[count];
  if (array != nullptr) {
    // NOLINTNEXTLINE(bugprone-sizeof-expression): an element may be a pointer
    recordBlock(source.sourceFile, array, count * sizeof(Element), source.line);
  }
  return array;
}

// Removes an array from the memory log and deletes it; does nothing for null.
template <typename Element>
void deleteRecordedArray(Element* array) {
  if (array != nullptr) {
    forgetBlock(array);
    delete[] array;
  }
}

struct RecordedArrayDelete {
  template <typename Element>
  void operator()(Element* array) const {
    deleteRecordedArray(array);
  }
};

// Owns a recorded array, or nothing.
template <typename Element>
using RecordedArray = std::unique_ptr<Element[], RecordedArrayDelete>;

#endif  // SIPUTILITY_BASE_RECORDED_H

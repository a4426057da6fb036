// checkedMath.h - sums, differences and products of 32-bit lengths, positions and offsets.
//
// A sum or product that wraps or a difference below zero ends the process (failStopArithmetic).
#ifndef SIPUTILITY_BASE_CHECKED_MATH_H
#define SIPUTILITY_BASE_CHECKED_MATH_H

#include <cstddef>

#include "base/failStop.h"

// Returns a + b.
inline unsigned int checkedSum(unsigned int a, unsigned int b) {
  unsigned int sum = 0;
  if (__builtin_add_overflow(a, b, &sum)) {
    failStopArithmetic();
  }
  return sum;
}

// Returns a + b + c.
inline unsigned int checkedSum(unsigned int a, unsigned int b, unsigned int c) {
  return checkedSum(checkedSum(a, b), c);
}

// Returns a - b.
inline unsigned int checkedDifference(unsigned int a, unsigned int b) {
  if (b > a) {
    failStopArithmetic();
  }
  return a - b;
}

// Returns a * b.
inline unsigned int checkedProduct(unsigned int a, unsigned int b) {
  unsigned int product = 0;
  if (__builtin_mul_overflow(a, b, &product)) {
    failStopArithmetic();
  }
  return product;
}

// Returns a byte count of the host as a 32-bit length.
inline unsigned int checkedLength(std::size_t size) {
  const auto length = static_cast<unsigned int>(size);
  if (length != size) {
    failStopArithmetic();
  }
  return length;
}

#endif  // SIPUTILITY_BASE_CHECKED_MATH_H

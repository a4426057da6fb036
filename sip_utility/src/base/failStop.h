// failStop.h - the two ways in which the library ends the process.
//
// A correct caller never reaches either one. To go on would corrupt memory.
#ifndef SIPUTILITY_BASE_FAIL_STOP_H
#define SIPUTILITY_BASE_FAIL_STOP_H

// Ends the process at once and logs nothing. For a 32-bit sum or product that wraps and for a
// difference below zero.
[[noreturn]] void failStopArithmetic();

// Logs "wyDplMemscpy - dst buffer size less than source size" and ends the process with status 0.
// For a copy that does not fit its destination.
[[noreturn]] void failStopCopy(const char* sourceFile, int line = __builtin_LINE());

#endif  // SIPUTILITY_BASE_FAIL_STOP_H

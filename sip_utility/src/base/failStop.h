// failStop.h - the two ways in which the library ends the process.
//
// Both stand for states that no correct caller reaches; carrying on would corrupt memory.
#ifndef SIPUTILITY_BASE_FAIL_STOP_H
#define SIPUTILITY_BASE_FAIL_STOP_H

// Ends the process at once, without a log line: a 32-bit sum wrapped or a difference went below
// zero.
[[noreturn]] void failStopArithmetic();

// Logs "wyDplMemscpy - dst buffer size less than source size" and ends the process with status
// 0: a copy would not fit its destination.
[[noreturn]] void failStopCopy(const char* sourceFile, int line = __builtin_LINE());

#endif  // SIPUTILITY_BASE_FAIL_STOP_H

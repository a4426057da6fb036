// exitGuard.h - keeps a fail-stop of the library from looking like a test that passed.
//
// The library's fail-stop on impossible copies ends the process with status 0. Every test and
// fuzz program links exitGuard.cpp, whose _exit prints a line and aborts instead.
#ifndef TESTS_SUPPORT_EXIT_GUARD_H
#define TESTS_SUPPORT_EXIT_GUARD_H

// If a death test sets it in its process, _exit ends that process as it would without the guard.
extern bool exitAllowed;

#endif  // TESTS_SUPPORT_EXIT_GUARD_H

// registry.h - the singletons of one thread, made by imsdpl.c and filled by imsvarn.cpp.
#ifndef EXAMPLE_REGISTRY_H
#define EXAMPLE_REGISTRY_H

#include <limits.h>

struct Registry {
  void* objects[UCHAR_MAX + 1];        // by the id as an unsigned byte; null for none
  void (*deleteObject)(void* object);  // C cannot delete an object of C++
};

#endif  // EXAMPLE_REGISTRY_H

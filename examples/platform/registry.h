// registry.h - the singletons of one thread, made by imsdpl.cpp and filled by imsvarn.cpp.
#ifndef EXAMPLE_REGISTRY_H
#define EXAMPLE_REGISTRY_H

#include <climits>

#include "imsvarn.h"

struct Registry : Globals {
  WySingletonBaseClass* objects[UCHAR_MAX + 1] = {};  // by the id as an unsigned byte
};

#endif  // EXAMPLE_REGISTRY_H

// growthBench.cpp - one operation on more and more text.
#include "harness.h"

void addGrowthCases(Cases& /*cases*/) {}

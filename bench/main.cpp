// main.cpp - siputility_bench: takes Google Benchmark's arguments.
#include "harness.h"

int main(int argc, char** argv) {
  addFloorCases();
  addStringCases();
  addMatchCases();
  addAddressCases();
  addTelCases();
  addHeaderCases();
  addBodyCases();
  addUtilsCases();
  addCommonCases();
  addGrowthCases();
  benchmark::AddCustomContext("compiler", BENCH_COMPILER);
  benchmark::AddCustomContext("flags", BENCH_FLAGS);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 2;
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

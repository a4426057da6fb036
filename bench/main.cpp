// main.cpp - siputility_bench: Google Benchmark's arguments, and before them
//
//   --growth            the cases of growing inputs in place of the others
//   --once=CASE TIMES   runs one case TIMES times and nothing else
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "harness.h"

int main(int argc, char** argv) {
  const bool growth = argc > 1 && std::strcmp(argv[1], "--growth") == 0;
  if (growth) {
    --argc;
    std::move(argv + 2, argv + argc + 1, argv + 1);
  }
  Cases cases;
  addFloorCases(cases);
  if (growth) {
    addGrowthCases(cases);
  } else {
    addStringCases(cases);
    addMatchCases(cases);
    addAddressCases(cases);
    addTelCases(cases);
    addHeaderCases(cases);
    addBodyCases(cases);
    addUtilsCases(cases);
    addCommonCases(cases);
  }
  if (!cases.check()) {
    return 1;
  }
  const char* const kOnce = "--once=";
  if (argc == 3 && std::strncmp(argv[1], kOnce, std::strlen(kOnce)) == 0) {
    const char* const name = argv[1] + std::strlen(kOnce);
    if (!cases.runOnce(name, std::strtoul(argv[2], nullptr, 10))) {
      static_cast<void>(std::fprintf(stderr, "siputility_bench: no case %s\n", name));
      return 2;
    }
    return 0;
  }
  benchmark::AddCustomContext("compiler", BENCH_COMPILER);
  benchmark::AddCustomContext("flags", BENCH_FLAGS);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 2;
  }
  cases.registerAll();
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

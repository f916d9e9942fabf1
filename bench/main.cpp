// product_bench FOLDER...: times of the product beside the least that the same work can take.
#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <exception>

#include "benchmarks.h"

int wmain(int argc, wchar_t** argv) {
  using namespace postrove::bench;
  if (argc < 2 || FAILED(CoInitialize(nullptr))) return 2;
  const Folders folders(argv + 1, argv + argc);
  int result = 0;
  try {
    MeasureTyping();
    MeasureProjectList(folders);
    MeasureClick(folders);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "product_bench: %s\n", error.what());
    result = 1;
  }
  CoUninitialize();
  return result;
}

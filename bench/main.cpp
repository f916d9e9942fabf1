// product_bench PRODUCT.DLL BARE.DLL FOLDER FOLDER...: times of the product beside the least that
// the same work can take. The first folder is empty, the others hold databases.
#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <exception>

#include "benchmarks.h"

int wmain(int argc, wchar_t** argv) {
  using namespace postrove::bench;
  if (argc < 5 || FAILED(CoInitialize(nullptr))) return 2;
  const AddIns addIns{argv[1], argv[2]};
  const std::wstring empty = argv[3];
  const Folders folders(argv + 4, argv + argc);
  const Folders offices(folders.begin(), folders.end() - 1);  // no office has a million projects
  int result = 0;
  try {
    MeasureStart(addIns);
    MeasureSlowShare();
    MeasureWindow(addIns);
    MeasureClick(offices);
    MeasureTyping();
    MeasureFiling(empty);
    MeasureProjectList(folders);
    MeasureSettings(empty);
    MeasureMemory(offices.back());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "product_bench: %s\n", error.what());
    result = 1;
  }
  CoUninitialize();
  return result;
}

#include "fuzz_input.h"
#include "support/AnyOrder.h"

// A day at the desk whose decisions are the input's bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  postrove::FuzzInput input(data, size);
  postrove::testing::AnyOrder desk([&input](std::size_t count) { return input.Byte() % count; });
  desk.Run(static_cast<int>(size / 4));
  postrove::Require(!::testing::Test::HasFailure(), "see above");
  return 0;
}

#include <gtest/gtest.h>

#include "writer_process.h"

int main(int argc, char** argv) {
  const int writer = postrove::RunAsWriter();
  if (writer >= 0) return writer;
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}

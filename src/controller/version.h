#pragma once

namespace postrove {

// Version of the add-in, as its version resource states it and the save dialog shows it.
struct ProductVersion {
  int major = 0;
  int minor = 0;
  int revision = 0;
};

}  // namespace postrove

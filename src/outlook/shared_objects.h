#pragma once

#include <memory>

namespace postrove {

class ButtonOwner;
class clsDatabase;
class clsSharedUtil;
class IclsOutlook;

// The shared objects, one set per process. The product's only set is modMain's; each one is made by
// Main in this order and emptied by the shut-down paths, several of which can run in one shut-down,
// so every user first tests whether the object is still set. Whoever calls into one of them across
// host code holds a copy of the pointer meanwhile.
struct SharedObjects {
  std::shared_ptr<clsDatabase> gDatabase;
  std::shared_ptr<clsSharedUtil> gUtility;
  std::shared_ptr<ButtonOwner> gController;
  std::shared_ptr<IclsOutlook> gOutlook;
};

}  // namespace postrove

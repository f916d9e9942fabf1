#pragma once

#include "outlook/shared_objects.h"

// The standard module: the shared objects and the start-up procedure that makes them.
// Thread: Outlook's user-interface thread only.
namespace postrove::modMain {

// The process's one set. It is never destroyed by the end of the process: by then Outlook's own
// objects are gone, and letting go of a reference would call into them.
SharedObjects& Shared();

// Makes the shared objects that are missing, in the order gDatabase, gUtility, gController,
// gOutlook. It runs before each Connect is made: the first run makes all four; a later one, after
// the user switched the add-in off and on again, those that the disconnection released. What throws
// ends it; what was made before stays.
void Main();

// Lets all four go, the last made first. Only for a module that is about to be unloaded: they must
// hold no host object any more.
void ReleaseAll();

}  // namespace postrove::modMain

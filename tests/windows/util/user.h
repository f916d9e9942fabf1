#pragma once

#include <gtest/gtest.h>

#include "outlook/dialog_user.h"

namespace postrove {

// A user whose step that cannot be done fails the test.
class User : public standin::DialogUser {
 public:
  explicit User(std::function<void()> steps)
      : DialogUser(std::move(steps), [](const char* reason) { ADD_FAILURE() << reason; }) {}
};

}  // namespace postrove

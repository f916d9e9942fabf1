#pragma once

#include <windows.h>

namespace postrove::forms {

// The version of the common controls that the product's own manifest asks for. The host process may
// have asked for another one, or none: every window of ours is made within a Scope.
class VisualStyles {
 public:
  // Reads the manifest, resource 2 of the module. Without one a Scope changes nothing.
  explicit VisualStyles(HINSTANCE module);
  ~VisualStyles();
  VisualStyles(const VisualStyles&) = delete;
  VisualStyles& operator=(const VisualStyles&) = delete;

  class Scope {
   public:
    explicit Scope(const VisualStyles& styles);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    ULONG_PTR cookie_ = 0;
    bool active_;
  };

 private:
  HANDLE context_;
};

}  // namespace postrove::forms

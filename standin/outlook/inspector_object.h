#pragma once

#include <memory>

#include "outlook/dispatch.h"
#include "outlook/inspector.h"

namespace standin {

// A new Inspector object of the inspector.
ComPtr<IDispatch> MakeInspectorObject(const std::shared_ptr<Inspector>& inspector);

}  // namespace standin

#pragma once

#include <memory>

#include "outlook/add_ins.h"
#include "outlook/dispatch.h"

namespace standin {

ComPtr<IDispatch> MakeAddInObject(Session& session, const std::shared_ptr<AddIn>& addIn);

}  // namespace standin

#pragma once

#include <memory>

#include "outlook/add_ins.h"
#include "outlook/dispatch.h"

namespace standin {

// The COMAddIns collection and one COMAddIn, the AddInInst of OnConnection.
ComPtr<IDispatch> MakeAddInsObject(Session& session);
ComPtr<IDispatch> MakeAddInObject(Session& session, const std::shared_ptr<AddIn>& addIn);

}  // namespace standin

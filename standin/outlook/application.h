#pragma once

#include "outlook/dispatch.h"

namespace standin {

class Session;

// New objects of the one application, name space and collection of inspectors.
ComPtr<IDispatch> MakeApplicationObject(Session& session);
ComPtr<IDispatch> MakeNameSpaceObject(Session& session);
ComPtr<IDispatch> MakeInspectorsObject(Session& session);

}  // namespace standin

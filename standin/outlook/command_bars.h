#pragma once

#include <memory>

#include "outlook/command_bar_model.h"
#include "outlook/dispatch.h"

namespace standin {

class Session;

// The CommandBars object of an inspector.
ComPtr<IDispatch> MakeCommandBarsObject(const std::shared_ptr<Inspector>& inspector);

// A control: its default pointer is CommandBarControl; a button is a _CommandBarButton as well.
ComPtr<IDispatch> MakeControlObject(Session& session, const ControlPointer& control);

// The button through its _CommandBarButton pointer, as Click hands it over.
ComPtr<IDispatch> MakeButtonObject(Session& session, const ControlPointer& control);

}  // namespace standin

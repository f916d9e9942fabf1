#pragma once

#include <memory>

#include "forms/kit/form.h"
#include "shared/clsSharedUtil.h"

// What the presenters of the dialogs share. A presenter lives on the stack of whoever shows its
// dialog, so it is there as long as an event can come.
namespace postrove {

// The presenter as its form holds it. It expires with the answer, which is a member of the
// presenter.
template <class Events>
std::shared_ptr<Events> Listening(Events& presenter) {
  return {&presenter, [](Events*) {}};
}

// Runs a handler of a dialog's event: what it throws is reported with its procedure's name. Nothing
// is run when the dialog is gone.
template <class Body>
void Handle(clsSharedUtil& utility, const forms::Form& form, const wchar_t* procedure,
            const Body& body) {
  if (!form.IsUnloaded()) Reporting(utility, L"clsPostrove", procedure, body);
}

}  // namespace postrove

#include "controller/dialog_stack.h"

#include <utility>

namespace postrove {

DialogStack::DialogStack(forms::FormHost& host, std::shared_ptr<forms::Form> saveDialog)
    : host_(host), saveDialog_(std::move(saveDialog)) {}

void DialogStack::ShowSaveDialog() { host_.ShowModal(*saveDialog_); }

void DialogStack::ShowAbove(const std::shared_ptr<forms::Form>& dialog) {
  if (IsOver()) return;
  above_.push_back(dialog);
  {
    const Lowered lowered(*this);
    host_.ShowModal(*dialog);
  }
  std::erase(above_, dialog);
}

void DialogStack::SaveDialogActivated() {
  if (lowered_ == 0) host_.SetTopmost(*saveDialog_, true);
}

void DialogStack::Close() {
  const std::vector<std::shared_ptr<forms::Form>> above = above_;
  for (auto dialog = above.rbegin(); dialog != above.rend(); ++dialog) (*dialog)->Unload();
  saveDialog_->Unload();
}

DialogStack::Lowered::Lowered(DialogStack& dialogs) : dialogs_(dialogs) {
  if (dialogs_.lowered_++ == 0) dialogs_.host_.SetTopmost(*dialogs_.saveDialog_, false);
}

DialogStack::Lowered::~Lowered() {
  if (--dialogs_.lowered_ == 0 && !dialogs_.IsOver()) {
    dialogs_.host_.SetTopmost(*dialogs_.saveDialog_, true);
  }
}

}  // namespace postrove

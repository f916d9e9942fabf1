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
  while (!above_.empty()) {
    const std::shared_ptr<forms::Form> last = std::move(above_.back());
    above_.pop_back();
    last->Unload();
  }
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

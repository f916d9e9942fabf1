#include "outlook/inspector.h"

#include "outlook/inspector_window.h"
#include "outlook/session.h"
#include "outlook/variant.h"
#include "shared/text.h"

namespace standin {

Inspector::Inspector(std::shared_ptr<standin::Item> item, Editor editor)
    : item_(std::move(item)),
      editor_(editor),
      events_(std::make_shared<EventHub>(item_->Owner())),
      bars_(BuiltInBars(item_->Owner(), *this, !item_->Sent())) {
  if (item_->Kind() == ItemKind::kMail) {
    const bool html = item_->Message().IsHtml();
    if (editor_ == Editor::kText && html) item_->MakePlain();
    if (editor_ == Editor::kRichText) item_->MakeRichText();
    if (editor_ == Editor::kHtml && !html) item_->MakeHtml();
  }
  for (const auto& bar : bars_) {
    for (const ControlLook& look : Owner().PermanentControls()[bar->name]) {
      bar->Insert(Owner(), look, bar->controls.size());
    }
  }
}

Inspector::~Inspector() = default;

long Inspector::EditorType() const {
  constexpr long kText = 1, kHtml = 2, kRichText = 3, kWord = 4;
  if (editor_ == Editor::kWord || Owner().Version() >= 12) return kWord;
  if (item_->Kind() != ItemKind::kMail) return kText;
  if (item_->IsRichText()) return kRichText;
  return item_->Message().IsHtml() ? kHtml : kText;
}

bool Inspector::IsWordMail() const {
  return item_->Kind() == ItemKind::kMail && (editor_ == Editor::kWord || Owner().Version() >= 12);
}

std::wstring Inspector::Caption() const {
  static constexpr const wchar_t* kKinds[] = {L"Message", L"Appointment", L"Contact", L"Note"};
  const std::wstring& subject = item_->Message().subject;
  return (subject.empty() ? L"Untitled" : subject) + L" - " +
         kKinds[static_cast<std::size_t>(item_->Kind())];
}

void Inspector::RequireOpen() const {
  if (!IsOpen()) throw HostError{E_FAIL, L"The inspector has been closed."};
}

std::shared_ptr<BarModel> Inspector::Bar(const std::wstring& name) const {
  for (const auto& bar : bars_) {
    if (postrove::text::EqualsIgnoreCase(bar->name, name)) return bar;
  }
  return nullptr;
}

ControlPointer Inspector::FindByTag(const std::wstring& tag) const {
  ControlQuery query;
  query.byTag = true;
  query.tag = tag;
  for (const auto& bar : bars_) {
    if (ControlPointer control = Find(*bar, query)) return control;
  }
  return nullptr;
}

void Inspector::Show() {
  if (window_) return;
  window_ = std::make_unique<InspectorWindow>(*this);
}

void Inspector::Changed() {
  if (window_) window_->Invalidate();
}

void Inspector::Finish() {
  state_ = State::kClosed;
  for (const auto& bar : bars_) {
    for (const ControlPointer& control : bar->controls) control->deleted = true;
    bar->controls.clear();
  }
  window_.reset();
}

}  // namespace standin

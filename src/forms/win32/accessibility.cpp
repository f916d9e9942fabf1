#include "forms/win32/accessibility.h"

#include <iterator>
#include <utility>

namespace postrove::forms {
namespace {

constexpr GUID kServices = {
    0xB5F8350B, 0x0548, 0x48B1, {0xA6, 0xEE, 0x88, 0xBD, 0x00, 0xB4, 0xA5, 0xE7}};
constexpr GUID kServicesInterface = {
    0x6E26E776, 0x04F0, 0x495D, {0x80, 0xE4, 0x33, 0x30, 0x35, 0x2E, 0x31, 0x69}};
constexpr GUID kRole = {
    0xCB905FF2, 0x7BD1, 0x4C05, {0xB3, 0xC8, 0xE6, 0xC2, 0x41, 0x36, 0x4D, 0x70}};
constexpr GUID kDescription = {
    0x4D48DFE4, 0xBD3F, 0x491F, {0xA6, 0x48, 0x49, 0x2D, 0x6F, 0x20, 0xC5, 0x88}};
constexpr auto kClient = static_cast<DWORD>(OBJID_CLIENT);

}  // namespace

Accessibility::Accessibility() {
  CoCreateInstance(kServices, nullptr, CLSCTX_INPROC_SERVER, kServicesInterface,
                   reinterpret_cast<void**>(services_.GetAddressOf()));
}

void Accessibility::BeDialog(HWND window) {
  if (!services_) return;
  VARIANT role = {};
  role.vt = VT_I4;
  role.lVal = ROLE_SYSTEM_DIALOG;
  services_->SetHwndProp(window, kClient, CHILDID_SELF, kRole, role);
  told_.push_back(window);
}

void Accessibility::Describe(HWND window, const std::wstring& text) {
  if (!services_) return;
  services_->SetHwndPropStr(window, kClient, CHILDID_SELF, kDescription, text.c_str());
  NotifyWinEvent(EVENT_OBJECT_DESCRIPTIONCHANGE, window, OBJID_CLIENT, CHILDID_SELF);
  told_.push_back(window);
}

void Accessibility::Forget() {
  constexpr GUID kTold[] = {kRole, kDescription};
  for (const HWND window : std::exchange(told_, {})) {
    services_->ClearHwndProps(window, kClient, CHILDID_SELF, kTold, std::size(kTold));
  }
}

}  // namespace postrove::forms

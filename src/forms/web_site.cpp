#include "forms/web_site.h"

#include "shared/text.h"

namespace postrove::forms {

std::wstring LinkTarget(const std::wstring& caption) {
  for (const wchar_t* const scheme : {L"https://", L"http://"}) {
    if (text::StartsWithIgnoreCase(caption, scheme)) return caption;
  }
  return kWebSite;
}

}  // namespace postrove::forms

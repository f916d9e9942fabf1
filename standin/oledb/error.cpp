#include "oledb/error.h"

#include <oleauto.h>
#include <wrl/client.h>

namespace standin {

using Microsoft::WRL::ComPtr;

void Publish(const ProviderError& error) noexcept {
  ComPtr<ICreateErrorInfo> maker;
  ComPtr<IErrorInfo> info;
  if (FAILED(CreateErrorInfo(&maker)) || FAILED(maker.As(&info))) return;
  maker->SetSource(const_cast<LPOLESTR>(L"Microsoft JET Database Engine"));
  maker->SetDescription(const_cast<LPOLESTR>(error.Text().c_str()));
  SetErrorInfo(0, info.Get());
}

}  // namespace standin

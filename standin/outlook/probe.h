#pragma once

#include <windows.h>

#include <ocidl.h>

#include <functional>
#include <string>
#include <vector>

#include "outlook/host.h"
#include "outlook/variant.h"

// Small COM clients of the stand-in, written against the calling rules only.
namespace standin::probe {

struct Reply {
  HRESULT hr = S_OK;    // of Invoke
  HRESULT code = S_OK;  // what the server meant: its own code when hr is DISP_E_EXCEPTION
  Variant value;

  long Long() const { return value.Get().lVal; }
  bool Bool() const { return value.Get().boolVal != VARIANT_FALSE; }
  std::wstring Text() const { return FromBstr(value.Get().bstrVal); }
  ComPtr<IDispatch> Object() const;  // empty for Nothing
};

template <class... Values>
std::vector<Variant> List(Values&&... values) {
  std::vector<Variant> result;
  (result.push_back(std::forward<Values>(values)), ...);
  return result;
}

// Invoke with arguments in declared order, reversed as the rules want; a put names its value.
Reply Invoke(const ComPtr<IDispatch>& object, DISPID id, WORD flags,
             std::vector<Variant> arguments = {});
// By name; a name that is not known is the reply of GetIDsOfNames.
Reply Get(const ComPtr<IDispatch>& object, const wchar_t* name,
          std::vector<Variant> arguments = {});
Reply Put(const ComPtr<IDispatch>& object, const wchar_t* name, Variant value);
Reply Call(const ComPtr<IDispatch>& object, const wchar_t* name,
           std::vector<Variant> arguments = {});
ComPtr<IDispatch> As(const ComPtr<IDispatch>& object, const GUID& id);

MessageData SampleMessage();  // one recipient, plain text

// Of the active inspector: its mail item, and a button with the tag, added as the fourth control of
// its "Standard" bar.
ComPtr<IDispatch> CurrentItem(const Host& host);
ComPtr<IDispatch> AddButton(const Host& host, const wchar_t* tag);

// Listens to an event interface of an object and writes "LABEL.DISPID" to the log.
class Listener {
 public:
  Listener(const ComPtr<IDispatch>& source, const GUID& id, const wchar_t* label,
           std::vector<std::wstring>& log);
  ~Listener();
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  bool Hears() const { return cookie_ != 0; }  // the object has such events

  // What to run in each event.
  std::function<void(DISPID, const DISPPARAMS&)> during;

 private:
  class Sink;
  ComPtr<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

}  // namespace standin::probe

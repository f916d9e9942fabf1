#pragma once

#include <windows.h>

#include <oledb.h>

namespace standin {

// What a test does to this provider, and what it sees of its use. One for the process, set by the
// exported SetFaultHook; null when there is none. Called on the consumer's thread.
class FaultHook {
 public:
  // A method of the provider begins. A failure is its answer at once, with the error object that
  // the hook leaves on the thread; a success other than S_OK stands in the method's own's place.
  virtual HRESULT Enter(const char* method) = 0;

  // A property of a data source or a command is set.
  virtual void SetProperty(DBPROPID id, const VARIANT& value) = 0;

  // The consumer gets a value of a column, counted from 1. Either may be replaced.
  virtual void Give(DBORDINAL column, VARIANT& value, DBSTATUS& status) = 0;

  // A rowset ends of which rows or accessors were not given back.
  virtual void NotGivenBack() = 0;

 protected:
  ~FaultHook() = default;
};

inline FaultHook* faultHook = nullptr;

}  // namespace standin

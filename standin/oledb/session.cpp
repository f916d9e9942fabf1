#include "oledb/session.h"

#include "oledb/command.h"
#include "oledb/data_source.h"

namespace standin {

Session::Session(ComPtr<DataSource> dataSource, std::shared_ptr<Connection> connection)
    : dataSource_(std::move(dataSource)), connection_(std::move(connection)) {
  dataSource_->SessionOpened();
}

Session::~Session() { dataSource_->SessionClosed(); }

HRESULT Session::GetDataSource(REFIID iid, IUnknown** dataSource) {
  return Entry(IID_IGetDataSource, [&] {
    if (!dataSource) return E_INVALIDARG;
    return dataSource_->QueryInterface(iid, reinterpret_cast<void**>(dataSource));
  });
}

HRESULT Session::CreateCommand(IUnknown* outer, REFIID iid, IUnknown** command) {
  return Entry(IID_IDBCreateCommand, [&]() -> HRESULT {
    if (!command) return E_INVALIDARG;
    *command = nullptr;
    if (outer) return DB_E_NOAGGREGATION;
    return Make<Command>(this)->QueryInterface(iid, reinterpret_cast<void**>(command));
  });
}

}  // namespace standin

#pragma once

#include <memory>

#include "oledb/com_object.h"
#include "oledb/odbc.h"

namespace standin {

class DataSource;

// A session of an initialized data source, which it keeps open.
class Session : public ComObject<IGetDataSource, IDBCreateCommand> {
 public:
  Session(ComPtr<DataSource> dataSource, std::shared_ptr<Connection> connection);
  ~Session() override;

  const std::shared_ptr<Connection>& OpenConnection() const { return connection_; }

  HRESULT STDMETHODCALLTYPE GetDataSource(REFIID iid, IUnknown** dataSource) override;
  HRESULT STDMETHODCALLTYPE CreateCommand(IUnknown* outer, REFIID iid, IUnknown** command) override;

 private:
  ComPtr<DataSource> dataSource_;
  std::shared_ptr<Connection> connection_;
};

}  // namespace standin

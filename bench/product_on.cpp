#include "product_on.h"

#include <array>
#include <cstddef>
#include <stdexcept>

#include "data/project_sql.h"
#include "shared/connection_string.h"
#include "shared/text.h"
#include "shared/win32/OleDbDatabase.h"
#include "shared/win32/ole_db.h"
#include "shared/win32/ole_db_command.h"

using Microsoft::WRL::ComPtr;

namespace postrove::bench {
namespace {

constexpr std::size_t kColumns = 5;
constexpr std::size_t kBlock = 256;

struct Field {
  VARIANT value;
  DBSTATUS status;
};

template <typename Interface>
ComPtr<Interface> Query(IUnknown* object, REFIID id) {
  ComPtr<Interface> found;
  Check(object->QueryInterface(id, reinterpret_cast<void**>(found.GetAddressOf())));
  return found;
}

}  // namespace

void Check(HRESULT result) {
  if (FAILED(result)) throw std::runtime_error("a call of COM failed");
}

ProductOn::ProductOn(const std::wstring& folder) {
  shared.gDatabase = CreateOleDbDatabase();
  utility->AddFile(folder + L"\\Postrove.mdb");
  utility->AddFile(testing::kLocalIni,
                   "[Setup]\r\nPostroveDBPath=" + text::ToUtf8(folder) + "\\\r\n");
}

std::size_t ReadBare(const clsDatabase& database) {
  std::vector<ConnectionCandidate> candidates = ConnectionCandidates(database);
  const ComPtr<ICommandText> command =
      ole_db::CreateCommand(candidates, sql::ListProjects(database.DbType), L"ReadBare()");
  ComPtr<IUnknown> result;
  Check(command->Execute(nullptr, IID_IRowset, nullptr, nullptr, result.GetAddressOf()));
  const auto rowset = Query<IRowset>(result.Get(), IID_IRowset);
  const auto accessors = Query<IAccessor>(rowset.Get(), IID_IAccessor);

  std::array<DBBINDING, kColumns> bindings{};
  for (std::size_t i = 0; i < kColumns; ++i) {
    bindings[i].iOrdinal = i + 1;
    bindings[i].obValue = i * sizeof(Field);
    bindings[i].obStatus = i * sizeof(Field) + offsetof(Field, status);
    bindings[i].dwPart = DBPART_VALUE | DBPART_STATUS;
    bindings[i].cbMaxLen = sizeof(VARIANT);
    bindings[i].wType = DBTYPE_VARIANT;
  }
  HACCESSOR accessor = 0;
  Check(accessors->CreateAccessor(DBACCESSOR_ROWDATA, kColumns, bindings.data(),
                                  kColumns * sizeof(Field), &accessor, nullptr));
  std::size_t count = 0;
  std::array<HROW, kBlock> handles;
  HROW* block = handles.data();
  HRESULT fetched = S_OK;
  while (fetched != DB_S_ENDOFROWSET) {
    DBCOUNTITEM obtained = 0;
    fetched = rowset->GetNextRows(DB_NULL_HCHAPTER, 0, DBROWCOUNT{kBlock}, &obtained, &block);
    Check(fetched);
    for (DBCOUNTITEM i = 0; i < obtained; ++i) {
      std::array<Field, kColumns> fields;
      Check(rowset->GetData(handles[i], accessor, fields.data()));
      for (Field& field : fields) VariantClear(&field.value);
    }
    count += obtained;
    if (obtained > 0) Check(rowset->ReleaseRows(obtained, block, nullptr, nullptr, nullptr));
  }
  accessors->ReleaseAccessor(accessor, nullptr);
  return count;
}

}  // namespace postrove::bench

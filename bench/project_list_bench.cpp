// What the product adds to reading the project list: project_list_bench FOLDER...
//
// Each folder holds a Postrove.mdb. Its list is loaded through the controller, and the rows of the
// same statement are read in a bare loop over the provider's rowset, which looks at every value and
// keeps none. The list begins empty each time, as at start-up. The two take turns; the best of the
// runs counts.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <limits>
#include <stdexcept>
#include <string>

#include "data/connection_string.h"
#include "data/project_sql.h"
#include "shared/text.h"
#include "shared/win32/OleDbDatabase.h"
#include "shared/win32/ole_db.h"
#include "shared/win32/ole_db_command.h"
#include "support/Product.h"

using Microsoft::WRL::ComPtr;

namespace postrove {
namespace {

constexpr int kRuns = 15;
constexpr std::size_t kColumns = 5;
constexpr std::size_t kBlock = 256;

struct Field {
  VARIANT value;
  DBSTATUS status;
};

void Check(HRESULT result) {
  if (FAILED(result)) throw std::runtime_error("the provider failed");
}

template <typename Interface>
ComPtr<Interface> Query(IUnknown* object, REFIID id) {
  ComPtr<Interface> found;
  Check(object->QueryInterface(id, reinterpret_cast<void**>(found.GetAddressOf())));
  return found;
}

// The number of rows read.
std::size_t ReadBare(const clsDatabase& database) {
  const ComPtr<ICommandText> command = ole_db::CreateCommand(
      ConnectionCandidates(database), sql::ListProjects(database.DbType), L"ReadBare()");
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

template <typename Action>
double Milliseconds(Action action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

void Compare(const std::wstring& folder) {
  testing::Product product;
  const auto database = CreateOleDbDatabase();
  product.shared.gDatabase = database;
  product.utility->AddFile(folder + L"\\Postrove.mdb");
  product.utility->AddFile(std::wstring(testing::kAppData) + L"\\Postrove\\Postrove.ini",
                           "[Setup]\r\nPostroveDBPath=" + text::ToUtf8(folder) + "\\\r\n");
  product.Create();

  double bare = std::numeric_limits<double>::max(), list = bare;
  std::size_t rows = 0;
  for (int i = 0; i < kRuns; ++i) {
    bare = std::min(bare, Milliseconds([&] { rows = ReadBare(*database); }));
    product.Controller().ProjectList = {};
    list = std::min(list, Milliseconds([&] { product.Controller().GetProjectList(); }));
    if (rows == 0 || product.Controller().ProjectList.size() != rows) {
      throw std::runtime_error("the list and the rowset differ");
    }
  }
  std::printf("%8zu %16.1f %16.1f %8.2f\n", rows, bare, list, list / bare);
  std::fflush(stdout);
}

}  // namespace
}  // namespace postrove

int wmain(int argc, wchar_t** argv) {
  if (argc < 2 || FAILED(CoInitialize(nullptr))) return 2;
  int result = 0;
  try {
    std::printf("%8s %16s %16s %8s\n", "rows", "provider ms", "project list ms", "ratio");
    for (int i = 1; i < argc; ++i) postrove::Compare(argv[i]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "project_list_bench: %s\n", error.what());
    result = 1;
  }
  CoUninitialize();
  return result;
}

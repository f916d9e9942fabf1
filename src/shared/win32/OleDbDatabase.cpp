#include "shared/win32/OleDbDatabase.h"

#include <wrl/client.h>

#include "shared/connection_string.h"
#include "shared/error.h"
#include "shared/win32/ole_db.h"
#include "shared/win32/ole_db_command.h"
#include "shared/win32/ole_db_error.h"
#include "shared/win32/ole_db_rowset.h"

using Microsoft::WRL::ComPtr;

namespace postrove {
namespace {

class OleDbDatabase final : public clsDatabase {
 public:
  void Prepare() override { candidates_ = ConnectionCandidates(*this); }

  bool IsReady() const override { return !candidates_.empty(); }

  void ReadRecordset(const std::wstring& statement,
                     const std::function<void(Row&)>& visit) override {
    constexpr wchar_t kSource[] = L"clsDatabase.OpenRecordset()";
    const ComPtr<ICommandText> command = CreateCommand(statement, kSource);
    ComPtr<IUnknown> result;
    ole_db::Check(command->Execute(nullptr, IID_IRowset, nullptr, nullptr, result.GetAddressOf()),
                  kSource);
    if (!result) return;  // the statement was none that gives rows
    ole_db::ReadRows(ole_db::Query<IRowset>(result.Get(), IID_IRowset, kSource).Get(), visit,
                     kSource);
  }

  std::int64_t Execute(const std::wstring& statement) override {
    constexpr wchar_t kSource[] = L"clsDatabase.Execute()";
    DBROWCOUNT changed = DB_COUNTUNAVAILABLE;
    ole_db::Check(
        CreateCommand(statement, kSource)->Execute(nullptr, IID_NULL, nullptr, &changed, nullptr),
        kSource);
    return changed;
  }

 private:
  ComPtr<ICommandText> CreateCommand(const std::wstring& statement, const wchar_t* source) {
    if (!IsReady()) {
      throw Error(kObjectNotSet, source, L"The project database has not been set up.");
    }
    return ole_db::CreateCommand(candidates_, statement, source);
  }

  std::vector<ConnectionCandidate> candidates_;
};

}  // namespace

std::shared_ptr<clsDatabase> CreateOleDbDatabase() { return std::make_shared<OleDbDatabase>(); }

}  // namespace postrove

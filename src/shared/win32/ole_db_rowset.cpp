#include "shared/win32/ole_db_rowset.h"

#include <wrl/client.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>

#include "shared/error.h"
#include "shared/text.h"
#include "shared/win32/ole_db.h"
#include "shared/win32/ole_db_error.h"
#include "shared/win32/variant.h"

using Microsoft::WRL::ComPtr;

namespace postrove::ole_db {
namespace {

constexpr std::size_t kBlock = 256;

struct Column {
  DBORDINAL ordinal;
  std::wstring name;
  bool asText;  // a long column, or one that the provider does not give as a VARIANT
};

// Memory that the provider allocated for the caller.
template <typename T>
class TaskMemory {
 public:
  TaskMemory() = default;
  ~TaskMemory() { Free(); }
  TaskMemory(const TaskMemory&) = delete;
  TaskMemory& operator=(const TaskMemory&) = delete;

  void Free() { CoTaskMemFree(std::exchange(data_, nullptr)); }

  T** Out() { return &data_; }
  const T* Get() const { return data_; }
  const T& operator[](std::size_t i) const { return data_[i]; }

 private:
  T* data_ = nullptr;
};

// What the provider writes for one column of a row: a VARIANT, or a text and its length in bytes.
struct Field {
  Variant value;
  TaskMemory<wchar_t> text;
  DBLENGTH length = 0;
  DBSTATUS status = DBSTATUS_E_UNAVAILABLE;
};

[[noreturn]] void ThrowUnreadable(const Column& column, DBSTATUS status, const wchar_t* source) {
  throw Error(kTypeMismatch, source,
              L"A value of the column \"" + column.name + L"\" cannot be read (status " +
                  text::FromNumber(status) + L").");
}

class Accessor {
 public:
  // Columns that the provider refuses to give as a VARIANT become texts.
  Accessor(IRowset* rowset, std::vector<Column>& columns, const wchar_t* source)
      : accessor_(Query<IAccessor>(rowset, IID_IAccessor, source)) {
    std::vector<DBBINDSTATUS> states(columns.size(), DBBINDSTATUS_OK);
    if (SUCCEEDED(Create(columns, states))) return;
    const auto refused = [](DBBINDSTATUS state) { return state != DBBINDSTATUS_OK; };
    const bool named = std::any_of(states.begin(), states.end(), refused);
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (!named || refused(states[i])) columns[i].asText = true;
    }
    ForgetErrors();
    const HRESULT result = Create(columns, states);
    const auto unreadable = std::find_if(states.begin(), states.end(), refused);
    if (FAILED(result) && unreadable != states.end()) {
      ThrowUnreadable(columns[static_cast<std::size_t>(unreadable - states.begin())], *unreadable,
                      source);
    }
    Check(result, source);
  }
  ~Accessor() { accessor_->ReleaseAccessor(handle_, nullptr); }
  Accessor(const Accessor&) = delete;
  Accessor& operator=(const Accessor&) = delete;

  HACCESSOR Handle() const { return handle_; }

 private:
  HRESULT Create(const std::vector<Column>& columns, std::vector<DBBINDSTATUS>& states) {
    std::vector<DBBINDING> bindings(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i) {
      DBBINDING& binding = bindings[i];
      const bool asText = columns[i].asText;
      binding.iOrdinal = columns[i].ordinal;
      binding.obValue =
          i * sizeof(Field) + (asText ? offsetof(Field, text) : offsetof(Field, value));
      binding.obLength = i * sizeof(Field) + offsetof(Field, length);
      binding.obStatus = i * sizeof(Field) + offsetof(Field, status);
      binding.dwPart = DBPART_VALUE | DBPART_LENGTH | DBPART_STATUS;
      binding.dwMemOwner = DBMEMOWNER_CLIENTOWNED;
      binding.eParamIO = DBPARAMIO_NOTPARAM;
      binding.cbMaxLen = asText ? sizeof(wchar_t*) : sizeof(VARIANT);
      binding.wType = asText ? DBTYPE_WSTR | DBTYPE_BYREF : DBTYPE_VARIANT;
    }
    return accessor_->CreateAccessor(DBACCESSOR_ROWDATA, bindings.size(), bindings.data(),
                                     columns.size() * sizeof(Field), &handle_, states.data());
  }

  const ComPtr<IAccessor> accessor_;
  HACCESSOR handle_ = DB_INVALID_HACCESSOR;
};

// The rows fetched last. They are given back before the next ones are asked for: a forward-only
// rowset keeps one block.
class RowBlock {
 public:
  explicit RowBlock(IRowset* rowset) : rowset_(rowset) {}
  ~RowBlock() { Release(); }
  RowBlock(const RowBlock&) = delete;
  RowBlock& operator=(const RowBlock&) = delete;

  // False when there are no more rows.
  bool Fetch(const wchar_t* source) {
    Release();
    if (ended_) return false;
    HROW* rows = rows_.data();
    const HRESULT result =
        rowset_->GetNextRows(DB_NULL_HCHAPTER, 0, DBROWCOUNT{kBlock}, &count_, &rows);
    Check(result, source);
    ended_ = result == DB_S_ENDOFROWSET;
    if (count_ == 0 && !ended_) Check(DB_S_STOPLIMITREACHED, source);
    return count_ > 0;
  }

  const HROW* begin() const { return rows_.data(); }
  const HROW* end() const { return rows_.data() + count_; }

 private:
  void Release() {
    if (count_ > 0) rowset_->ReleaseRows(count_, rows_.data(), nullptr, nullptr, nullptr);
    count_ = 0;
  }

  IRowset* const rowset_;
  std::array<HROW, kBlock> rows_{};
  DBCOUNTITEM count_ = 0;
  bool ended_ = false;
};

std::vector<Column> ColumnsOf(IRowset* rowset, const wchar_t* source) {
  const auto information = Query<IColumnsInfo>(rowset, IID_IColumnsInfo, source);
  TaskMemory<DBCOLUMNINFO> found;
  TaskMemory<OLECHAR> names;
  DBORDINAL count = 0;
  Check(information->GetColumnInfo(&count, found.Out(), names.Out()), source);
  std::vector<Column> columns;
  for (DBORDINAL i = 0; i < count; ++i) {
    constexpr DBORDINAL kBookmark = 0;
    if (found[i].iOrdinal == kBookmark) continue;
    columns.push_back({found[i].iOrdinal, found[i].pwszName ? found[i].pwszName : L"",
                       (found[i].dwFlags & DBCOLUMNFLAGS_ISLONG) != 0});
  }
  return columns;
}

Cell Take(Field& field, const Column& column, const wchar_t* source) {
  if (field.status == DBSTATUS_S_ISNULL) return {};
  if (field.status != DBSTATUS_S_OK) ThrowUnreadable(column, field.status, source);
  if (column.asText) {
    return std::wstring(field.text.Get() ? field.text.Get() : L"", field.length / sizeof(wchar_t));
  }
  std::optional<Cell> cell = ToCell(*field.value.Get());
  if (!cell) ThrowUnreadable(column, DBSTATUS_E_CANTCONVERTVALUE, source);
  return *std::move(cell);
}

// `fields`, one for each column, are the room that the provider writes to; what the row before left
// there is dropped.
void ReadRow(IRowset* rowset, HROW row, const Accessor& accessor,
             const std::vector<Column>& columns, std::vector<Field>& fields, Row& cells,
             const wchar_t* source) {
  for (Field& field : fields) {
    VariantClear(field.value.Get());
    field.text.Free();
    field.status = DBSTATUS_E_UNAVAILABLE;
  }
  const HRESULT result = rowset->GetData(row, accessor.Handle(), fields.data());
  // Then the fields tell which of them it was.
  if (result != DB_E_ERRORSOCCURRED) Check(result, source);
  cells.clear();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    cells.push_back(Take(fields[i], columns[i], source));
  }
}

}  // namespace

void ReadRows(IRowset* rowset, const std::function<void(Row& row)>& visit, const wchar_t* source) {
  std::vector<Column> columns = ColumnsOf(rowset, source);
  const Accessor accessor(rowset, columns, source);
  std::vector<Field> fields(columns.size());
  Row cells;
  RowBlock block(rowset);
  while (block.Fetch(source)) {
    for (const HROW row : block) {
      ReadRow(rowset, row, accessor, columns, fields, cells, source);
      visit(cells);
    }
  }
}

}  // namespace postrove::ole_db

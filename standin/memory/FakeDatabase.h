#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "memory/Memory.h"
#include "shared/clsDatabase.h"
#include "shared/error.h"

namespace postrove::testing {

struct RanStatement {
  bool query;  // by OpenRecordset, else by Execute
  std::wstring text;
  bool operator==(const RanStatement&) const = default;
};

// The shared database object in memory: statements are recorded in the order in which they ran,
// failed ones included, and answered with the rows that the test gave for exactly that text, else
// by the test's handler; a query that neither knows has no rows. As in the product nothing runs
// before Prepare.
class FakeDatabase : public clsDatabase {
 public:
  using Handler = std::function<Rows(const RanStatement&)>;

  // What a statement that is not a query answers.
  std::int64_t changedRows = 1;

  void SetRows(const std::wstring& query, Rows rows) { rows_[query] = std::move(rows); }

  // For statements without rows of their own; it may throw. What it returns for one that is not a
  // query is ignored.
  void SetHandler(Handler handler) { handler_ = std::move(handler); }

  // The n-th operation from now on throws `error`, 1 being the next.
  void FailOperation(int n, Error error = Error(static_cast<long>(0x80004005), L"FakeDatabase",
                                                L"The database is not available.")) {
    failing_ = std::size(statements_) + static_cast<std::size_t>(n);
    error_ = std::move(error);
  }

  const std::vector<RanStatement>& Statements() const { return statements_; }

  void Prepare() override { prepared_ = true; }
  bool IsReady() const override { return prepared_; }
  void ReadRecordset(const std::wstring& statement,
                     const std::function<void(Row&)>& visit) override {
    for (Row& row : Run({true, statement})) visit(row);
  }
  std::int64_t Execute(const std::wstring& statement) override {
    Run({false, statement});
    return changedRows;
  }

 private:
  Rows Run(RanStatement statement) {
    const memory::Scope host(false);
    if (!IsReady()) throw Error(kObjectNotSet, L"FakeDatabase", L"The database is not set up.");
    statements_.push_back(statement);
    if (statements_.size() == failing_) throw error_;
    const auto rows = rows_.find(statement.text);
    if (statement.query && rows != rows_.end()) return rows->second;
    return handler_ ? handler_(statement) : Rows();
  }

  std::map<std::wstring, Rows> rows_;
  Handler handler_;
  std::size_t failing_ = 0;
  Error error_{0, {}, {}};
  std::vector<RanStatement> statements_;
  bool prepared_ = false;
};

}  // namespace postrove::testing

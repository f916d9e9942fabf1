#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "shared/clsDatabase.h"
#include "shared/error.h"

namespace postrove::testing {

// The database object in memory: statements are recorded, and a query is answered with the rows
// that the test gave for its very text, or with none.
class FakeDatabase : public clsDatabase {
 public:
  void Answer(const std::wstring& statement, Rows rows) { answers_[statement] = std::move(rows); }
  void FailAll() { failing_ = true; }
  const std::vector<std::wstring>& Statements() const { return statements_; }

  void Prepare() override { ready_ = true; }
  bool IsReady() const override { return ready_; }
  Rows OpenRecordset(const std::wstring& statement) override {
    Record(statement);
    const auto found = answers_.find(statement);
    return found == answers_.end() ? Rows() : found->second;
  }
  void Execute(const std::wstring& statement) override { Record(statement); }

 private:
  void Record(const std::wstring& statement) {
    statements_.push_back(statement);
    if (failing_) {
      throw Error(static_cast<long>(0x80004005), L"FakeDatabase", L"The server does not answer.");
    }
  }

  std::map<std::wstring, Rows> answers_;
  std::vector<std::wstring> statements_;
  bool ready_ = false;
  bool failing_ = false;
};

}  // namespace postrove::testing

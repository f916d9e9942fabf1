#include <windows.h>

#include <gmock/gmock.h>
#include <oleauto.h>

#include "consumer.h"

namespace {

using consumer::ComPtr;
using consumer::DatabaseFile;
using consumer::ErrorText;
using consumer::Provider;
using testing::HasSubstr;

class Connection : public testing::Test {
 protected:
  ~Connection() override {
    EXPECT_EQ(0, provider_.OpenObjects());
    EXPECT_EQ(S_OK, provider_.Call("DllCanUnloadNow"));
  }

  HRESULT CreateSession(IDBInitialize* dataSource, ComPtr<IDBCreateCommand>* session) {
    const auto sessions = consumer::As<IDBCreateSession>(dataSource, IID_IDBCreateSession);
    return sessions->CreateSession(nullptr, IID_IDBCreateCommand,
                                   reinterpret_cast<IUnknown**>(session->ReleaseAndGetAddressOf()));
  }

  const Provider provider_;
  const DatabaseFile file_;
};

TEST_F(Connection, HasItsOrder) {
  const ComPtr<IDBInitialize> dataSource = provider_.CreateDataSource();
  ComPtr<IDBCreateCommand> session;
  EXPECT_EQ(E_UNEXPECTED, CreateSession(dataSource.Get(), &session)) << "before Initialize";
  EXPECT_EQ(E_FAIL, dataSource->Initialize()) << "without a file";

  ASSERT_EQ(S_OK, consumer::SetDataSource(dataSource.Get(), file_.Path()));
  ASSERT_EQ(S_OK, dataSource->Initialize());
  EXPECT_EQ(DB_E_ALREADYINITIALIZED, dataSource->Initialize());
  EXPECT_EQ(DB_E_ERRORSOCCURRED, consumer::SetDataSource(dataSource.Get(), L"C:\\other.mdb"));

  ASSERT_EQ(S_OK, CreateSession(dataSource.Get(), &session));
  EXPECT_EQ(S_FALSE, provider_.Call("DllCanUnloadNow"));
  EXPECT_EQ(DB_E_OBJECTOPEN, dataSource->Uninitialize());
  session.Reset();
  EXPECT_EQ(S_OK, dataSource->Uninitialize());
  EXPECT_EQ(E_UNEXPECTED, CreateSession(dataSource.Get(), &session));
}

TEST_F(Connection, IsKeptByWhatUsesIt) {
  ComPtr<IRowset> rowset;
  {
    const ComPtr<IDBCreateCommand> session = consumer::Open(provider_, file_.Path());
    rowset = consumer::Rows(session.Get(), L"SELECT ProjectID FROM Project");
  }
  EXPECT_EQ(40u, consumer::ReadAll(rowset.Get()).size());
}

TEST_F(Connection, ChecksProperties) {
  const ComPtr<IDBInitialize> dataSource = provider_.CreateDataSource();
  VARIANT number{};
  V_VT(&number) = VT_I4;
  V_I4(&number) = 16;
  const struct {
    DBPROPID id;
    HRESULT result;
    DBPROPSTATUS status;
  } cases[] = {
      {DBPROP_INIT_MODE, S_OK, DBPROPSTATUS_OK},
      {DBPROP_INIT_DATASOURCE, DB_E_ERRORSOCCURRED, DBPROPSTATUS_BADVALUE},
      {DBPROP_INIT_TIMEOUT, DB_E_ERRORSOCCURRED, DBPROPSTATUS_NOTSUPPORTED},
  };
  for (const auto& c : cases) {
    DBPROPSTATUS status = DBPROPSTATUS_CONFLICTING;
    EXPECT_EQ(c.result, consumer::SetProperty(dataSource.Get(), c.id, number, &status)) << c.id;
    EXPECT_EQ(c.status, status) << c.id;
  }
}

TEST_F(Connection, RefusesFilesWithTheirReason) {
  const std::wstring text = file_.Folder() + L"\\text.mdb", empty = file_.Folder() + L"\\empty.mdb",
                     locked = file_.Folder() + L"\\locked.mdb";
  postrove::MakeFile(text, "Standard Jet DB and no more of it");
  postrove::MakeFile(empty, "");
  postrove::MakeFile(locked, "");
  const HANDLE lock =
      CreateFileW(locked.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  const std::wstring missing = file_.Folder() + L"\\missing.mdb";
  const struct {
    std::wstring path, reason;
  } cases[] = {
      {missing, L"Could not find file '" + missing + L"'."},
      {file_.Folder() + L"\\none\\a.mdb", L"is not a valid path."},
      {text, L"Unrecognized database format '" + text + L"'."},
      {empty, L"Unrecognized database format '" + empty + L"'."},
      {locked, L"Could not use '" + locked + L"'; file already in use."},
      {file_.Folder(), L"cannot open the file"},
  };
  for (const auto& c : cases) {
    const ComPtr<IDBInitialize> dataSource = provider_.CreateDataSource();
    ASSERT_EQ(S_OK, consumer::SetDataSource(dataSource.Get(), c.path));
    EXPECT_EQ(E_FAIL, dataSource->Initialize());
    EXPECT_THAT(ErrorText(), HasSubstr(c.reason));
  }
  EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(missing.c_str())) << "it was made";
  CloseHandle(lock);
}

}  // namespace

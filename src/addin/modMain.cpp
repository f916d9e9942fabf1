#include "addin/modMain.h"

#include "addin/module.h"
#include "addin/version.h"
#include "controller/clsPostrove.h"
#include "forms/win32/WinFormHost.h"
#include "outlook/clsPROutlook.h"
#include "shared/win32/OleDbDatabase.h"
#include "shared/win32/WinRegistry.h"
#include "shared/win32/WinSharedUtil.h"

namespace postrove::modMain {
namespace {

union NeverDestroyed {
  constexpr NeverDestroyed() : shared() {}
  ~NeverDestroyed() {}
  SharedObjects shared;
};

NeverDestroyed storage;

}  // namespace

SharedObjects& Shared() { return storage.shared; }

void Main() {
  SharedObjects& shared = Shared();
  if (!shared.gDatabase) shared.gDatabase = CreateOleDbDatabase();
  if (!shared.gUtility) shared.gUtility = CreateWinSharedUtil();
  if (!shared.gController) {
    shared.gController = clsPostrove::Create(
        shared, forms::CreateWinFormHost(addin::ModuleInstance()), std::make_unique<WinRegistry>(),
        {POSTROVE_VERSION_MAJOR, POSTROVE_VERSION_MINOR, POSTROVE_VERSION_PATCH});
  }
  if (!shared.gOutlook) shared.gOutlook = clsPROutlook::Create(shared);
}

void ReleaseAll() {
  SharedObjects& shared = Shared();
  shared.gOutlook.reset();
  shared.gController.reset();
  shared.gUtility.reset();
  shared.gDatabase.reset();
}

}  // namespace postrove::modMain

#pragma once

#include <functional>
#include <string>

#include "shared/clsSharedUtil.h"

// Moving files that others may need at any moment, also after this process was killed.
namespace postrove {

// Copies a file to a path where none is yet, and compares. It is copied under another name, so the
// path holds no file or the whole one. Throws Error; nothing of the copy is then left.
void CopyIntoPlace(clsSharedUtil& utility, const std::wstring& from, const std::wstring& to);

// Moves a database from `from` to `to`; it stays as `dated` in its old folder. `store` makes the
// settings name the new place, `takeBack` undoes that, also where `store` failed half-way; both
// throw Error. Throws Error when anybody has the database open or something failed, and what was
// done is undone; should the settings not let themselves be put back, the copy stays, since they
// may name it.
//
// The order: the old file is held, so that nobody adds a row that the copy would miss, and keeps
// its name until the settings name the copy, which is held as well while it may have to go again. A
// process that dies on the way leaves settings that name a whole database.
void MoveDatabase(clsSharedUtil& utility, const std::wstring& from, const std::wstring& to,
                  const std::wstring& dated, const std::function<void()>& store,
                  const std::function<void()>& takeBack);

}  // namespace postrove

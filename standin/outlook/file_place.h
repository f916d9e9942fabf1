#pragma once

#include <string>

namespace standin {

// A path in the folder, which is made when missing, for a message with this subject: "Subject.msg",
// or with a number when that is taken. Throws HostError when the folder cannot be made.
std::wstring FreePlace(const std::wstring& folder, const std::wstring& subject);

}  // namespace standin

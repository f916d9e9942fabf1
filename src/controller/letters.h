#pragma once

#include <string>

#include "outlook/office/outlook.h"
#include "shared/clsSharedUtil.h"

namespace postrove {

// True when a message file in the system's code page holds every letter of the message's texts: its
// subject, the names of its attachments, its plain text, the names of sender and recipients. A text
// that cannot be read counts as one that it does not hold. `attachments` is Nothing where there are
// none.
//
// Outlook before 2003 trusts no add-in and would ask the user about each look at a name, so there
// (`trusted` false) names of persons are left out, and what cannot be read is taken to be held.
bool FitsCodePage(const office::MailItem& mail, const std::wstring& subject,
                  const office::Attachments& attachments, clsSharedUtil& utility, bool trusted);

}  // namespace postrove

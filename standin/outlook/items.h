#pragma once

#include <memory>
#include <vector>

#include "outlook/dispatch.h"
#include "outlook/item.h"

namespace standin {

// A new object of the item: MailItem, AppointmentItem, ContactItem or NoteItem.
ComPtr<IDispatch> MakeItemObject(const std::shared_ptr<Item>& item);

// The item as the first argument of an event.
std::vector<Variant> ItemArgument(Item& item);

// Attachments and Recipients of an item.
ComPtr<IDispatch> MakeAttachmentsObject(const std::shared_ptr<Item>& item);
ComPtr<IDispatch> MakeRecipientsObject(const std::shared_ptr<Item>& item);

}  // namespace standin

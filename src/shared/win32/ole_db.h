#pragma once

// The OLE DB interfaces, in the order in which their headers go together.
#include <windows.h>

#include <ole2.h>

#include <oledb.h>
#include <oledberr.h>

#include <msdasc.h>

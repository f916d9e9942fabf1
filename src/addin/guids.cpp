// The one place where the type library's identifiers are defined.
#include <initguid.h>

#include "addin/Postrove_h.h"

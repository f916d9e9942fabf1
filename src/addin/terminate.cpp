// libstdc++'s own handler of an exception that nobody catches prints its demangled type, for which
// every program carries some 50 KB of name decoding and text formatting. Outlook has no console to
// print to, so the process just ends, as it would after the print.
#include <cstdlib>
#include <exception>

namespace __gnu_cxx {

void __verbose_terminate_handler() { std::abort(); }

}  // namespace __gnu_cxx

// The engine reads its separators from the environment once; the API tests pin them so that they
// do not depend on the locales installed on the machine.
#include <cstdlib>

namespace {

const bool kPinned = [] {
  setenv("VERDAL_SDECIMAL", ",", 1);
  setenv("VERDAL_SDATE", ".", 1);
  setenv("VERDAL_STIME", ":", 1);
  return true;
}();

}  // namespace

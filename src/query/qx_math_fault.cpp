#include "query/qx_math_fault.h"

#include <cerrno>
#include <cfenv>

namespace verdal::query {

void QX_ClearMathFault() {
  errno = 0;
  std::feclearexcept(FE_ALL_EXCEPT);
}

QX_MathFault QX_TakeMathFault(long double result) {
  const int raised = std::fetestexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW | FE_UNDERFLOW);
  const int err = errno;
  // A pole (log 0) is a singularity, which counts with the domain errors.
  if (err == EDOM || (raised & (FE_INVALID | FE_DIVBYZERO)) != 0) return QX_MathFault::kDomain;
  if (err == ERANGE || (raised & FE_OVERFLOW) != 0) return QX_MathFault::kRange;
  // A tiny result that is still representable raises the underflow flag without any loss the
  // caller cares about; only a result flushed to zero is an underflow.
  if ((raised & FE_UNDERFLOW) != 0 && result == 0) return QX_MathFault::kRange;
  return QX_MathFault::kNone;
}

}  // namespace verdal::query

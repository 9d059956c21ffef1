#pragma once
// The error hook of the math library: what went wrong in the last numeric operation, read from
// the floating-point exception flags and errno. Nothing is ever written to the console.

namespace verdal::query {

enum class QX_MathFault {
  kNone,
  kDomain,  // domain error, singularity, total loss of significance
  kRange,   // overflow, underflow
};

// Clears errno and the exception flags before a numeric operation.
void QX_ClearMathFault();
// Classifies what the operation since the last clear raised; result is its value.
QX_MathFault QX_TakeMathFault(long double result);

}  // namespace verdal::query

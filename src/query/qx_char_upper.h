#pragma once
// Upper-casing of code page 1252 text, as the system's CharUpperBuffA does it for that code page:
// a-z, the accented letters and their ligatures; sharp s and micro sign stay.

namespace verdal::query {

void QX_UpcaseInPlace(char* text);

}  // namespace verdal::query

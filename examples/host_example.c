/* A small host of libverdal.so: it uses nothing but verdal.h. */
#include <stdio.h>

#include "verdal.h"

int main(void) {
  printf("last error %d: %s\n", VERDAL_GetLastError(), VERDAL_GetLastErrorString(VERDAL_GetLastError()));
  return 0;
}

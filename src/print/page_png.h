#pragma once
// A recorded page as a picture for a host's preview window: the page at a zoom factor on a screen
// of so many dots per inch, on white, written as a PNG file.
#include <string>

#include "print/surface.h"

namespace verdal::print {

// The size in pixels of a page `length` logical units long at `zoom` on a screen of `screenDpi`.
int32_t PagePixels(float length, float zoom, int32_t screenDpi);

// Writes the page (`pageWidth` x `pageHeight` logical units) to `path`, beside it first and renamed
// onto it, so that a failure leaves no half-written picture. False when it could not be written.
bool RenderPagePng(const RecordedPage& page, float pageWidth, float pageHeight, float zoom,
                   int32_t screenDpi, const std::string& path);

}  // namespace verdal::print

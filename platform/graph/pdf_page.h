// pdf_page.h: a page of a PDF document that measures in the pixels of the screen.
#pragma once
#include <QSize>

class QPdfWriter;

namespace graph {

inline constexpr int dots_per_inch = 96;  // one device-independent pixel is one dot

/// Sets up a document whose page is as large as a picture.
/// @param size  device-independent pixels
void fit_page_to(QPdfWriter& writer, QSize size);

}  // namespace graph

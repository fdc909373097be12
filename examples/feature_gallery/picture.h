#pragma once

#include <opencv2/core.hpp>

#include "exhibit.h"

namespace examples {

/// Draws a line as it was given to an extractor, and what became and was found of it.
cv::Mat drawExhibit(const Exhibit& exhibit,
                    const Line& given,
                    const Line& left,
                    const Findings& findings);

}  // namespace examples

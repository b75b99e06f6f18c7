#pragma once

#include "Korvane/tools/ToolDriver.h"

namespace korvane {

/// Prints a review as one JSON document, piece by piece: a result of a hundred thousand items is
/// never there a second time as a tree.
void printReviewJson(const ToolReview& review);

} // namespace korvane

// Whether something has grown.
#pragma once

#include "figures.h"

#include <vector>

/// Compares the last tenth of samples, all taken in the same state, with the second tenth, and
/// prints a line for each figure. Of memory the medians may differ by 5 %; anything else has grown
/// when it was never as low at the end as the most that it was then.
/// @return the names of what has grown; of what there are too few samples of, nothing has
std::vector<std::string> grownIn(const std::vector<Figures>& samples);

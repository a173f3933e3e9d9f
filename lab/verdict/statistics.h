#pragma once

/// Figures of a set of values that a few wild ones do not move.

#include <vector>

namespace lab {

/// The middle value, or the mean of the two middle ones. Of no values: 0.
double median(std::vector<double> values);

/// The standard deviation that the median distance from the median stands for. Of no values: 0.
double deviation(std::vector<double> values);

}  // namespace lab

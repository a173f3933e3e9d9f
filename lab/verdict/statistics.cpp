#include "verdict/statistics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace lab {

double median(std::vector<double> values) {
    if (values.empty()) {
        return 0;
    }
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 != 0 ? values[half] : (values[half - 1] + values[half]) / 2;
}

double deviation(std::vector<double> values) {
    constexpr double ofNormal = 1.4826;  // standard deviation by median distance, of normal values
    const double middle = median(values);
    for (double& value : values) {
        value = std::abs(value - middle);
    }
    return ofNormal * median(std::move(values));
}

}  // namespace lab

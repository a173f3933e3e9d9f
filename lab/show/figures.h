#pragma once

/// Figures as programs get them: rounded to more than they are worth, and nothing where there is none.

#include <cmath>
#include <optional>

namespace lab {

/// To so many decimals; nothing where it is not finite.
inline std::optional<double> rounded(double value, int decimals) {
    const double unit = std::pow(10.0, decimals);
    return std::isfinite(value) ? std::optional(std::round(value * unit) / unit) : std::nullopt;
}

/// New / old from its logarithm.
inline std::optional<double> ratioFigure(double logRatio) {
    return std::isfinite(logRatio) ? rounded(std::exp(logRatio), 6) : std::nullopt;
}

/// Clocks of one call, of which 0 says that they were not measured.
inline std::optional<double> clocksFigure(double clocks) {
    return clocks > 0 ? rounded(clocks, 4) : std::nullopt;
}

}  // namespace lab

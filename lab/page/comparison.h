#pragma once

#include <string>

#include "show/course.h"
#include "show/report.h"

namespace lab {

/// The page of a comparison as one HTML document, drawn by page/parts/comparison*.js. Its data:
///
///     {"title": "run", "sentence": "Of 438 points ...",
///      "comparison": {...},                   as "export --json" writes it
///      "csv": "function,...",                 as "export --csv" writes it
///      "pairs": [[[pair, value, fresh], ...], ...],     of each point, log(new / old), fresh 0 or 1
///      "course": {"step": 0.25, "slices": [1.02, null, ...], "busy": [0, 3, ...],     numbers of busy slices
///                 "pairs": [[pair, seconds, busyness, steal, load], ...]}}
std::string comparisonPage(const std::string& title, const Report& report, const Course& course);

}  // namespace lab

#pragma once

#include <string>

#include "show/measurement.h"
#include "store/store.h"

namespace lab {

/// What a store of a measurement holds, as it is shown, beside the earlier one where it names one. Of an
/// unfinished measurement too.
MeasurementReport measurementOf(Store& store);

/// Sets what stands beside the points of `report`. NotComparable if the earlier measurement is of another
/// processor or another width.
void putBeside(MeasurementReport& report, const MeasurementReport& earlier, const std::string& path);

}  // namespace lab

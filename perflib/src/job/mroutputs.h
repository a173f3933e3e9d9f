#pragma once

#include <vector>

/// Sizes of the files of all outputs, listings, tables, name tables and summaries, in this order; -1 for what
/// is no file on a disk.
std::vector<long long> mrOutputSizes();

/// Takes back what was written to them since they had these sizes.
void mrCutOutputs(const std::vector<long long>& sizes);
/// After the process was lost in a test that began with these sizes: takes back what the summary has of it,
/// and half lines of the tables. Whole lines stand.
void mrCutOutputsToLost(const std::vector<long long>& sizes);

#pragma once

#include "parameter/mrstepiterator.h"

/// The common parameter "VectorLength", shared by the suites.
extern mrStepIterator<int> g_vectorLength;

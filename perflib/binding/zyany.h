#pragma once

/// The header of a suite over functions of any library: all of zy.h but the library `zylch`. Without an
/// environment of its own (job/mrregistry.h) the framework reads the time-stamp counter itself.

#include "parameter/mrmapiterator.h"
#include "parameter/mrmemory.h"
#include "parameter/mrstepiterator.h"
#include "stream/mrcstream.h"
#include "stream/mristream.h"
#include "zysuite.h"
#include "zytest.h"
#include "zyvector.h"
#include "zyvectortest.h"

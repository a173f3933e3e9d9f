#pragma once

/// The one header that a suite includes; with it the suite registers its library, before its tests.

#include "parameter/mrmapiterator.h"
#include "parameter/mrmemory.h"
#include "parameter/mrstepiterator.h"
#include "stream/mrcstream.h"
#include "stream/mristream.h"
#include "zyenvironment.h"
#include "zylch.h"
#include "zysuite.h"
#include "zytest.h"
#include "zyvector.h"
#include "zyvectortest.h"

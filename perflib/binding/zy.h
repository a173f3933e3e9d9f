#pragma once

/// The one header that a suite includes; with it the suite registers its library, before its tests.

#include "output/mrcstream.h"
#include "output/mristream.h"
#include "test/mrmapiterator.h"
#include "test/mrmemory.h"
#include "test/mrstepiterator.h"
#include "zyenvironment.h"
#include "zylch.h"
#include "zysuite.h"
#include "zytest.h"
#include "zyvector.h"

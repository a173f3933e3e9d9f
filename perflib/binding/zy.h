#pragma once

/// The one header that a suite of the library includes; with it the suite registers the library, before its
/// tests.

#include "zyany.h"
#include "zyenvironment.h"
#include "zylch.h"

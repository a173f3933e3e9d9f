#pragma once

/// Bodies behind the boundary of a shared object, by the number of their dependent multiplications. All
/// return 0.
int stepsNone();
int steps10();
int steps100();
int steps1000();

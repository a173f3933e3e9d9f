#pragma once

/// Keeps memory back for the framework, so that a function under test that has used up all there is costs its
/// test and not the run: a new-expression of the framework that would fail gets some of it. One in the code
/// of a suite or of the library fails as before.
void mrKeepReserve();

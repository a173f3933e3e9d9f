#pragma once

/// Levels of mrSetPriority.
enum mrPriority : int {
    MR_PRIORITY_KEEP = 0,
    MR_PRIORITY_HIGH = 1,
    MR_PRIORITY_NORMAL = 2,
    MR_PRIORITY_LOW = 3
};

/// Sets the process priority for a timed stretch and remembers the one before. Only root can raise a
/// priority, so for other users nothing happens; failures are ignored.
void mrSetPriority(int level);
/// Back to the priority before the last mrSetPriority.
void mrResetPriority();

#pragma once

/// Takes the most seconds of a combination from METRIG_WATCHDOG. Unset, empty or 0 there is no limit; what is
/// no number is told and sets none.
void mrReadWatchdog();

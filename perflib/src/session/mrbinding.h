#pragma once

/// Binds the framework to the library under test, whose functions it knows by the pointers of
/// machine/mrlibrary.h.

/// Gives each pointer that is still null its fallback.
void mrBindFallbacks();
/// Tells the library which code path to take: that of -T, or the library's own choice.
void initStaticCpu();
/// Binds the library again, reports and sets its threads, chooses its code path.
void mrBindLibrary();
/// Notes the versions of the libraries for the reports.
void mrNoteLibraryVersions();

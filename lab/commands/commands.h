#pragma once

/// The commands of metrig-lab, one source each. Each function adds its own to the command line.

#include "commands/commandline.h"

namespace lab {

void addCompare(CLI::App& app, CommandLine& line);
void addMeasure(CLI::App& app, CommandLine& line);
void addResume(CLI::App& app, CommandLine& line);
void addShow(CLI::App& app, CommandLine& line);
void addExport(CLI::App& app, CommandLine& line);
void addFleet(CLI::App& app, CommandLine& line);
void addMerge(CLI::App& app, CommandLine& line);
void addHistory(CLI::App& app, CommandLine& line);
void addPage(CLI::App& app, CommandLine& line);
void addRun(CLI::App& app, CommandLine& line);
void addCheck(CLI::App& app, CommandLine& line);

}  // namespace lab

#pragma once

/// What the system tells of the machine and of its state. Paths begin at `root`, so that another tree can
/// stand in for /proc and /sys.

#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace lab {

/// Names and values in the order of printing; a fact that the system does not tell is left out.
using Facts = std::vector<std::pair<std::string, std::string>>;

/// The whole file; empty if it can't be read.
std::string fileContent(const std::string& path);

/// Of the machine, and of `core`: processor, kernel, hypervisor where there is one, governor, siblings, load.
Facts machineFacts(int core, const std::string& root = "");

/// Paths of the files that the process has mapped, each once.
std::vector<std::string> mappedFiles(pid_t process, const std::string& root = "");

/// Where the process has mapped the files of these names; "" for one that it has not.
std::vector<std::string> mappedPaths(pid_t process, const std::vector<std::string>& names,
                                     const std::string& root = "");

/// Processors that this process may run on, in rising order.
std::vector<int> allowedCores();

/// Binds this process, and those it starts from now on, to one processor; false if the system refuses.
bool bindToCore(int core);

/// Gives back to this process all processors of `cores`.
void bindToCores(const std::vector<int>& cores);

}  // namespace lab

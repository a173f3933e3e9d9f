#pragma once

/// Runs a built program the way a user does, and keeps what came back.

#include <string>
#include <vector>

/// A folder of its own among the system's temporary ones, gone with the object.
class WorkFolder {
  public:
    WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    ~WorkFolder();

    /// Of a file in it; of the folder, with the "/" behind it, when the name is empty.
    std::string path(const std::string& name = "") const;
    /// Writes a file and returns its path.
    std::string file(const std::string& name, const std::string& content) const;
    /// Empty if there is no such file.
    std::string content(const std::string& name) const;

  private:
    std::string m_path;
};

/// The whole file, bytes as they are; empty if it can't be read.
std::string readFile(const std::string& path);

/// Text to be typed as soon as the program has printed `prompt`, which is looked for behind the one before.
struct Answer {
    std::string prompt;
    std::string text;
};

struct Invocation {
    std::vector<std::string> arguments{};
    std::string folder{};                    ///< current folder of the program; empty: that of the test
    std::vector<Answer> answers{};           ///< standard input is a pipe that is closed behind the last
    bool terminal = false;                   ///< input and output are one terminal; "\x04" ends its input
    std::vector<std::string> environment{};  ///< "NAME=value", besides what the test itself has
    std::string output{};                    ///< file or device that takes standard output in place of a pipe
    std::string program = "metrig";          ///< in the folder of built programs, unless it is a path
    int seconds = 60;                        ///< it is killed if it takes longer
};

/// False where the system gives no pseudo terminal, as in a bare root folder.
bool hasTerminals();

struct Outcome {
    std::string output;  ///< standard output; what the terminal showed, with plain line ends
    std::string errors;  ///< standard error
    int status = -1;     ///< exit status, -1 if a signal ended it
    int signal = 0;      ///< that signal; SIGKILL also tells that it took too long
    long peakKiB = 0;    ///< most memory that was resident at a time
};

/// Returns when the program has ended. std::runtime_error if the system refuses a pipe, a process or the
/// like.
Outcome run(const Invocation& what);

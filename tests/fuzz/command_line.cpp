/// A command line and, after its first line, the file that "-@keys" names. Output goes to a folder of its
/// own: inputs that name another one are passed over.

#include <unistd.h>

#include <vector>

#include "fuzz.h"
#include "session/mr.h"
#include "stream/mrcstream.h"
#include "stream/mristream.h"
#include "support/temp_folder.h"

/// Conditions live to the end of the process.
extern "C" const char* __asan_default_options() { return "detect_leaks=0"; }

namespace {

class QuietSession : public mrSession {
  public:
    void listTests(int) override {}
};

bool leavesFolder(const std::string& text) {
    return text.find('/') != std::string::npos || text.find('\\') != std::string::npos ||
           text.find(':') != std::string::npos || text.find("..") != std::string::npos;
}

std::vector<std::string> wordsOf(const std::string& text) {
    std::vector<std::string> words(1);
    for (const char c : text) {
        if (c == ' ') {
            words.emplace_back();
        } else {
            words.back() += c;
        }
    }
    return words;
}

void closeFiles() {
    g_istrm.dataList().clear();
    g_istrm.deleteIniFile();
    g_istrm.deleteIStream();
    for (mrFileList* files : std::initializer_list<mrFileList*>{&g_ostrm, &g_cstrm, &g_qstrm, &g_ustrm}) {
        files->close();
        files->clear();
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TempFolder folder;
    static const bool bound = [] {
        mrBindFallbacks();
        return chdir(folder.path().c_str()) == 0;
    }();
    Input input(data, size);
    const std::string line = input.line();
    if (!bound || leavesFolder(line) || leavesFolder(input.rest())) {
        return -1;
    }
    folder.file("keys", input.rest());
    std::vector<std::string> words = wordsOf(line);
    words.insert(words.begin(), folder.path("metrig"));
    std::vector<char*> values;
    for (std::string& word : words) {
        values.push_back(word.data());
    }
    values.push_back(nullptr);
    QuietSession session;
    session.initSession();
    if (session.parseCommandLine(static_cast<int>(words.size()), values.data())) {
        session.hintOutput();
    }
    closeFiles();
    return 0;
}

/// An ini file is read, changed and written; what was written must read back the same.

#include "fuzz.h"
#include "stream/mrinifile.h"
#include "support/temp_folder.h"

namespace {

/// All that the file holds, comments aside.
std::string contentOf(const mrIniFile& ini, const std::string& names) {
    std::string content;
    Input sections(reinterpret_cast<const std::uint8_t*>(names.data()), names.size());
    while (!sections.rest().empty()) {
        mrString name;
        mrIniFile::getSection(sections.line().c_str(), name);
        const mrValues* values = ini.getSectionValues(name);
        if (values == nullptr) {
            continue;  // it stands in a comment
        }
        content += std::string("[") + name.c_str() + "]\n";
        for (const mrValueItem* item : *values) {
            if (item->m_key.empty() && item->m_value == mrIniFile::KeyAlone) {
                continue;  // written as an empty line
            }
            content += std::string(item->m_key.c_str()) + "=" + item->m_value.c_str() + "\n";
            mustHold(ini.valueExist(name, item->m_key));
        }
    }
    return content;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TempFolder folder;
    const std::string text(data, data + size);
    const mrString path = folder.file("fuzz.ini", text);
    mrIniFile ini;
    if (!ini.open(path, true)) {
        mustHold(folder.content("fuzz.ini") == text);
        return 0;
    }
    const std::string before = contentOf(ini, text);
    ini.close();
    const std::string written = folder.content("fuzz.ini");
    mustHold(ini.open(path, true));
    mustHold(contentOf(ini, text) == before);
    ini.write("section", "key", "value", "comment");
    mustHold(ini.read("section", "key", "") != mrString(""));
    ini.eraseSection("section");
    ini.close();
    return 0;
}

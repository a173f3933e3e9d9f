#include "stream/mrinifile.h"

#include <string>

#include "stream/mrreplacefile.h"
#include "stream/mrtextfile.h"

namespace {

mrString trimmed(mrString text) {
    text.trim();
    return text;
}

mrString withoutComment(const mrString& line) {
    const int comment = line.find("//", 0);
    return comment == mrString::npos ? line : line.substr(0, comment);
}

void setValue(mrValues& values, const mrString& key, const mrString& value, const mrString& comment) {
    if (mrValueItem* item = values.exist(key)) {
        item->m_value = value;
    } else {
        values.append(new mrValueItem{key, value, comment});
    }
}

template <class Item>
void deleteAll(mrList<Item*>& list) {
    for (const Item* item : list) {
        delete item;
    }
    list.clear();
}

/// Takes the item off its list, and deletes it.
template <class Item>
void deleteItem(mrList<Item*>& list, const Item* item) {
    for (auto at = list.begin(); at != list.end(); ++at) {
        if (*at == item) {
            list.erase(at);
            delete item;
            return;
        }
    }
}

}  // namespace

mrValues::~mrValues() { deleteAll(*this); }

mrValueItem* mrValues::exist(mrString key) const {
    for (mrValueItem* item : *this) {
        if (item->m_key == key) {
            return item;
        }
    }
    return nullptr;
}

mrSections::~mrSections() { deleteAll(*this); }

mrSectionItem* mrSections::exist(mrString name) const {
    for (mrSectionItem* item : *this) {
        if (item->m_name == name) {
            return item;
        }
    }
    return nullptr;
}

mrIniFile::~mrIniFile() { close(); }

bool mrIniFile::open(mrString name, bool update) {
    close();
    m_fileName = name;
    m_update = update;
    mrStringList lines;
    const mrTextFile outcome = mrReadTextFile(name, !update, lines);
    if (outcome != mrTextFile::Read) {
        m_update =
            update && outcome == mrTextFile::Missing && o_stream(name, IO_WRITE | IO_NOPATH, true).isOpen();
        return m_update;
    }
    mrSectionItem* section = nullptr;
    for (const mrString& line : lines) {
        readLine(line, section);
    }
    return true;
}

void mrIniFile::readLine(mrString line, mrSectionItem*& section) {
    const mrString text = trimmed(withoutComment(line));
    if (text.empty()) {
        return;
    }
    // The section comes first, so "a=b[c]" opens one.
    mrString name;
    if (getSection(text, name)) {
        section = madeSection(trimmed(name));
        return;
    }
    mrString key;
    mrString value;
    getValue(text, key, value);
    if (section != nullptr) {
        setValue(*section->m_values, trimmed(key), trimmed(value), "");
    }
}

void mrIniFile::close() {
    updateFile();
    m_update = false;
    deleteAll(m_sections);
}

void mrIniFile::updateFile() {
    if (m_update) {
        mrReplaceFile(m_fileName, content());
    }
}

mrString mrIniFile::content() const {
    std::string text;
    for (const mrSectionItem* section : m_sections) {
        text.append("\n[").append(section->m_name.c_str()).append("]\n");
        for (const mrValueItem* item : *section->m_values) {
            text.append(item->m_key.c_str());
            if (!(item->m_value == KeyAlone)) {
                text.append("=").append(item->m_value.c_str());
                if (!item->m_comment.empty()) {
                    text.append("\t// ").append(item->m_comment.c_str());
                }
            }
            text.append("\n");
        }
    }
    return text.c_str();
}

bool mrIniFile::getSection(mrString line, mrString& name) {
    const int open = line.find("[", 0);
    const int close = open == mrString::npos ? open : line.find("]", open);
    if (close == mrString::npos) {
        return false;
    }
    name = line.substr(open + 1, close - open - 1);
    return true;
}

bool mrIniFile::getValue(mrString line, mrString& key, mrString& value) {
    const int equals = line.find("=", 0);
    if (equals == mrString::npos) {
        key = line;
        value = KeyAlone;
    } else {
        key = line.substr(0, equals);
        value = line.substr(equals + 1);
    }
    return true;
}

bool mrIniFile::sectionExist(mrString section) const { return m_sections.exist(section) != nullptr; }

mrStringList mrIniFile::sectionNames() const {
    mrStringList names;
    for (const mrSectionItem* section : m_sections) {
        names.append(section->m_name);
    }
    return names;
}

bool mrIniFile::valueExist(mrString section, mrString key) const {
    const mrValues* values = getSectionValues(section);
    return values != nullptr && values->exist(key) != nullptr;
}

mrString mrIniFile::read(mrString section, mrString key, mrString defaultValue) const {
    const mrValues* values = getSectionValues(section);
    const mrValueItem* item = values != nullptr ? values->exist(trimmed(key)) : nullptr;
    return item != nullptr ? item->m_value : defaultValue;
}

void mrIniFile::write(mrString section) { madeSection(section); }

void mrIniFile::write(mrString section, mrString key) { write(section, key, KeyAlone, ""); }

void mrIniFile::write(mrString section, mrString key, mrString value, mrString comment) {
    const mrSectionItem* item = madeSection(section);
    key.trim();
    if (!key.empty()) {
        setValue(*item->m_values, key, value, comment);
    }
}

void mrIniFile::eraseSection(mrString section) { deleteItem(m_sections, m_sections.exist(section)); }

void mrIniFile::deleteKey(mrString section, mrString key) {
    if (mrValues* values = getSectionValues(section)) {
        deleteItem(*values, values->exist(key));
    }
}

mrValues* mrIniFile::getSectionValues(mrString section) const {
    const mrSectionItem* item = m_sections.exist(section);
    return item != nullptr ? item->m_values.get() : nullptr;
}

mrSectionItem* mrIniFile::madeSection(const mrString& name) {
    mrSectionItem* item = m_sections.exist(name);
    if (item == nullptr) {
        item = new mrSectionItem{name, std::make_unique<mrValues>()};
        m_sections.append(item);
    }
    return item;
}

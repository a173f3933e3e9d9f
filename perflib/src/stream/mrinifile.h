#pragma once

#include <memory>

#include "stream/mrstream.h"

struct mrValueItem {
    mrString m_key;
    mrString m_value;
    mrString m_comment;
};

/// The entries of one section in file order; owns them.
class mrValues : public mrList<mrValueItem*> {
  public:
    mrValues() = default;
    mrValues(const mrValues&) = delete;
    mrValues& operator=(const mrValues&) = delete;
    ~mrValues() override;
    /// The first item with that key, or null.
    mrValueItem* exist(mrString key) const;
};

struct mrSectionItem {
    mrString m_name;
    std::unique_ptr<mrValues> m_values;
};

/// The sections in file order; owns them.
class mrSections : public mrList<mrSectionItem*> {
  public:
    mrSections() = default;
    mrSections(const mrSections&) = delete;
    mrSections& operator=(const mrSections&) = delete;
    ~mrSections() override;
    mrSectionItem* exist(mrString name) const;
};

/// An ini file: read whole, changed in memory, and, in update mode, written whole when it is closed. Keys and
/// section names are case-sensitive; "//" begins a comment wherever it stands, and comments are not kept.
class mrIniFile {
  public:
    /// The value of a key that stands alone on its line, without "=".
    static constexpr const char* KeyAlone = "~~~";

    mrIniFile() = default;
    mrIniFile(const mrIniFile&) = delete;
    mrIniFile& operator=(const mrIniFile&) = delete;
    ~mrIniFile();

    /// Reads the file. A missing file is made in update mode, otherwise it is an error. False if it can't be
    /// had, or is no file of lines; such a file is never written to.
    bool open(mrString name, bool update);
    /// Writes the file in update mode and drops the content.
    void close();
    /// Writes the file beside the old one and moves it over that, so no reader meets half a file.
    void updateFile();

    bool sectionExist(mrString section) const;
    mrStringList sectionNames() const;
    /// For suites that read ini files of their own.
    bool valueExist(mrString section, mrString key) const;
    mrString read(mrString section, mrString key, mrString defaultValue) const;
    /// Make sure that the section, or the key, is there. A comment is kept for a new key only.
    void write(mrString section);
    /// For suites with keys that stand alone.
    void write(mrString section, mrString key);
    void write(mrString section, mrString key, mrString value, mrString comment);
    // For suites that write ini files of their own; the program only adds to one.
    void eraseSection(mrString section);
    void deleteKey(mrString section, mrString key);
    /// Null if the section is not there.
    mrValues* getSectionValues(mrString section) const;

    static bool getSection(mrString line, mrString& name);
    static bool getValue(mrString line, mrString& key, mrString& value);

  private:
    /// Takes one line of the file; `section` is the one that it stands in, null before the first.
    void readLine(mrString line, mrSectionItem*& section);
    mrSectionItem* madeSection(const mrString& name);
    mrString content() const;

    mrString m_fileName;
    mrSections m_sections;
    bool m_update = false;
};

#pragma once

#include "stream/mrinifile.h"
#include "stream/mrjournal.h"

/// A value given on the command line by -d.
struct mrData {
    mrString m_name;
    mrString m_value;
    bool m_read = false;
};

class mrDataList : public mrList<mrData> {
  public:
    /// Takes "name=value". A value with a "=" of its own keeps what stands before it.
    void set(mrString pair);
    /// Both are trimmed; a new entry replaces the old one of that name. An empty name is passed over.
    void set(mrString name, mrString value);
    iterator find(mrString name);
    bool get(mrString name, mrString& value);
};

/// The source of parameter values, in this order: the -d list, the ini file, the console, the default.
class mrIStream {
  public:
    enum Source : int {
        FromDefault = 0,
        FromConsole = 1,
        FromIniFile = 2,
        FromDataList = 3,
        FromNowhere = 4
    };

    mrIStream() = default;
    mrIStream(const mrIStream&) = delete;
    mrIStream& operator=(const mrIStream&) = delete;
    virtual ~mrIStream();

    /// Connects a console, or none (null). Streams other than c_in are deleted when they are replaced. After
    /// the end of the dialogue none is connected any more.
    void setIStream(i_stream* stream);
    void deleteIStream();
    bool hasIStream() const { return m_istream != nullptr; }
    /// True once a question was answered by a signal: all that follow take their defaults unasked.
    bool dialogueEnded() const { return m_ended; }

    /// Opens the ini file, with `update` for writing back every value asked for. False if it can't be had.
    bool setIniFile(mrString name, bool update);
    /// Closes it; in update mode that writes it.
    void deleteIniFile();
    mrIniFile* iniFile() const { return m_iniFile.get(); }
    bool iniWrite() const { return m_iniFile != nullptr && m_iniWrite; }
    /// Returns the section before.
    mrString setIniSection(mrString section);

    mrDataList& dataList() { return m_dataList; }

    /// The value of `key`. `caption` is the console's question, `comment` goes to the ini file beside a new
    /// value.
    mrString getItemValue(mrString key, mrString defaultValue, mrString caption, mrString comment);
    /// Asks on the console; an empty answer, or none, takes the default.
    mrString getItemValue(i_stream& in, mrString caption, mrString defaultValue);
    int lastSource() const { return m_lastSource; }

  private:
    static mrJournal::Answer answerOf(i_stream& in, const mrString& question);

    i_stream* m_istream = nullptr;
    std::unique_ptr<mrIniFile> m_iniFile;
    mrDataList m_dataList;
    mrString m_iniSection = "Metrig";
    bool m_iniWrite = false;
    bool m_ended = false;
    int m_lastSource = FromNowhere;
};

extern mrIStream g_istrm;

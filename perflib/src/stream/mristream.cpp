#include "stream/mristream.h"

#include "machine/mrstop.h"
#include "stream/mrfilenames.h"

void mrDataList::set(mrString pair) {
    mrString name;
    mrString value;
    pair.parse(name, value, "=");
    set(name, value);
}

void mrDataList::set(mrString name, mrString value) {
    name.trim();
    value.trim();
    if (name.empty()) {
        return;
    }
    const iterator old = find(name);
    if (old != end()) {
        erase(old);
    }
    append({name, value, false});
}

mrDataList::iterator mrDataList::find(mrString name) {
    iterator at = begin();
    while (at != end() && !(at->m_name == name)) {
        ++at;
    }
    return at;
}

bool mrDataList::get(mrString name, mrString& value) {
    const iterator at = find(name);
    if (at == end()) {
        return false;
    }
    value = at->m_value;
    at->m_read = true;
    return true;
}

mrIStream::~mrIStream() { deleteIStream(); }

void mrIStream::setIStream(i_stream* stream) {
    if (stream != m_istream && !m_ended) {
        deleteIStream();
        m_istream = stream;
    }
}

void mrIStream::deleteIStream() {
    if (m_istream != &c_in) {
        delete m_istream;
    }
    m_istream = nullptr;
}

bool mrIStream::setIniFile(mrString name, bool update) {
    deleteIniFile();
    m_iniFile = std::make_unique<mrIniFile>();
    m_iniWrite = update;
    return m_iniFile->open(mrFileNames::getInPath(name), update);
}

void mrIStream::deleteIniFile() {
    m_iniFile.reset();
    m_iniWrite = false;
}

mrString mrIStream::setIniSection(mrString section) {
    mrString before = m_iniSection;
    m_iniSection = section;
    return before;
}

mrString mrIStream::getItemValue(mrString key, mrString defaultValue, mrString caption, mrString comment) {
    mrString value;
    m_lastSource = m_istream != nullptr ? FromConsole : FromDefault;
    if (m_dataList.get(key, value)) {
        m_lastSource = FromDataList;
    } else if (m_iniFile != nullptr) {
        value = m_iniFile->read(m_iniSection, key, "");
        if (!value.empty()) {
            m_lastSource = FromIniFile;
        }
    }
    if (m_lastSource == FromConsole) {
        value = getItemValue(*m_istream, caption.empty() ? key : caption, defaultValue);
    } else if (m_lastSource == FromDefault) {
        value = defaultValue;
    }
    if (iniWrite()) {
        m_iniFile->write(m_iniSection, key, value, comment);
    }
    return value;
}

mrString mrIStream::getItemValue(i_stream& in, mrString caption, mrString defaultValue) {
    const mrJournal::Answer* earlier = g_journal.nextAnswer();
    const mrJournal::Answer answer =
        earlier != nullptr ? *earlier
                           : answerOf(in, mrString("\n ") + caption + " [" + defaultValue + "] = ");
    if (answer.left) {
        deleteIStream();
        m_ended = true;
    }
    m_lastSource = answer.text.empty() ? FromDefault : FromConsole;
    return answer.text.empty() ? defaultValue : answer.text;
}

mrJournal::Answer mrIStream::answerOf(i_stream& in, const mrString& question) {
    c_out << question;
    c_out.flush();
    g_journal.ask();
    mrJournal::Answer answer;
    answer.left = !mrStop::answered([&] { in.getline(answer.text); });
    if (answer.left) {
        answer.text = "";
    }
    g_journal.answer(answer);
    return answer;
}

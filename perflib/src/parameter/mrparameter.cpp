#include "parameter/mrparameter.h"

#include "machine/mrsignal.h"
#include "stream/mrcstream.h"
#include "stream/mristream.h"
#include "stream/mrjournal.h"
#include "stream/mrostream.h"

mrParameter::mrParameter(mrString name, mrString prompt) { setName(name, prompt); }

void mrParameter::setName(mrString name, mrString prompt) {
    m_name = name;
    m_promptText = prompt.empty() ? name : prompt;
}

void mrParameter::reset() { m_started = false; }

mrString mrParameter::valueString() const { return ""; }

mrString mrParameter::defaultString() const { return valueString(); }

mrString mrParameter::validString() const { return ""; }

mrString mrParameter::description() const { return m_name + " = " + defaultString(); }

mrString mrParameter::prompt() const {
    const mrString valid = validString();
    return valid.empty() ? m_promptText : m_promptText + " {" + valid + "}";
}

void mrParameter::resetIterator() { m_started = false; }

bool mrParameter::firstValue() {
    resetIterator();
    return nextValue();
}

bool mrParameter::nextValue() {
    m_started = !m_started;
    return m_started;
}

bool mrParameter::isDeprecatedParm() { return false; }

bool mrParameter::isDeprecatedValue() { return false; }

bool mrParameter::setDeprecatedFlag(bool) { return false; }

mrOStream& mrParameter::toOStream(mrOStream& stream) const {
    return m_name.empty() ? stream : stream << m_name << "=" << valueString() << " ";
}

int mrParameter::colmIndex() const { return -1; }

mrCStream& mrParameter::toColumn(mrCStream& stream, const mrString& text) const {
    const int index = colmIndex();
    if (index < 0) {
        stream.setNextColm(text);
    } else {
        stream.setColm(index, text);
    }
    return stream;
}

mrCStream& mrParameter::toCStream(mrCStream& stream) const {
    if (m_name.empty()) {
        return toColumn(stream, "");
    }
    if (m_deprecatedNow) {
        return toColumn(stream, m_deprecatedText);
    }
    if ((m_flags & QuotedValue) != 0) {
        return toColumn(stream, mrString(" \"") + valueString() + "\"");
    }
    return toColumn(stream, valueString());
}

mrCStream& mrParameter::nameToCStream(mrCStream& stream) const { return toColumn(stream, m_name); }

void mrParameter::describeSelf() const { g_ostrm << " " << description() << "\n"; }

mrIStream& mrParameter::fromIStream(mrIStream& stream) {
    if (m_name.empty()) {
        return stream;
    }
    if (!m_active) {
        describeSelf();
        return stream;
    }
    const OutputLevel level = g_ostrm.outLevel();
    if (stream.hasIStream()) {
        g_ostrm.setOutLevel(MSG_ERR | MSG_WARN | MSG_PERF);
    }
    try {
        _g_signal.guard([&] { readText(stream); });
    } catch (const mrException& refusal) {
        g_ostrm << "-" << refusal.info() << "\n";
        g_journal.complain(m_name + ": " + refusal.info());
    }
    describeSelf();
    if (stream.lastSource() == mrIStream::FromConsole) {
        c_out.flush();
    }
    g_ostrm.setOutLevel(level);
    return stream;
}

void mrParameter::readText(mrIStream& stream) {
    translate(stream.getItemValue(m_name, defaultString(), prompt(), validString()));
}

void mrParameter::translate(mrString) {}

#include "session/mrcommandlist.h"

#include <string>

#include "session/mr.h"
#include "stream/mrjournal.h"
#include "stream/mrtextfile.h"

namespace {

/// Both "-f" and "/f" are options.
bool isOption(const mrString& token) { return token.length() >= 2 && (token[0] == '/' || token[0] == '-'); }

bool isPrefix(char c) { return c == '-' || c == '+' || c == '='; }

/// What is behind the letter of the key is nothing yet, or only a prefix.
bool isWithoutArg(const mrString& rest) { return rest.empty() || (rest.length() == 1 && isPrefix(rest[0])); }

}  // namespace

bool mrCommandKey::setArg(mrString option, mrString next) {
    if (!isOption(option)) {
        return false;
    }
    m_key = option[1];
    const mrString rest = option.substr(2);
    m_arg = isWithoutArg(rest) ? rest + next : rest;
    return true;
}

bool mrCommandKey::getArg(char key, mrString& arg) const {
    if (m_key != key) {
        return false;
    }
    arg = m_arg;
    return true;
}

void mrCommandList::setArgs(int count, char** values) {
    mrStringList tokens;
    for (int i = 0; i < count; ++i) {
        tokens.append(values[i]);
    }
    setArgs(tokens);
}

void mrCommandList::setArgs(const mrStringList& tokens) { insertArgs(tokens, end()); }

void mrCommandList::setArgs(const char* text) { insertArgs(text, end()); }

void mrCommandList::insertArgs(const mrStringList& tokens, iterator position) {
    for (auto token = tokens.begin(); token != tokens.end();) {
        const mrString& option = *token;
        ++token;
        // Taken whether the option needs it or not, so that a word never stands for itself.
        mrString value;
        if (token != tokens.end() && !isOption(*token)) {
            value = *token;
            ++token;
        }
        if (!insertArg(option, value, position)) {
            g_journal.complain(option + ": ignored: no key");
        } else if (!value.empty() && !isWithoutArg(option.substr(2))) {
            g_journal.complain(value + ": ignored: it belongs to no key");
        }
    }
}

void mrCommandList::insertArgs(const char* text, iterator position) {
    mrStringList tokens;
    mrString(text).parse(tokens, " \";\t\r\n");
    insertArgs(tokens, position);
}

bool mrCommandList::insertArg(mrString option, mrString next, iterator position) {
    mrCommandKey key;
    if (!key.setArg(option, next)) {
        return false;
    }
    insert(position, key);
    return true;
}

void mrCommandList::setArg(char key, mrString arg) {
    mrString option = "-";
    option << key;
    setArg(option, arg);
}

void mrCommandList::setArg(mrString option, mrString next) { insertArg(option, next, end()); }

bool mrCommandList::isKey(char key) const {
    mrString arg;
    return getArg(key, arg);
}

bool mrCommandList::getArg(char key, mrString& arg) const {
    for (auto at = end(); at != begin();) {
        --at;
        if (at->getArg(key, arg)) {
            return true;
        }
    }
    return false;
}

bool mrCommandList::insertFromFile(mrString name, iterator position) {
    mrStringList lines;
    const mrString path = name.empty() ? name : mrSession::getInPath(name);
    if (mrReadTextFile(path, true, lines) != mrTextFile::Read) {
        return false;
    }
    std::string text;
    for (const mrString& line : lines) {
        text.append(line.c_str()).push_back(' ');
    }
    insertArgs(text.c_str(), position);
    return true;
}

#pragma once

#include "text/mrstring.h"

/// One key of the command line with its argument; blank when empty.
struct mrCommandKey {
    char m_key = ' ';
    mrString m_arg;

    /// Takes one token apart. `next` is the argument, or its rest, where the token itself holds none. False
    /// if the token is no option.
    bool setArg(mrString option, mrString next);
    bool getArg(char key, mrString& arg) const;
};

/// The keys in the order of the command line, duplicates kept. The only place that knows the syntax of
/// options.
class mrCommandList : public mrList<mrCommandKey> {
  public:
    void setArgs(int count, char** values);
    void setArgs(const mrStringList& tokens);
    void setArgs(const char* text);
    void insertArgs(const mrStringList& tokens, iterator position);
    /// Words between blanks, semicolons and line ends; double quotes keep a word together.
    void insertArgs(const char* text, iterator position);
    bool insertArg(mrString option, mrString next, iterator position);
    // Append a key, for sessions of suites; the last of a kind counts.
    void setArg(char key, mrString arg);
    void setArg(mrString option, mrString next);

    bool isKey(char key) const;
    /// The argument of the last record of that key.
    bool getArg(char key, mrString& arg) const;
    /// The keys of a file, as if its lines stood on the command line; false if it can't be read.
    bool insertFromFile(mrString name, iterator position);
};

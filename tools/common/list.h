// The answer of a command that is a list: objects that go out one by one.
#pragma once

#include "common/json.h"

#include <string>

namespace tool {

// The form in which the command line asks for an answer. A single object is the same with json and jsonl.
enum class Form { text, json, jsonl, csv };

// One array with json, a line an object with jsonl, with csv a line an object under one with the keys of the
// first. Whatever ends the command, the array is closed.
class List {
public:
    explicit List(Form form) : m_form(form) {}
    ~List();
    List(const List&) = delete;
    List& operator=(const List&) = delete;

    void add(const Json& object); // is written when much has come together
    void flush();                 // is written now; throws BrokenPipe or Failure
    void end();                   // nothing more comes; throws as well

private:
    Form m_form;
    bool m_begun = false;
    bool m_ended = false;
    std::string m_pending;
};

} // namespace tool

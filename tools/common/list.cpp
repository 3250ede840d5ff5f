#include "common/list.h"

#include "common/output.h"

#include <exception>
#include <utility>

namespace tool {

namespace {

constexpr size_t kFlushSize = 65536;

} // namespace

List::~List()
{
    try {
        end();
    } catch (const std::exception&) { // what ends the command is told already
    }
}

void List::add(const Json& object)
{
    if (m_form == Form::csv) {
        if (!m_begun)
            m_pending += object.csvHeader();
        m_pending += object.csvLine();
    } else if (m_form == Form::json) {
        std::string line = object.line();
        line.pop_back(); // a comma may follow
        m_pending += (m_begun ? ",\n" : "[\n") + line;
    } else {
        m_pending += object.line();
    }
    m_begun = true;
    if (m_pending.size() >= kFlushSize)
        flush();
}

void List::flush()
{
    const std::string text = std::move(m_pending);
    m_pending.clear();
    print(text);
}

void List::end()
{
    if (m_ended)
        return;
    m_ended = true;
    if (m_form == Form::json)
        m_pending += m_begun ? "\n]\n" : "[]\n";
    flush();
}

} // namespace tool

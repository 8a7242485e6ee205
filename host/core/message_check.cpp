#include "message_check.h"

#include "traced_words.h"
#include "zrscreenmod/messagetable.h"

namespace zrhost {

namespace {

/// Whether the first value of a message is a handle, which has a name in a trace.
bool namesHandle(const std::string& message)
{
    for (const zr::MessageRow& row : zr::kMessages) {
        if (message == row.name)
            return row.wParam == zr::MessageValue::Play || row.wParam == zr::MessageValue::Edit
                   || row.wParam == zr::MessageValue::Ext;
    }
    return false;
}

} // namespace

void MessageCheck::expect(const std::vector<std::string>& words)
{
    const std::string& value = words.at(2);
    const std::string lasting = value == "!null"           ? value
                                : namesHandle(words.at(1)) ? "handle"
                                                           : decodeText(value, false);
    ++m_missing[words.at(1) + ' ' + lasting + ' ' + words.at(3)];
}

std::vector<std::string> MessageCheck::differences() const
{
    std::vector<std::string> lines;
    for (const auto& [words, missing] : m_missing) {
        if (missing > 0)
            lines.push_back("missing " + std::to_string(missing) + " x " + words);
        else if (missing < 0)
            lines.push_back("not expected " + std::to_string(-missing) + " x " + words);
    }
    return lines;
}

} // namespace zrhost

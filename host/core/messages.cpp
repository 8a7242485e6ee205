#include "messages.h"

#include "host_platform.h"
#include "zrscreenmod/messagetable.h"

#include <cstdint>
#include <cstdio>

namespace zrhost {

namespace {

using zr::MessageValue;

constexpr const char* kStreamRequest = "stream request";

std::string hex(unsigned long long value)
{
    char text[32];
    std::snprintf(text, sizeof text, "0x%llx", value);
    return text;
}

std::string textAt(unsigned long long address)
{
    const char* const text = reinterpret_cast<const char*>(static_cast<std::uintptr_t>(address));
    return fromLocal8Bit(text ? text : "");
}

std::string dateAt(unsigned long long address)
{
    const auto* const at =
        reinterpret_cast<const ZRDateRecord*>(static_cast<std::uintptr_t>(address));
    return std::to_string(at->year) + '-' + std::to_string(at->month) + '-'
           + std::to_string(at->day) + 'T' + std::to_string(at->hour) + ':'
           + std::to_string(at->minute);
}

std::string describeFirst(MessageValue kind, unsigned long long value)
{
    switch (kind) {
    case MessageValue::UserId:
        return textAt(value);
    case MessageValue::Date:
        return dateAt(value);
    case MessageValue::Number:
        return std::to_string(static_cast<long long>(value));
    default:
        return hex(value);
    }
}

/// What stays the same from one run to the next.
std::string lasting(MessageValue kind, unsigned long long value)
{
    switch (kind) {
    case MessageValue::Person:
        return value != 0 ? "person" : "!null";
    case MessageValue::Play:
    case MessageValue::Edit:
    case MessageValue::Ext:
        return value != 0 ? "handle" : "!null";
    case MessageValue::UserId:
        return textAt(value);
    case MessageValue::Date:
        return dateAt(value);
    default:
        return std::to_string(static_cast<long long>(value));
    }
}

} // namespace

std::string MessageWords::line() const
{
    return (name == kStreamRequest ? "" : "message ") + name + (values.empty() ? "" : " ") + values;
}

MessageWords describeMessage(unsigned long message, unsigned long long wParam, long long lParam,
                             bool ofDatePicker, const HostValueName& nameOf)
{
    const zr::MessageRow* const row = zr::messageRow(message, ofDatePicker);
    if (!row)
        return {message, std::to_string(message),
                "wParam=" + hex(wParam) + " lParam=" + std::to_string(lParam)};
    const std::string name = row->lParam == MessageValue::HostValue ? nameOf(lParam) : "";
    const std::string value = name.empty() ? std::to_string(lParam) : name;
    if (row->wParam == MessageValue::Person && message >= 2 && message <= 4)
        return {message, kStreamRequest, "grade=" + std::to_string(message) + " for " + value};
    std::string values;
    if (row->wParam != MessageValue::Nothing)
        values = std::string(row->label) + '=' + describeFirst(row->wParam, wParam);
    if (row->lParam == MessageValue::HostValue)
        values += (values.empty() ? "hostValue=" : " hostValue=") + value;
    if (row->lParam == MessageValue::Number)
        values += lParam != 0 ? " focus=new" : " focus=old";
    return {message, row->name, values};
}

std::string lastingWords(unsigned long message, unsigned long long wParam, long long lParam,
                         bool ofDatePicker)
{
    const zr::MessageRow* const row = zr::messageRow(message, ofDatePicker);
    return (row ? row->name : std::to_string(message)) + ' '
           + lasting(row ? row->wParam : MessageValue::Number, wParam) + ' '
           + std::to_string(lParam);
}

} // namespace zrhost

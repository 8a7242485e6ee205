#include "tracewords.h"

#include "boundary.h"
#include "picturechecksum.h"
#include "platform.h"
#include "scenariowords.h"

#include <cstdint>
#include <cstring>

namespace {

using zr::Kind;
using zr::TextEncoding;

const QByteArray kUnreadable = QByteArrayLiteral("!unreadable");

QByteArray hostTextWord(const char* text, TextEncoding encoding)
{
    if (!text)
        return "!null";
    const qptrdiff length = platform::readableStringLength(text);
    if (length < 0)
        return kUnreadable;
    return zr::textWord(QByteArray(text, static_cast<int>(length)), encoding);
}

QByteArray textArgumentWord(const zr::Argument& argument, const void* address)
{
    const TextEncoding encoding =
        argument.encoding == zr::Encoding::Local8Bit ? TextEncoding::Local8Bit : TextEncoding::Utf8;
    if (!argument.byValue)
        return hostTextWord(static_cast<const char*>(address), encoding);
    const auto* text = static_cast<const std::string*>(address);
    return zr::textWord(QByteArray::fromStdString(*text), encoding);
}

/// So many numbers of 32 bits with commas between them.
QByteArray numbersWord(const void* address, std::size_t count)
{
    if (!address)
        return "!null";
    if (!platform::isReadable(address, count * sizeof(std::int32_t)))
        return kUnreadable;
    QByteArray word;
    for (std::size_t i = 0; i < count; ++i) {
        std::int32_t number = 0;
        std::memcpy(&number, static_cast<const char*>(address) + i * sizeof number, sizeof number);
        word += (i > 0 ? "," : "") + QByteArray::number(number);
    }
    return word;
}

/// The text that an export has written, if it has: the buffer holds anything else otherwise.
QByteArray writtenText(const void* buffer, const void* length, long long answer)
{
    if (answer <= 0 || numbersWord(length, 1) != QByteArray::number(answer))
        return {};
    const QByteArray text(static_cast<const char*>(buffer), static_cast<int>(answer));
    return ' ' + zr::textWord(text, TextEncoding::Utf8);
}

QByteArray orderWord(const void* address)
{
    const auto* order = static_cast<const std::map<int, std::string>*>(address);
    if (!platform::isReadable(order, sizeof(std::map<int, std::string>)))
        return kUnreadable;
    QByteArrayList parts;
    for (const auto& [position, id] : *order)
        parts.append(QByteArray::number(position) + '=' + QByteArray::fromStdString(id));
    return zr::listWord(parts);
}

QByteArray watermarkWord(const void* address)
{
    const auto* info = static_cast<const __WTMark_Info*>(address);
    if (!info)
        return "!null";
    if (!boundary::isReadableInfo(info))
        return kUnreadable;
    return zr::listWord({QByteArray::number(info->cloundType),
                         QString::fromLocal8Bit(info->name.c_str()).toUtf8(), info->phone.c_str(),
                         info->email.c_str(), info->bEnabled ? "on" : "off"});
}

QByteArray flagWord(long long flag)
{
    return flag == 0 ? "off" : flag == 1 ? "on" : QByteArray::number(flag);
}

QByteArray dateWord(const void* address)
{
    ZRDateRecord at{};
    if (!platform::isReadable(address, sizeof at))
        return kUnreadable;
    std::memcpy(&at, address, sizeof at);
    return QByteArray::number(at.year) + '-' + QByteArray::number(at.month) + '-'
           + QByteArray::number(at.day) + 'T' + QByteArray::number(at.hour) + ':'
           + QByteArray::number(at.minute);
}

QByteArray messageValueWord(zr::MessageValue value, unsigned long long number,
                            const TraceNames& names)
{
    const auto* const address = reinterpret_cast<const void*>(static_cast<quintptr>(number));
    switch (value) {
    case zr::MessageValue::Person:
        return address ? "person" : "!null";
    case zr::MessageValue::Play:
        return names.of(Kind::Play, address);
    case zr::MessageValue::Edit:
        return names.of(Kind::LineEdit, address);
    case zr::MessageValue::Ext:
        return names.of(Kind::Ext, address);
    case zr::MessageValue::UserId:
        return hostTextWord(static_cast<const char*>(address), TextEncoding::Local8Bit);
    case zr::MessageValue::Date:
        return dateWord(address);
    default:
        return QByteArray::number(static_cast<long long>(number));
    }
}

} // namespace

TracedPicture readPicture(const void* record, std::size_t rowStep)
{
    TracedPicture picture;
    picture.word = record ? kUnreadable : "!null";
    const auto frame = boundary::copyFrame(record);
    if (!frame)
        return picture;
    picture.word = QByteArray::number(frame->width) + 'x' + QByteArray::number(frame->height) + '#';
    if (zr::isFrameSizeValid(frame->width, frame->height)) {
        const zr::I420Layout layout = zr::sourceLayout(frame->width, frame->height);
        if (platform::isReadable(frame->pData, layout.totalBytes())) {
            picture.checksum = zr::pictureChecksum(frame->pData, layout, rowStep);
            picture.bytes = frame->pData;
            picture.count = static_cast<qint64>(layout.totalBytes());
        }
    }
    constexpr int kDigits = 8; // enough for a reader
    picture.word += picture.bytes ? picture.checksum.left(kDigits) : "none";
    return picture;
}

QByteArray argumentWord(const zr::Argument& argument, const calltrace::Given& given,
                        TraceNames& names)
{
    switch (argument.kind) {
    case Kind::Window:
        return names.ofWindow(given.address);
    case Kind::Notify:
        return !given.address                           ? "!null"
               : platform::isReadable(given.address, 1) ? "notify"
                                                        : kUnreadable;
    case Kind::HostValue:
        return QByteArray::number(reinterpret_cast<qintptr>(given.address));
    case Kind::UserId:
    case Kind::Text:
        return textArgumentWord(argument, given.address);
    case Kind::Rectangle:
        return numbersWord(given.address, 4);
    case Kind::Point:
        return numbersWord(given.address, 2);
    case Kind::Order:
        return orderWord(given.address);
    case Kind::Watermark:
        return watermarkWord(given.address);
    case Kind::Buffer:
        return given.address ? "buffer" : "!null";
    case Kind::Length:
        return numbersWord(given.address, 1);
    case Kind::Flag:
        return flagWord(given.number);
    case Kind::Number:
        return QByteArray::number(given.number);
    default:
        return names.of(argument.kind, given.address);
    }
}

QByteArray answerWords(const zr::Export& row, const calltrace::Given* arguments,
                       const calltrace::Given& answer, const TraceNames& names)
{
    if (isHandle(row.answer.kind))
        return names.of(row.answer.kind, answer.address);
    if (row.answer.kind == Kind::Nothing)
        return "done";
    if (row.answer.kind == Kind::Rectangle)
        return numbersWord(answer.address, 4);
    QByteArray words = QByteArray::number(answer.number);
    for (std::size_t i = 0; i + 1 < row.argumentCount; ++i) {
        if (row.arguments[i].kind == Kind::Buffer)
            words += writtenText(arguments[i].address, arguments[i + 1].address, answer.number);
    }
    return words;
}

QByteArray messageWords(const void* receiver, const calltrace::Message& message,
                        const TraceNames& names)
{
    const auto [kind, name] = names.receiver(receiver);
    const zr::MessageRow* const row = zr::messageRow(message.id, kind == Kind::DatePicker);
    const auto word = [&](zr::MessageValue value, unsigned long long number) {
        return ' ' + messageValueWord(value, number, names);
    };
    return name + ' ' + (row ? QByteArray(row->name) : QByteArray::number(quint64(message.id)))
           + word(row ? row->wParam : zr::MessageValue::Number, message.wParam)
           + word(row ? row->lParam : zr::MessageValue::Number,
                  static_cast<unsigned long long>(message.lParam));
}

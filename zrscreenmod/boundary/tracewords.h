// The arguments, answers and messages of a trace as words of the scenario language.
#pragma once

#include "calltrace.h"
#include "messagetable.h"
#include "tracenames.h"

/// A picture that a host delivers: what is written of it, and its bytes where they can be read.
struct TracedPicture
{
    QByteArray word; ///< "640x360#0f1e2d3c"
    QByteArray checksum;
    const uchar* bytes = nullptr;
    qint64 count = 0;
};

/// Reads a frame record of the host's, whatever it is. @param rowStep see zr::pictureChecksum
[[nodiscard]] TracedPicture readPicture(const void* record, std::size_t rowStep);

/// What an argument is. What cannot be read is "!unreadable". Pictures have words of their own.
[[nodiscard]] QByteArray argumentWord(const zr::Argument& argument, const calltrace::Given& given,
                                      TraceNames& names);

/// What an export has answered, with the text that it has written.
/// @param arguments as many as the row has
[[nodiscard]] QByteArray answerWords(const zr::Export& row, const calltrace::Given* arguments,
                                     const calltrace::Given& answer, const TraceNames& names);

/// "s1 ZRMSG_VIDEO_SHOWN person 7".
[[nodiscard]] QByteArray messageWords(const void* receiver, const calltrace::Message& message,
                                      const TraceNames& names);

// Calls of any export with arguments that are known at run time only: a row of the exports' table
// tells what each is.
#pragma once

#include "native_rect.h"
#include "zrscreenmod/exports.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace zrhost {

/// One argument, with what it points to while the call runs.
struct Value
{
    void* handle = nullptr; ///< also a window and a host value
    ZRNotify notify = nullptr;
    std::string text; ///< also a buffer
    tagRECT rect{};
    tagPOINT point{};
    std::map<int, std::string> order;
    __WTMark_Info watermark{};
    VantrelRTCVideoFrameQT frame{};
    long long number = 0;
    int length = 0;
    /// What a pointer or a reference names in place of one of the members above, wrong or not.
    std::optional<void*> address;
};

/// What an export has answered: one of them, as its row says.
struct Answer
{
    void* handle = nullptr;
    long long number = 0;
    ZRRect rect{};
};

/// @param values as many as the row has arguments; what the export writes is in them afterwards
Answer callExport(const zr::Exports& exports, const zr::Export& row, std::vector<Value>& values);

/// Calls the export that ends handles of this kind by themselves; nothing for a participant's.
void releaseHandle(const zr::Exports& exports, zr::Kind kind, void* handle);

} // namespace zrhost

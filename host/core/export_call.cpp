#include "export_call.h"

#include <type_traits>
#include <utility>

namespace zrhost {

namespace {

/// The member that a pointer to a T names.
template<typename T>
T* memberOf(Value& value)
{
    using Member = std::remove_const_t<T>;
    if constexpr (std::is_same_v<Member, char>)
        return value.text.data();
    else if constexpr (std::is_same_v<Member, tagRECT>)
        return &value.rect;
    else if constexpr (std::is_same_v<Member, tagPOINT>)
        return &value.point;
    else if constexpr (std::is_same_v<Member, std::map<int, std::string>>)
        return &value.order;
    else if constexpr (std::is_same_v<Member, __WTMark_Info>)
        return &value.watermark;
    else {
        static_assert(std::is_same_v<Member, int>, "no Value can be passed here");
        return &value.length;
    }
}

template<typename T>
T as(const zr::Argument& argument, Value& value)
{
    if constexpr (std::is_same_v<T, ZRNotify>) {
        return value.notify;
    } else if constexpr (std::is_same_v<T, std::string>) {
        return value.text;
    } else if constexpr (!std::is_pointer_v<T>) {
        return static_cast<T>(value.number);
    } else {
        if (value.address)
            return static_cast<T>(*value.address);
        if constexpr (std::is_same_v<T, void*>)
            return argument.kind == zr::Kind::Picture ? &value.frame : value.handle;
        else if constexpr (std::is_same_v<T, HWND>)
            return static_cast<T>(value.handle);
        else
            return memberOf<std::remove_pointer_t<T>>(value);
    }
}

template<typename Result, typename... Arguments, std::size_t... at>
Answer call([[maybe_unused]] const zr::Export& row, Result(ZR_CALL* function)(Arguments...),
            [[maybe_unused]] std::vector<Value>& values, std::index_sequence<at...>)
{
    const auto passing = reinterpret_cast<Result(ZR_CALL*)(zr::Passed<Arguments>...)>(
        reinterpret_cast<void (*)()>(function));
    const auto run = [&] {
        return passing(as<zr::Passed<Arguments>>(row.arguments[at], values[at])...);
    };
    Answer answer;
    if constexpr (std::is_void_v<Result>)
        run();
    else if constexpr (std::is_same_v<Result, void*>)
        answer.handle = run();
    else if constexpr (std::is_same_v<Result, ZRRect>)
        answer.rect = run();
    else
        answer.number = run();
    return answer;
}

template<typename Result, typename... Arguments>
Answer call(const zr::Export& row, Result(ZR_CALL* function)(Arguments...),
            std::vector<Value>& values)
{
    return call(row, function, values, std::index_sequence_for<Arguments...>());
}

} // namespace

Answer callExport(const zr::Exports& exports, const zr::Export& row, std::vector<Value>& values)
{
    Answer answer;
    exports.forEach([&](const zr::Export& candidate, auto function) {
        if (&candidate == &row)
            answer = call(row, function, values);
    });
    return answer;
}

void releaseHandle(const zr::Exports& exports, zr::Kind kind, void* handle)
{
    exports.forEach([&](const zr::Export& row, auto function) {
        if constexpr (std::is_same_v<decltype(function), decltype(&::ZRScreen_Release)>) {
            if (row.arguments[0].kind == kind && row.arguments[0].use == zr::Use::Ends)
                function(handle);
        }
    });
}

} // namespace zrhost

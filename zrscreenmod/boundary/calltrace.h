// The trace: every call of an export and every message, in the order in which they begin, as a
// scenario that the demonstration host replays. docs/trace.md tells what is in it.
#pragma once

#include "exports.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <tuple>
#include <type_traits>
#include <utility>

namespace calltrace {

inline std::atomic<bool> g_on{false};

/// Whether there is a trace: all that an export asks where there is none. Any thread.
[[nodiscard]] inline bool isOn()
{
    return g_on.load(std::memory_order_relaxed);
}

/// Begins a trace if ZRSCREEN_TRACE names a file. GUI thread.
void beginIfAsked();
/// The user's mouse is not recorded from here on. GUI thread.
void endInput();
/// Any thread; nothing without a trace.
void end();

/// An argument or an answer: the address that a pointer or a reference is, or at which a value
/// lies; else a number.
struct Given
{
    const void* address = nullptr;
    long long number = 0;
};

struct Message
{
    unsigned long id;
    unsigned long long wParam;
    long long lParam;
};

// Any thread, and silent where there is no trace (any more). No lock is held when they return.

/// Whether a call that reaches an export is to be recorded: not the one that recordCall() makes.
[[nodiscard]] bool isToBeRecorded() noexcept;
/// @return what endCall() knows the call by
std::uint64_t beginCall(const zr::Export& row, const Given* arguments) noexcept;
void endCall(std::uint64_t serial, const zr::Export& row, const Given* arguments,
             const Given& answer) noexcept;
/// Tells which play handle the call under way on this thread is going to answer: messages from
/// inside name it before that.
void announce(const void* play) noexcept;

/// While a host is told something.
class MessageScope
{
public:
    /// @param record of the handle whose host hears the message
    MessageScope(const void* record, const Message& message) noexcept;
    ~MessageScope();
    MessageScope(const MessageScope&) = delete;
    MessageScope& operator=(const MessageScope&) = delete;

private:
    bool m_recorded = false;
};

template<typename T>
Given givenBy(const T& value)
{
    if constexpr (std::is_same_v<T, ZRNotify>)
        return {reinterpret_cast<const void*>(value), 0};
    else if constexpr (std::is_pointer_v<T>)
        return {value, 0};
    else if constexpr (std::is_class_v<T>)
        return {&value, 0};
    else
        return {nullptr, static_cast<long long>(value)};
}

/// Calls an export once more, from inside itself, and records the call.
template<typename Result, typename... Parameters, typename... Arguments>
Result recordCall(const zr::Export& row, Result(ZR_CALL* function)(Parameters...),
                  const std::tuple<Arguments...>& arguments)
{
    static_assert(std::is_same_v<std::tuple<zr::Passed<Parameters>...>, std::tuple<Arguments...>>,
                  "not the arguments of the export, references as addresses");
    const auto passing = reinterpret_cast<Result(ZR_CALL*)(zr::Passed<Parameters>...)>(
        reinterpret_cast<void (*)()>(function));
    const auto run = [&](const Arguments&... argument) -> Result {
        const std::array<Given, sizeof...(Arguments) + 1> given{givenBy(argument)..., Given()};
        const std::uint64_t serial = beginCall(row, given.data());
        if constexpr (std::is_void_v<Result>) {
            passing(argument...);
            endCall(serial, row, given.data(), {});
        } else {
            const Result answer = passing(argument...);
            endCall(serial, row, given.data(), givenBy(answer));
            return answer;
        }
    };
    return std::apply(run, arguments);
}

/// What an export answers that does nothing.
template<typename Result, typename... Parameters>
constexpr Result refuse([[maybe_unused]] const zr::Export& row,
                        Result(ZR_CALL* /*function*/)(Parameters...))
{
    if constexpr (std::is_same_v<Result, ZRRect>)
        return {0, 0, row.answer.whenRefused, row.answer.whenRefused};
    else if constexpr (std::is_pointer_v<Result>)
        return nullptr;
    else if constexpr (!std::is_void_v<Result>)
        return row.answer.whenRefused;
}

} // namespace calltrace

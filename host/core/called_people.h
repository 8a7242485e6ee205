// What calls that are made by name mean for the participants.
#pragma once

#include "export_call.h"

#include <memory>
#include <vector>

namespace zrhost {

struct Participant;
using People = std::vector<std::unique_ptr<Participant>>;

/// Takes down a call that was made. @param replays whoever joins and leaves by it comes and goes
void followCall(People& people, const zr::Export& row, const std::vector<Value>& values,
                const Answer& answer, bool replays);

} // namespace zrhost

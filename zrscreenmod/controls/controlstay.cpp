#include "controlstay.h"

namespace {

int s_stays = 0;

} // namespace

ControlStay::ControlStay()
{
    ++s_stays;
}

ControlStay::~ControlStay()
{
    --s_stays;
}

bool ControlStay::isAny()
{
    return s_stays > 0;
}

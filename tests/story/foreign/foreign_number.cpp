// A module of another number: everything behind the number would be misread.

#include "scenario/scene_function.h"

extern "C" const qv::GameModule qvGameModule;
const qv::GameModule qvGameModule{qv::ModuleAbi + 1, nullptr, nullptr, nullptr, nullptr,
                                  nullptr,           nullptr, nullptr, 0};

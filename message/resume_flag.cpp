#include "message/resume_flag.h"

namespace qv {

int32_t DataLoadedFlag = 0;

}  // namespace qv

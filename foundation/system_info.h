#pragma once

/// What the processor can do, as the pixel kernels ask. Any thread.

namespace qv {

/// 1 if the processor has MMX (or this build's vector form stands in for it), asked once.
int HasMmx();

}  // namespace qv

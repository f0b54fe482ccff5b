#pragma once
// session/interrupt.h -- the keyboard interrupt.

namespace kelmar {

// Install the handler, which sets interrupt_flag and nothing else.
void install_interrupt();

}  // namespace kelmar

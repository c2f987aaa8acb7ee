#pragma once

/// The last call that the hand-laid log library received: the slot of its table of operations, and the
/// arguments.
extern "C" const char* handLaidSmLogCall();

#pragma once

/// What the hand-laid log library was last asked: which slot of its table of operations, and with what.
extern "C" const char* handLaidSmLogCall();

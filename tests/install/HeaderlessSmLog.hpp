#pragma once

/// The last call that the library received: its slot in the table of operations, and its arguments.
extern "C" const char* headerlessSmLogCall();

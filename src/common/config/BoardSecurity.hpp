#pragma once

/// Returns true if the board runs in a secure environment, or if its state is unknown.
bool isBoardSecured();
